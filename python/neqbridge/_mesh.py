"""Meshes as NumPy arrays, and the files and conversions of the interchange library."""

from __future__ import annotations

from typing import Any

import numpy as np

from . import _core
from ._errors import PathLike, host_path, input_file, output_file

_FORMATS = (".neq", ".obj", ".glb", ".gltf")


class Mesh:
    """A mesh of triangles and quads.

    vertices  float32 (N, 3)
    faces     int32 (F, 4), vertex indices; -1 in the fourth column for a triangle
    uvs       float32 (F, 4, 2), one (u, v) per face corner, or None
    colors    uint8 (N, 3), RGB per vertex, or None
    groups    int16 (F,), a polygroup id per face, or None

    The constructor takes any array-like, converts it, and checks shapes and indices,
    raising ValueError that names the array.
    """

    __slots__ = ("vertices", "faces", "uvs", "colors", "groups", "_neq_header")

    def __init__(self, vertices: Any, faces: Any, uvs: Any = None, colors: Any = None,
                 groups: Any = None) -> None:
        self.vertices = _array("vertices", vertices, np.float32, (None, 3))
        self.faces = _array("faces", faces, np.int32, (None, 4))
        count, corners = len(self.vertices), self.faces
        self.uvs = None if uvs is None else _array("uvs", uvs, np.float32, (len(corners), 4, 2))
        self.colors = None if colors is None else _array("colors", colors, np.uint8, (count, 3))
        self.groups = None if groups is None else _array("groups", groups, np.int16,
                                                         (len(corners),))
        _check_indices(self.faces, count)
        self._neq_header = bytes(32)

    @classmethod
    def _from_file(cls, arrays: tuple) -> "Mesh":
        # The reader has checked everything already: no second pass over the arrays.
        mesh = cls.__new__(cls)
        (mesh.vertices, mesh.faces, mesh.uvs, mesh.colors, mesh.groups,
         mesh._neq_header) = arrays
        return mesh

    def __len__(self) -> int:
        return len(self.faces)

    def __repr__(self) -> str:
        parts = [f"{len(self.vertices)} vertices", f"{len(self.faces)} faces"]
        parts += [name for name in ("uvs", "colors", "groups") if getattr(self, name) is not None]
        return f"<neqbridge.Mesh {', '.join(parts)}>"

    def triangles(self) -> np.ndarray:
        """An int32 (T, 3) triangulation: a triangle as it is, a quad (a, b, c, d) as
        (a, b, c) and (a, c, d), in face order."""
        faces = self.faces
        quads = faces[:, 3] >= 0
        first = faces[:, :3]
        second = faces[:, [0, 2, 3]]
        both = np.stack((first, second), axis=1).reshape(-1, 3)
        keep = np.stack((np.ones(len(faces), dtype=bool), quads), axis=1).reshape(-1)
        return np.ascontiguousarray(both[keep], dtype=np.int32)


def _array(name: str, value: Any, dtype: type, shape: tuple) -> np.ndarray:
    kind = np.dtype(dtype).name
    try:
        array = np.asarray(value)
    except (TypeError, ValueError):
        raise ValueError(f"{name}: not an array of numbers") from None
    if array.dtype.kind not in "biuf":
        raise ValueError(f"{name}: {array.dtype} values cannot be read as {kind}")
    if array.dtype != dtype:
        with np.errstate(invalid="ignore", over="ignore"):
            converted = array.astype(dtype)
        if np.dtype(dtype).kind in "iu" and not np.array_equal(converted, array):
            raise ValueError(f"{name}: values that are not whole numbers in the range of {kind}")
        array = converted
    if array.size == 0 and array.ndim == 1:
        array = array.reshape((0,) + tuple(0 if s is None else s for s in shape[1:]))
    if array.ndim != len(shape) or any(s is not None and s != a
                                       for s, a in zip(shape, array.shape)):
        want = "(" + ", ".join("N" if s is None else str(s) for s in shape) + ")"
        raise ValueError(f"{name}: shape {array.shape} where {want} is needed")
    return np.ascontiguousarray(array)


