"""The add-on's operators in a headless Blender (run by tests/blender/run, which installs
the add-on): blender -b -P addon_test.py -- TOOL WORKDIR. Leaves WORKDIR/source.NeQ."""

import os
import subprocess
import sys
import traceback
from pathlib import Path

import addon_utils
import bpy
import numpy as np

TOOL, WORK = sys.argv[sys.argv.index("--") + 1:]
os.environ["NEQBRIDGE_PUBLIC_FOLDER"] = os.path.join(WORK, "no-shared-folder")
assert addon_utils.enable("neqbridge_blender", default_set=False), "add-on not found"
import neqbridge  # noqa: E402  (found through the add-on folder)

SOURCE = os.path.join(WORK, "source.NeQ")
rng = np.random.default_rng(21)
# A 3 x 2 grid of quads and two triangles, with every attribute a NeQ file holds.
GRID = np.array([[x, y, 0] for y in range(3) for x in range(4)], dtype=np.float32)
VERTICES = GRID + rng.normal(0, 0.1, GRID.shape).astype(np.float32)
FACES = np.array([[r * 4 + c, r * 4 + c + 1, r * 4 + c + 5, r * 4 + c + 4]
                  for r in range(2) for c in range(3)] + [[3, 11, 7, -1], [0, 4, 8, -1]],
                 dtype=np.int32)
UVS = rng.random((len(FACES), 4, 2), dtype=np.float32) * 2
UVS[FACES[:, 3] < 0, 3] = 0  # a triangle's unused pair is written as zeros
COLORS = rng.integers(0, 256, (len(VERTICES), 3), dtype=np.uint8)
GROUPS = np.array([0, 0, 1, 1, 2, 2, -5, 300], dtype=np.int16)
neqbridge.write(SOURCE, neqbridge.Mesh(VERTICES, FACES, uvs=UVS, colors=COLORS, groups=GROUPS))
CORNERS = (FACES >= 0) | (np.arange(4) < 3)


def path(name):
    return os.path.join(WORK, name)


def get(collection, prop, dtype, width):
    values = np.empty(len(collection) * width, dtype=dtype)
    collection.foreach_get(prop, values)
    return values.reshape(-1, width) if width > 1 else values


def import_neq(filepath, record=""):
    assert bpy.ops.import_mesh.neq(filepath=filepath, record=record) == {"FINISHED"}
    return bpy.context.active_object.data


def export_neq(filepath, record=""):
    assert bpy.ops.export_mesh.neq(filepath=filepath, record=record) == {"FINISHED"}
    return Path(filepath).read_bytes()


def write_record(name, lines):
    Path(path(name)).write_text('NAME "Test"\n' + "".join(f"{line} True\n" for line in lines))
    return path(name)


def test_import_brings_every_attribute():
    data = import_neq(SOURCE)
    assert bpy.context.active_object.name == "source"
    assert (len(data.vertices), len(data.polygons)) == (len(VERTICES), len(FACES))
    assert get(data.vertices, "co", np.float32, 3).tobytes() == VERTICES.tobytes()
    assert np.array_equal(get(data.loops, "vertex_index", np.int32, 1), FACES[CORNERS])
    assert np.array_equal(get(data.uv_layers["UVMap"].data, "uv", np.float32, 2), UVS[CORNERS])
    color = data.color_attributes["Color"]
    assert (color.domain, color.data_type) == ("POINT", "BYTE_COLOR")
    rgb = np.rint(get(color.data, "color_srgb", np.float32, 4)[:, :3] * 255)
    assert np.array_equal(rgb, COLORS)
    assert np.array_equal(get(data.attributes["polygroup"].data, "value", np.int32, 1), GROUPS)
    assert export_neq(path("exported.NeQ")) == Path(SOURCE).read_bytes()


REVERSED = np.where(FACES[:, 3:] < 0, [0, 2, 1, 3], [0, 3, 2, 1])
FLAG_CASES = [  # the record's keys (IMPORT_ and EXPORT_), positions and corners in Blender
    (["FLIP_X"], VERTICES * [-1, 1, 1], FACES),
    (["FLIP_Y"], VERTICES * [1, -1, 1], FACES),
    (["FLIP_Z"], VERTICES * [1, 1, -1], FACES),
    (["SWITCH_YZ"], VERTICES[:, [0, 2, 1]], FACES),
    (["FLIP_NORMALS"], VERTICES, np.take_along_axis(FACES, REVERSED, axis=1)),
    (["FLIP_Z", "SWITCH_YZ"], VERTICES[:, [0, 2, 1]] * [1, -1, 1], FACES),  # Blender's
]


