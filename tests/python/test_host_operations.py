"""The host's operations against the tool running the same library calls."""

import json
import os
import subprocess
import sys

import pytest

import neqbridge
from conftest import DATA, assert_same_files, run_tool


# (the package's call on the demo folder d and an output folder o, the tool's arguments
# doing the same, what the call returns)
SAME_AS_TOOL = {
    "obj_export": (lambda d, o: neqbridge.obj_export(d / "base_faces.NeQ", d / "subdivided.NeQ",
                                                     o / "m.obj"),
                   ["obj", "{d}/base_faces.NeQ", "{d}/subdivided.NeQ", "{o}/m.obj"],
                   lambda o: {"vertices": 47, "colours": 47, "faces": 33, "face_groups": 9}),
    "split_uv_tiles": (lambda d, o: neqbridge.split_uv_tiles(d / "base.NeQ", o / "t.NeQ"),
                       ["tiles", "{d}/base.NeQ", "{o}/t.NeQ", "--split"],
                       lambda o: [str(o / f"t{k}.NeQ") for k in (0, 1)]),
}


@pytest.mark.parametrize("call, tool, returned", SAME_AS_TOOL.values(), ids=SAME_AS_TOOL.keys())
def test_operations_write_what_the_tool_writes(demo, tmp_path, call, tool, returned):
    py, by_tool = tmp_path / "py", tmp_path / "tool"
    py.mkdir(), by_tool.mkdir()
    assert call(demo, py) == returned(py)
    run_tool(*[a.format(d=demo, o=by_tool) for a in tool])
    assert_same_files(py, by_tool)


def test_uv_tiles_and_groups(demo):
    assert neqbridge.uv_tiles(demo / "base.NeQ") == ["_u0_v0", "_u1_v0"]
    assert neqbridge.group_count(demo / "base.NeQ") == 3


@pytest.mark.parametrize("in_place", [True, False])
def test_weld_uvs_writes_what_the_tool_writes(demo, tmp_path, in_place):
    scene = demo / "subdivided.ma"
    stats = run_tool("merge-uvs", str(scene), "-o", str(tmp_path / "tool.ma"), "--stats")
    out = None if in_place else tmp_path / "py.ma"
    counts = neqbridge.weld_uvs(scene, out)
    assert (scene if in_place else out).read_bytes() == (tmp_path / "tool.ma").read_bytes()
    tool_counts = dict(line.rsplit(None, 1) for line in stats.decode().splitlines()[:4])
    assert [counts[k] for k in ("uvs_before", "uvs_after", "faces", "triangles")] == \
        [int(tool_counts[k]) for k in ("UVs before", "UVs after", "faces", "triangles")]


def test_blend_scene_gives_the_host_scene(tmp_path):
    for name, text in (("Head", "base\n"), ("Smile", "smile\n"), ("Blink", "blink\n")):
        (tmp_path / f"{name}.ma").write_text(text)
    neqbridge.blend_scene(tmp_path / "Head.ma", [tmp_path / "Smile.ma", tmp_path / "Blink.ma"])
    with open(os.path.join(DATA, "blend", "two_targets.ma"), "rb") as golden:
        assert (tmp_path / "Head.ma").read_bytes() == golden.read()


def test_unique_names_start_from_an_empty_registry():
    names = ["Head", "Head", "Head_copy1", "my head-2", "Head"]
    expected = run_tool("name", "--", *names).decode().splitlines()
    assert neqbridge.unique_names(names) == expected
    assert neqbridge.unique_names(names) == expected


def test_config_set_then_get(tmp_path):
    path = tmp_path / "NeQ_Config.txt"
    neqbridge.config.set(path, "path", '"/opt/app"')
    neqbridge.config.set(path, "Other", "1")
    assert path.read_text() == 'OTHER = 1\nPATH = "/opt/app"\n'
    assert neqbridge.config.get(path, "PATH") == "/opt/app"
    assert neqbridge.config.get(path, "missing") is None


def test_app_record_reads_what_the_tool_reads(demo):
    record = neqbridge.AppRecord.read(demo / "NeQ_App.txt")
    tool = json.loads(run_tool("app", str(demo / "NeQ_App.txt"), "--json"))
    assert record.flags == frozenset(k for k, on in tool["flags"].items() if on)
    assert record.flags == {"IMPORT_FLIP_Y", "EXPORT_SWITCH_YZ", "NORMAL_MAP_FLIP_XY"}
    for field in ("name", "extension", "template", "locate_command", "init_command",
                  "edit_command", "version"):
        assert getattr(record, field) == tool[field.replace("_command", "Command")], field


# The shared folder is fixed when the package loads: a fresh interpreter.
BRIDGE_SCRIPT = """
import json, neqbridge
from neqbridge import bridge
before = [bridge.host_path(), bridge.app_path("Modeller")]
bridge.host_path("/opt/host app")
bridge.app_path("Modeller", "/opt/modeller")
print(json.dumps([bridge.paths(), before, bridge.host_path(), bridge.app_path("Modeller")]))
"""


def test_bridge_honours_the_public_folder_variable(tmp_path):
    for folder in ("NeQBrush", "NeQApps/Modeller"):
        os.makedirs(tmp_path / folder)
    env = dict(os.environ, NEQBRIDGE_PUBLIC_FOLDER=str(tmp_path))
    out = subprocess.run([sys.executable, "-c", BRIDGE_SCRIPT], env=env, check=True,
                         capture_output=True).stdout
    paths, before, host, app = json.loads(out)
    assert paths == {"public": str(tmp_path), "host": f"{tmp_path}/NeQBrush",
                     "applications": f"{tmp_path}/NeQApps", "projects": f"{tmp_path}/NeQProjects",
                     "default_project": f"{tmp_path}/NeQProjects/Default"}
    assert (before, host, app) == ([None, None], "/opt/host app", "/opt/modeller")
    assert run_tool("bridge", "app-path", "Modeller", env=env) == b"/opt/modeller\n"