def _check_indices(faces: np.ndarray, vertex_count: int) -> None:
    if not len(faces):
        return
    corners = faces[:, :3]
    bad = (corners < 0) | (corners >= vertex_count)
    bad_fourth = faces[:, 3] >= vertex_count
    if bad.any() or bad_fourth.any():
        face = int(np.flatnonzero(bad.any(axis=1) | bad_fourth)[0])
        raise ValueError(f"faces: face {face} names a vertex outside 0..{vertex_count - 1}: "
                         f"{faces[face].tolist()}")
    if (faces[:, 3] < -1).any():
        face = int(np.flatnonzero(faces[:, 3] < -1)[0])
        raise ValueError(f"faces: face {face} has {faces[face, 3]} as its fourth index "
                         "(-1 marks a triangle)")


def _needs_meshes() -> None:
    if not _core.has_meshes:
        raise NotImplementedError("this build of neqbridge has no mesh files")


def _check_side_buffer(path: str, side_buffer: bool) -> None:
    if side_buffer and not path.lower().endswith(".gltf"):
        raise ValueError(f"{path}: side_buffer applies to a .gltf output only")


def _mesh_path(path: PathLike) -> str:
    full = host_path(path)
    if not full.lower().endswith(_FORMATS):
        raise ValueError(f"{full}: the extension names no mesh format "
                         "(.NeQ, .obj, .glb or .gltf)")
    return full


def read(path: PathLike) -> Mesh:
    """Reads a .NeQ, .obj, .glb or .gltf file."""
    _needs_meshes()
    return Mesh._from_file(_core.read_mesh(_mesh_path(path)))


def write(path: PathLike, mesh: Mesh, *, side_buffer: bool = False,
          durable: bool = False) -> None:
    """Writes the mesh as the format of the extension (.NeQ, .obj, .glb, .gltf). The file
    appears complete or not at all: it is written beside and renamed into place. A .gltf
    holds its buffer, unless `side_buffer` puts it beside it (the same name with .bin).
    `durable=True` also waits until the file is on disk before the rename, as the tool
    does, so that not even a power cut can lose it; that wait is most of a write's time."""
    _needs_meshes()
    if not isinstance(mesh, Mesh):
        raise TypeError(f"write needs a neqbridge.Mesh, not {type(mesh).__name__}")
    target = _mesh_path(path)
    _check_side_buffer(target, side_buffer)
    _core.write_mesh(target, mesh.vertices, mesh.faces, mesh.uvs, mesh.colors,
                     mesh.groups, mesh._neq_header, bool(side_buffer), bool(durable))


def convert(src: PathLike, dst: PathLike, *, up: str = "y",
            flip: tuple = (False, False, False), flip_normals: bool = False,
            groups: bool = True, colors: bool = True, uvs: bool = True,
            side_buffer: bool = False, durable: bool = False) -> dict:
    """Converts between the formats of the extensions, as `neqbridge convert` does:
    `up="z"` switches Y and Z, `flip` negates x, y, z, `flip_normals` reverses the
    winding, groups, colors, uvs False leave those out, and `side_buffer` and `durable` are as for
    write. Returns what the reader
    passed over: split_polygons and skipped_statements."""
    _needs_meshes()
    if up not in ("y", "z"):
        raise ValueError(f"up must be 'y' or 'z', not {up!r}")
    if len(flip) != 3:
        raise ValueError("flip must hold three booleans: x, y, z")
    transform = _core.Transform()
    transform.flip_x, transform.flip_y, transform.flip_z = (bool(f) for f in flip)
    transform.switch_yz = up == "z"
    transform.flip_normals = bool(flip_normals)
    transform.keep_groups, transform.keep_colors, transform.keep_uvs = \
        bool(groups), bool(colors), bool(uvs)
    _check_side_buffer(_mesh_path(dst), side_buffer)
    source = input_file(_mesh_path(src))
    return _core.convert(source, output_file(_mesh_path(dst), [source]), transform,
                         bool(side_buffer), bool(durable))
