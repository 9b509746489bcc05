"""Round trips through each format, and conversions equal to the tool's."""

from concurrent.futures import ThreadPoolExecutor

import pytest

import neqbridge
from conftest import assert_same_files, assert_same_mesh, needs_meshes, run_tool

pytestmark = needs_meshes

FORMATS = [".NeQ", ".obj", ".glb", ".gltf"]


@pytest.mark.parametrize("extension", FORMATS)
def test_write_then_read_gives_the_mesh_back(demo, tmp_path, extension):
    mesh = neqbridge.read(demo / "base.NeQ")
    path = tmp_path / f"mesh{extension}"
    neqbridge.write(path, mesh)
    # glTF stores v flipped (1 - v): the float rounding of that flip may show.
    assert_same_mesh(neqbridge.read(path), mesh, 0 if extension in (".NeQ", ".obj") else 1e-6)
    if extension == ".NeQ":  # the header comes along, as with the tool's conversion
        run_tool("convert", str(demo / "base.NeQ"), str(tmp_path / "tool.NeQ"))
        assert path.read_bytes() == (tmp_path / "tool.NeQ").read_bytes()


def test_durably_or_not_with_any_negative_fourth_index_the_same_bytes(tmp_path):
    # Arrays made in Python round trip through meshio too (test_meshio).
    mesh = neqbridge.Mesh([[0, 0, 0], [1, 0, 0], [1, 1, 0.1]], [[0, 1, 2, -1]], groups=[-2])
    neqbridge.write(tmp_path / "made.NeQ", mesh)
    assert_same_mesh(neqbridge.read(tmp_path / "made.NeQ"), mesh)
    mesh.faces[0, 3] = -5  # after the checks
    neqbridge.write(tmp_path / "durable.NeQ", mesh, durable=True)
    assert (tmp_path / "durable.NeQ").read_bytes() == (tmp_path / "made.NeQ").read_bytes()


# (options of convert, the same options of the tool)
CONVERSIONS = {
    "plain": ({}, []),
    "z up, flipped": ({"up": "z", "flip": (True, False, True), "flip_normals": True},
                      ["--up", "z", "--flip-x", "--flip-z", "--flip-normals"]),
    "geometry only": ({"groups": False, "colors": False, "uvs": False},
                      ["--no-groups", "--no-colors", "--no-uvs"]),
}
SIDE_BUFFER = pytest.param(".gltf", {"side_buffer": True}, ["--side-buffer"], id="side buffer")


@pytest.mark.parametrize("extension, options, tool_options", [
    pytest.param(extension, options, tool_options, id=f"{name}{extension}")
    for name, (options, tool_options) in CONVERSIONS.items()
    for extension in FORMATS] + [SIDE_BUFFER])
def test_convert_writes_what_the_tool_writes(demo, tmp_path, extension, options, tool_options):
    for who in ("py", "tool"):
        (tmp_path / who).mkdir()
    counts = neqbridge.convert(demo / "base.NeQ", tmp_path / "py" / f"m{extension}", **options)
    run_tool("convert", str(demo / "base.NeQ"), str(tmp_path / "tool" / f"m{extension}"),
             *tool_options)
    assert_same_files(tmp_path / "py", tmp_path / "tool")
    assert counts == {"split_polygons": 0, "skipped_statements": 0}


def test_threads_read_and_write_side_by_side(demo, tmp_path):
    mesh = neqbridge.read(demo / "base.NeQ")

    def round_trip(k):
        path = tmp_path / f"copy{k}{FORMATS[k % len(FORMATS)]}"
        neqbridge.write(path, mesh)
        return neqbridge.read(path)

    with ThreadPoolExecutor(4) as pool:
        for got in pool.map(round_trip, range(16)):
            assert_same_mesh(got, mesh, 1e-6)
