"""The NeQ format for meshio: `import neqbridge.meshio` registers "neq" (extension
.NeQ, any case), so that meshio.read("x.NeQ") and meshio.write("y.NeQ", mesh) work.

Faces become `triangle` and `quad` cell blocks, one block per run of faces of one kind,
so the face order is kept. Colours are the point data "color" (uint8, N x 3); polygroups
the cell data "polygroup" (int16); UVs the cell data "uv", one (u, v) pair per corner of
each cell (3 x 2 for a triangle, 4 x 2 for a quad). A triangle's fourth UV pair, which
NeQ files carry but no corner uses, is written as zeros.
"""

from __future__ import annotations

from typing import Any

import meshio as _meshio
import numpy as np

from . import _mesh

_CORNERS = {"triangle": 3, "quad": 4}


def read(filename: Any) -> _meshio.Mesh:
    mesh = _mesh.read(filename)
    quads = mesh.faces[:, 3] >= 0
    starts = np.flatnonzero(np.diff(quads.astype(np.int8))) + 1
    bounds = [0, *starts.tolist(), len(mesh.faces)]
    cells, uvs, groups = [], [], []
    for begin, end in zip(bounds[:-1], bounds[1:]):
        if begin == end:
            continue
        kind = "quad" if quads[begin] else "triangle"
        corners = _CORNERS[kind]
        cells.append((kind, mesh.faces[begin:end, :corners]))
        if mesh.uvs is not None:
            uvs.append(mesh.uvs[begin:end, :corners])
        if mesh.groups is not None:
            groups.append(mesh.groups[begin:end])
    cell_data = {}
    if mesh.uvs is not None:
        cell_data["uv"] = uvs
    if mesh.groups is not None:
        cell_data["polygroup"] = groups
    point_data = {} if mesh.colors is None else {"color": mesh.colors}
    return _meshio.Mesh(mesh.vertices, cells, point_data=point_data, cell_data=cell_data)


def write(filename: Any, mesh: _meshio.Mesh) -> None:
    points = np.asarray(mesh.points)
    if points.ndim == 2 and points.shape[1] == 2:
        points = np.column_stack((points, np.zeros(len(points))))
    faces, uvs, groups = [], [], []
    for index, block in enumerate(mesh.cells):
        if block.type not in _CORNERS:
            raise _meshio.WriteError(f"NeQ files hold triangles and quads, not {block.type}")
        corners = _CORNERS[block.type]
        padded = np.full((len(block.data), 4), -1, dtype=np.int64)
        padded[:, :corners] = block.data
        faces.append(padded)
        if "uv" in mesh.cell_data:
            pairs = np.zeros((len(block.data), 4, 2), dtype=np.float32)
            pairs[:, :corners] = np.asarray(mesh.cell_data["uv"][index]).reshape(-1, corners, 2)
            uvs.append(pairs)
        if "polygroup" in mesh.cell_data:
            groups.append(np.asarray(mesh.cell_data["polygroup"][index]).reshape(-1))
    out = _mesh.Mesh(
        points,
        np.concatenate(faces) if faces else np.zeros((0, 4)),
        uvs=np.concatenate(uvs) if uvs else None,
        colors=mesh.point_data.get("color"),
        groups=np.concatenate(groups) if groups else None,
    )
    _mesh.write(filename, out)


_meshio.register_format("neq", [".neq"], read, {"neq": write})
