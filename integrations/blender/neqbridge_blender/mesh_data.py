"""Moving a `neqbridge.Mesh` into a Blender mesh and back, and reading and writing it
with a record's flags.

The arrays are moved with foreach_get/foreach_set, so a mesh of a million faces takes
about as long as Blender needs to build it.
"""

import os
import tempfile
from dataclasses import dataclass

import bpy
import numpy as np

import neqbridge

UV_MAP = "UVMap"
COLOR_ATTRIBUTE = "Color"
GROUP_ATTRIBUTE = "polygroup"


@dataclass(frozen=True)
class Flags:
    """One direction's flags of a target application record."""

    flip: tuple = (False, False, False)
    switch_yz: bool = False
    flip_normals: bool = False
    polygroups: bool = True

    @classmethod
    def of_record(cls, record, direction):
        """`direction` is "IMPORT" or "EXPORT". A record without IMPORT_POLYGROUPS
        brings no polygroups in; export always keeps the ones the mesh has."""
        if record is None:
            return cls()
        keys = record.flags
        return cls(
            flip=tuple(f"{direction}_FLIP_{axis}" in keys for axis in "XYZ"),
            switch_yz=f"{direction}_SWITCH_YZ" in keys,
            flip_normals=f"{direction}_FLIP_NORMALS" in keys,
            polygroups=direction == "EXPORT" or "IMPORT_POLYGROUPS" in keys,
        )

    def changes_nothing(self):
        return self == Flags()

    def applied(self):
        """neqbridge.convert's arguments that apply the flags: the flips, then the Y/Z
        switch, then the winding (each face's first corner kept)."""
        return {"up": "z" if self.switch_yz else "y", "flip": self.flip,
                "flip_normals": self.flip_normals, "groups": self.polygroups}

    def undone(self):
        """The arguments that undo what applied() does. The switch comes after the flips,
        so undoing it first turns a flip of Y into one of Z and back."""
        x, y, z = self.flip
        arguments = self.applied()
        arguments["flip"] = (x, z, y) if self.switch_yz else (x, y, z)
        return arguments


def read_mesh(path, flags):
    """The mesh of the NeQ file `path` with the import flags applied. The package's
    conversion applies them, into a temporary file that is read back."""
    if flags.changes_nothing():
        return neqbridge.read(path)
    with tempfile.TemporaryDirectory() as folder:
        converted = os.path.join(folder, "imported.NeQ")
        neqbridge.convert(path, converted, **flags.applied())
        return neqbridge.read(converted)


def write_mesh(path, mesh, flags):
    """Writes `mesh` to `path`, undoing the export flags on the way."""
    if flags.changes_nothing():
        neqbridge.write(path, mesh)
        return
    with tempfile.TemporaryDirectory() as folder:
        exported = os.path.join(folder, "exported.NeQ")
        neqbridge.write(exported, mesh)
        neqbridge.convert(exported, path, **flags.undone())


def build_object(context, name, mesh):
    """A new mesh object named `name` in the active collection, made active, and
    whether Blender's check of the mesh had to drop malformed parts (faces that repeat
    a corner, faces given twice), which Blender's tools could not work on."""
    positions, faces, uvs = mesh.vertices, mesh.faces, mesh.uvs
    corners = faces >= 0
    corners[:, :3] = True
    sizes = corners.sum(axis=1).astype(np.int32)
    loops = faces[corners].astype(np.int32)

    data = bpy.data.meshes.new(name)
    data.vertices.add(len(positions))
    data.vertices.foreach_set("co", positions.ravel())
    data.loops.add(len(loops))
    data.loops.foreach_set("vertex_index", loops)
    data.polygons.add(len(faces))
    data.polygons.foreach_set("loop_start", (np.cumsum(sizes) - sizes).astype(np.int32))
    data.polygons.foreach_set("loop_total", sizes)
    if uvs is not None:
        layer = data.uv_layers.new(name=UV_MAP)
        layer.data.foreach_set("uv", uvs[corners].ravel())
    if mesh.colors is not None:
        rgba = np.ones((len(mesh.colors), 4), dtype=np.float32)
        rgba[:, :3] = mesh.colors / np.float32(255)
        attribute = data.color_attributes.new(COLOR_ATTRIBUTE, "BYTE_COLOR", "POINT")
        attribute.data.foreach_set("color_srgb", rgba.ravel())
    if mesh.groups is not None:
        attribute = data.attributes.new(GROUP_ATTRIBUTE, "INT", "FACE")
        attribute.data.foreach_set("value", mesh.groups.astype(np.int32))
    data.update(calc_edges=True)
    repaired = data.validate(clean_customdata=False)

    obj = bpy.data.objects.new(name, data)
    context.collection.objects.link(obj)
    for other in context.selected_objects:
        other.select_set(False)
    obj.select_set(True)
    context.view_layer.objects.active = obj
    return obj, repaired


