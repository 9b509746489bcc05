"""Every failure is an exception of its kind, carrying the errno and the path, or the
file and where in it."""

import errno
import os
import pickle
import tempfile

import pytest

import neqbridge
from conftest import DATA, needs_meshes

MISSING = "/nonexistent/folder/mesh.NeQ"
ON_A_MISSING_FILE = {
    "uv_tiles": lambda p: neqbridge.uv_tiles(p),
    "split_uv_tiles": lambda p: neqbridge.split_uv_tiles(p, "/tmp/x.NeQ"),
    "group_count": lambda p: neqbridge.group_count(p),
    "obj_export": lambda p: neqbridge.obj_export(p, p, "/tmp/x.obj"),
    "weld_uvs": lambda p: neqbridge.weld_uvs(p),
    "blend_scene": lambda p: neqbridge.blend_scene(p, [p]),
    "config.get": lambda p: neqbridge.config.get(p, "PATH"),
    "AppRecord.read": lambda p: neqbridge.AppRecord.read(p),
    "read": pytest.param(lambda p: neqbridge.read(p), marks=needs_meshes),
    "weld_uvs into a missing folder":
        lambda p: neqbridge.weld_uvs(os.path.join(DATA, "uvmerge", "house.ma"), p),
}


@pytest.mark.parametrize("operation", ON_A_MISSING_FILE.values(), ids=ON_A_MISSING_FILE.keys())
def test_missing_file(operation):
    with pytest.raises(FileNotFoundError) as raised:
        operation(MISSING)
    assert (raised.value.errno, raised.value.filename) == (errno.ENOENT, MISSING)


def test_folder_given_for_a_file(tmp_path):
    with pytest.raises(IsADirectoryError) as raised:
        neqbridge.group_count(tmp_path)
    assert raised.value.filename == str(tmp_path)


def test_unreadable_file_is_a_permission_error():
    """Root reads anything: a forked child becomes an ordinary user; its status tells."""
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)
        path = os.path.join(folder, "locked.NeQ")
        open(path, "wb").close()
        os.chmod(path, 0)
        child = os.fork()
        if child == 0:
            try:
                if os.getuid() == 0:
                    os.setgid(65534), os.setuid(65534)
                neqbridge.group_count(path)
            except PermissionError as error:
                os._exit(0 if (error.errno, error.filename) == (errno.EACCES, path) else 2)
            finally:
                os._exit(1)
        assert os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) == 0


# (file content, operation, where, words in the reason)
FORMAT_ERRORS = {
    "no UV block": (b"\0" * 48, neqbridge.uv_tiles, "offset 32", "no UV block"),
    "no group block": (b"\0" * 48, neqbridge.group_count, "offset 32", "no group block"),
    "empty record": (b"", neqbridge.AppRecord.read, "offset 0", "empty"),
    "empty scene": (b"", neqbridge.weld_uvs, "offset 0", "empty"),
    "mesh block past the end": pytest.param(b"\1" * 64, neqbridge.read, "offset 32",
                                            "runs past the end", marks=needs_meshes),
}


@pytest.mark.parametrize("content, operation, where, words", FORMAT_ERRORS.values(),
                         ids=FORMAT_ERRORS.keys())
def test_format_errors_name_the_file_and_where(tmp_path, content, operation, where, words):
    path = tmp_path / "bad.NeQ"
    path.write_bytes(content)
    with pytest.raises(neqbridge.FormatError) as raised:
        operation(path)
    error = raised.value
    assert isinstance(error, ValueError)
    assert (error.file, error.where) == (str(path), where)
    assert words in error.reason and str(error).startswith(f"{path}: {where}: ")
    assert str(pickle.loads(pickle.dumps(error))) == str(error)  # crosses process pools


BAD_ARGUMENTS = {
    "colon in a path": lambda: neqbridge.group_count("/tmp/a:b.NeQ"),
    "level out of range": lambda: neqbridge.obj_export("a", "b", "c", level=16),
    "output names the input": lambda: neqbridge.weld_uvs(__file__, __file__),
    "unknown app name": lambda: neqbridge.bridge.app_path("../x"),
    "value of two lines": lambda: neqbridge.config.set("/tmp/c.txt", "KEY", "a\nb"),
    "key holding =": lambda: neqbridge.config.set("/tmp/c.txt", "a=b", "1"),
    "unknown host entry": lambda: neqbridge.host.call("Nope"),
    "side buffer for glb": pytest.param(lambda: neqbridge.convert(
        os.path.join(DATA, "interchange", "sample.obj"), "/nonexistent/m.glb", side_buffer=True),
        marks=needs_meshes),
}


@pytest.mark.parametrize("operation", BAD_ARGUMENTS.values(), ids=BAD_ARGUMENTS.keys())
def test_bad_arguments_are_value_errors(operation):
    with pytest.raises(ValueError):
        operation()


@needs_meshes
@pytest.mark.parametrize("extension", [".NeQ", ".obj", ".glb", ".gltf"])
def test_a_mesh_changed_after_construction_is_checked_when_written(tmp_path, extension):
    mesh = neqbridge.Mesh([[0, 0, 0], [1, 0, 0], [0, 1, 0]], [[0, 1, 2, -1]])
    mesh.faces[0, 1] = 99
    with pytest.raises(ValueError, match="faces"):
        neqbridge.write(tmp_path / f"bad{extension}", mesh)
    assert not os.listdir(tmp_path)
