"""Every failure is an exception of its kind, carrying the errno and the path, or the
file and where in it."""

import errno
import os
import subprocess
import sys

import pytest

import neqbridge
from conftest import needs_meshes

MISSING = "/nonexistent/folder/mesh.NeQ"

# (operation, arguments, where the missing file goes)
ON_A_MISSING_FILE = {
    "uv_tiles": lambda p: neqbridge.uv_tiles(p),
    "split_uv_tiles": lambda p: neqbridge.split_uv_tiles(p, "/tmp/x.NeQ"),
    "group_count": lambda p: neqbridge.group_count(p),
    "obj_export": lambda p: neqbridge.obj_export(p, p, "/tmp/x.obj"),
    "weld_uvs": lambda p: neqbridge.weld_uvs(p),
    "blend_scene": lambda p: neqbridge.blend_scene(p, [p]),
    "config.get": lambda p: neqbridge.config.get(p, "PATH"),
    "AppRecord.read": lambda p: neqbridge.AppRecord.read(p),
}


@pytest.mark.parametrize("operation", ON_A_MISSING_FILE.values(), ids=ON_A_MISSING_FILE.keys())
def test_missing_file(operation):
    with pytest.raises(FileNotFoundError) as raised:
        operation(MISSING)
    assert (raised.value.errno, raised.value.filename) == (errno.ENOENT, MISSING)


@needs_meshes
def test_missing_mesh_file():
    with pytest.raises(FileNotFoundError) as raised:
        neqbridge.read(MISSING)
    assert (raised.value.errno, raised.value.filename) == (errno.ENOENT, MISSING)


def test_folder_given_for_a_file(tmp_path):
    with pytest.raises(IsADirectoryError) as raised:
        neqbridge.group_count(tmp_path)
    assert raised.value.filename == str(tmp_path)


def test_write_into_a_missing_folder(demo):
    with pytest.raises(FileNotFoundError) as raised:
        neqbridge.weld_uvs(demo / "subdivided.ma", "/nonexistent/out.ma")
    assert raised.value.errno == errno.ENOENT


# Root reads anything: the permission case runs as an ordinary user.
PERMISSION_SCRIPT = """
import sys, neqbridge
try:
    neqbridge.group_count(sys.argv[1])
except PermissionError as error:
    print(error.errno, error.filename)
"""


def test_unreadable_file_is_a_permission_error(tmp_path):
    path = tmp_path / "locked.NeQ"
    path.write_bytes(b"\0" * 64)
    path.chmod(0)
    os.chmod(tmp_path, 0o755)
    user = "nobody" if os.getuid() == 0 else None
    out = subprocess.run([sys.executable, "-c", PERMISSION_SCRIPT, str(path)], user=user,
                         capture_output=True, text=True, check=True).stdout
    assert out == f"{errno.EACCES} {path}\n"


# (file content, operation, where, words in the reason)
FORMAT_ERRORS = {
    "no UV block": (b"\0" * 48, neqbridge.uv_tiles, "offset 32", "no UV block"),
    "no group block": (b"\0" * 48, neqbridge.group_count, "offset 32", "no group block"),
    "empty record": (b"", neqbridge.AppRecord.read, "offset 0", "empty"),
    "empty scene": (b"", neqbridge.weld_uvs, "offset 0", "empty"),
}


@pytest.mark.parametrize("content, operation, where, words", FORMAT_ERRORS.values(),
                         ids=FORMAT_ERRORS.keys())
def test_format_errors_name_the_file_and_where(tmp_path, content, operation, where, words):
    path = tmp_path / "bad.file"
    path.write_bytes(content)
    with pytest.raises(neqbridge.FormatError) as raised:
        operation(path)
    error = raised.value
    assert isinstance(error, ValueError)
    assert (error.file, error.where) == (str(path), where)
    assert words in error.reason and str(error).startswith(f"{path}: {where}: ")


@needs_meshes
def test_truncated_mesh_is_a_format_error(demo, tmp_path):
    cut = tmp_path / "cut.NeQ"
    cut.write_bytes((demo / "base.NeQ").read_bytes()[:100])
    with pytest.raises(neqbridge.FormatError) as raised:
        neqbridge.read(cut)
    assert raised.value.file == str(cut) and raised.value.where.startswith("offset ")


BAD_ARGUMENTS = {
    "colon in a path": lambda: neqbridge.group_count("/tmp/a:b.NeQ"),
    "level out of range": lambda: neqbridge.obj_export("a", "b", "c", level=16),
    "output names the input": lambda: neqbridge.weld_uvs(__file__, __file__),
    "unknown app name": lambda: neqbridge.bridge.app_path("../x"),
    "value of two lines": lambda: neqbridge.config.set("/tmp/c.txt", "KEY", "a\nb"),
}


@pytest.mark.parametrize("operation", BAD_ARGUMENTS.values(), ids=BAD_ARGUMENTS.keys())
def test_bad_arguments_are_value_errors(operation):
    with pytest.raises(ValueError):
        operation()