def _split_polygons(starts, totals):
    """The loop of each corner of the faces a NeQ file can hold: polygons of three or
    four corners as they are, larger ones as the fan (0, k, k+1) of the OBJ reader.
    Returns (F, 4) loop indices with -1 for a triangle's fourth corner, and the polygon
    each face comes from."""
    pieces = np.where(totals > 4, totals - 2, 1)
    polygon = np.repeat(np.arange(len(totals)), pieces)
    k = np.arange(len(polygon)) - np.repeat(np.cumsum(pieces) - pieces, pieces)
    start, total = starts[polygon], totals[polygon]
    fan = total > 4
    loops = np.full((len(polygon), 4), -1, dtype=np.int64)
    loops[:, 0] = start
    loops[:, 1] = start + np.where(fan, k + 1, 1)
    loops[:, 2] = start + np.where(fan, k + 2, 2)
    quad = total == 4
    loops[quad, 3] = start[quad] + 3
    return loops, polygon


def _foreach(collection, prop, count, width, dtype):
    values = np.empty(count * width, dtype=dtype)
    collection.foreach_get(prop, values)
    return values.reshape(count, width) if width > 1 else values


def _point_colors(data):
    attribute = data.color_attributes.get(COLOR_ATTRIBUTE) or data.color_attributes.active_color
    if attribute is None:
        return None
    count = len(attribute.data)
    rgba = _foreach(attribute.data, "color_srgb", count, 4, np.float32)
    rgb = np.rint(np.clip(rgba[:, :3], 0, 1) * 255).astype(np.uint8)
    if attribute.domain == "POINT":
        return rgb
    # Colours painted on corners: each vertex takes the colour of its last corner.
    colors = np.zeros((len(data.vertices), 3), dtype=np.uint8)
    colors[_foreach(data.loops, "vertex_index", len(data.loops), 1, np.int32)] = rgb
    return colors


def mesh_of(data):
    """A `neqbridge.Mesh` of a Blender mesh."""
    positions = _foreach(data.vertices, "co", len(data.vertices), 3, np.float32)
    count = len(data.polygons)
    starts = _foreach(data.polygons, "loop_start", count, 1, np.int32)
    totals = _foreach(data.polygons, "loop_total", count, 1, np.int32)
    vertex_of_loop = _foreach(data.loops, "vertex_index", len(data.loops), 1, np.int32)
    loops, polygon = _split_polygons(starts, totals)
    corner = loops >= 0
    faces = np.full(loops.shape, -1, dtype=np.int32)
    faces[corner] = vertex_of_loop[loops[corner]]

    uvs = None
    layer = data.uv_layers.get(UV_MAP) or data.uv_layers.active
    if layer is not None:
        loop_uvs = _foreach(layer.data, "uv", len(data.loops), 2, np.float32)
        uvs = np.zeros(loops.shape + (2,), dtype=np.float32)
        uvs[corner] = loop_uvs[loops[corner]]
    groups = None
    attribute = data.attributes.get(GROUP_ATTRIBUTE)
    if attribute is not None and attribute.domain == "FACE" and attribute.data_type == "INT":
        ids = _foreach(attribute.data, "value", count, 1, np.int32)
        if count and (ids.min() < -32768 or ids.max() > 32767):
            raise ValueError(f"the '{GROUP_ATTRIBUTE}' attribute holds ids outside -32768..32767, "
                             "which a NeQ file cannot hold")
        groups = ids[polygon].astype(np.int16)

    return neqbridge.Mesh(positions, faces, uvs=uvs, colors=_point_colors(data), groups=groups)