def test_each_flag_applied_on_import_and_undone_on_export():
    for i, (keys, positions, faces) in enumerate(FLAG_CASES):
        record = write_record(f"record{i}.txt", [f"{d}_{k}" for k in keys for d in ("IMPORT", "EXPORT")]
                              + ["IMPORT_POLYGROUPS"])
        data = import_neq(SOURCE, record)
        assert get(data.vertices, "co", np.float32, 3).tobytes() == positions.astype(np.float32).tobytes(), keys
        assert np.array_equal(get(data.loops, "vertex_index", np.int32, 1), faces[CORNERS]), keys
        assert "polygroup" in data.attributes, keys
        assert export_neq(path(f"flags{i}.NeQ"), record) == Path(SOURCE).read_bytes(), keys

    without_groups = import_neq(SOURCE, write_record("no_groups.txt", ["IMPORT_FLIP_X"]))
    assert "polygroup" not in without_groups.attributes  # only with their flag


def export_with_a_group_id_too_large(**arguments):
    bpy.context.active_object.data.attributes["polygroup"].data[0].value = 40000
    return bpy.ops.export_mesh.neq(**arguments)


def test_failures_are_error_reports_naming_the_file():
    Path(path("cut.NeQ")).write_bytes(Path(SOURCE).read_bytes()[:100])
    cases = [  # operator, arguments: the report names the record, else the mesh file
        (bpy.ops.import_mesh.neq, {"filepath": path("cut.NeQ")}),
        (bpy.ops.import_mesh.neq, {"filepath": path("absent.NeQ")}),
        (bpy.ops.import_mesh.neq, {"filepath": SOURCE, "record": path("absent.txt")}),
        (bpy.ops.export_mesh.neq, {"filepath": path("no/folder/x.NeQ")}),
        (bpy.ops.neqbridge.receive, {}),
        (export_with_a_group_id_too_large, {"filepath": path("groups.NeQ")}),
    ]
    import_neq(SOURCE)
    objects = len(bpy.data.objects)
    for operator, arguments in cases:
        named = arguments.get("record", arguments.get("filepath", "NeQ_ObjectList.txt"))
        try:
            operator(**arguments)
        except RuntimeError as error:  # how Blender hands a script an ERROR report
            assert str(error).startswith("Error: ") and named in str(error), str(error)
        else:
            raise AssertionError(f"no ERROR report for {arguments}")
    assert len(bpy.data.objects) == objects


def test_faces_blender_cannot_hold_are_dropped_with_a_warning():
    neqbridge.write(path("repeats.NeQ"), neqbridge.Mesh(VERTICES, [[0, 1, 1, 2], [0, 1, 5, 4]]))
    assert len(import_neq(path("repeats.NeQ")).polygons) == 1


def test_polygons_of_more_than_four_corners_become_a_fan():
    hexagon = [(np.cos(a), np.sin(a), 0) for a in np.linspace(0, 2 * np.pi, 6, endpoint=False)]
    data = bpy.data.meshes.new("ngon")
    data.from_pydata(hexagon + [(3, 0, 0), (3, 1, 0)], [], [(0, 1, 2, 3, 4, 5), (0, 6, 7, 1)])
    obj = bpy.data.objects.new("ngon", data)
    bpy.context.collection.objects.link(obj)
    bpy.context.view_layer.objects.active = obj
    export_neq(path("ngon.NeQ"))
    mesh = neqbridge.read(path("ngon.NeQ"))
    assert mesh.faces.tolist() == [[0, 1, 2, -1], [0, 2, 3, -1], [0, 3, 4, -1], [0, 4, 5, -1],
                                   [0, 6, 7, 1]], mesh.faces.tolist()
    assert mesh.uvs is None and mesh.colors is None and mesh.groups is None


def test_blenders_own_importers_read_what_convert_writes():
    np.bool = bool  # Blender 3.4's glTF importer still uses the alias NumPy removed
    triangles = len(neqbridge.read(SOURCE).triangles())
    for name, importer, faces, corners in [
            ("x.obj", bpy.ops.wm.obj_import, len(FACES), CORNERS.sum()),
            ("x.glb", bpy.ops.import_scene.gltf, triangles, 3 * triangles)]:
        subprocess.run([TOOL, "convert", "-q", SOURCE, path(name)], check=True)
        bpy.ops.object.select_all(action="DESELECT")
        assert importer(filepath=path(name)) == {"FINISHED"}, name
        data = bpy.context.selected_objects[0].data
        assert len(data.polygons) == faces, (name, len(data.polygons))
        assert len(data.uv_layers[0].data) == len(data.loops) == corners, (name, len(data.loops))


failed = 0
for name, test in list(globals().items()):
    if name.startswith("test_"):
        for obj in list(bpy.data.objects):
            bpy.data.objects.remove(obj)
        try:
            test()
            print(f"PASS {name}")
        except Exception:
            failed += 1
            print(f"FAIL {name}\n{traceback.format_exc()}")
if failed:
    raise SystemExit(f"{failed} add-on test(s) failed")
