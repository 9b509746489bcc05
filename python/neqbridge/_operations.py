"""The host's own operations, each the library call the matching `neqbridge` command
makes."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Iterable, Optional

from . import _core
from ._errors import PathLike, host_path, input_file, output_file


def obj_export(base: PathLike, subdivided: PathLike, out: PathLike, level: int = 1) -> dict:
    """Writes the subdivided NeQ mesh as the host's OBJ layout, its faces grouped under
    "#FaceID" comments by the base mesh's faces (`level` subdivisions apart). Returns the
    counts written: vertices, colours, faces, face_groups."""
    if isinstance(level, bool) or not isinstance(level, int) or not 1 <= level <= 15:
        raise ValueError(f"level must be a whole number from 1 to 15, not {level!r}")
    base_file, sub_file = input_file(base), input_file(subdivided)
    return _core.obj_export(base_file, sub_file, output_file(out, [base_file, sub_file]), level)


def uv_tiles(path: PathLike) -> list[str]:
    """The names of the UV tiles that hold a face ("_u0_v0", ...), in the split's order."""
    return _core.uv_tiles(input_file(path))


def split_uv_tiles(path: PathLike, base: PathLike) -> list[str]:
    """Writes one NeQ file per UV tile, named after `base` ("out/head.NeQ" gives
    "out/head0.NeQ", ...), and returns the files written, in tile order."""
    source = input_file(path)
    return _core.split_uv_tiles(source, host_path(base))


def group_count(path: PathLike) -> int:
    """The number of distinct polygroup ids in the file's group block."""
    return _core.group_count(input_file(path))


def weld_uvs(scene: PathLike, out: Optional[PathLike] = None) -> dict:
    """Welds the split UVs of a Maya ASCII scene, in place or into `out`. Returns the
    counts uvs_before, uvs_after, faces and triangles."""
    source = input_file(scene)
    target = None if out is None else output_file(out, [source])
    return _core.weld_uvs(source, target)


def blend_scene(base: PathLike, targets: Iterable[PathLike]) -> None:
    """Appends every target scene to the base scene, then a blend-shape deformer with one
    weight per target, as the host does (the base is changed in place)."""
    target_files = [input_file(target) for target in targets]
    if not target_files:
        raise ValueError("blend_scene needs at least one target scene")
    base_file = input_file(base)
    output_file(base_file, target_files)
    _core.blend_scene(base_file, target_files)


def unique_names(names: Iterable[str]) -> list[str]:
    """Runs the names through the host's unique-name registry, starting from an empty
    one: ["Head", "Head"] gives ["Head", "Head_copy1"]."""
    texts = list(names)
    for name in texts:
        if not isinstance(name, str) or "\0" in name:
            raise ValueError(f"names must be text without NUL characters, not {name!r}")
    return _core.unique_names(texts)


@dataclass(frozen=True)
class AppRecord:
    """The record a target application's description file gives, as the bridge reads it.
    `flags` holds the names of the flag keys that are set ("IMPORT_FLIP_Y", ...)."""

    name: str
    version: int
    extension: str
    template: str
    locate_command: str
    init_command: str
    edit_command: str
    flags: frozenset

    @classmethod
    def read(cls, path: PathLike) -> "AppRecord":
        record = _core.app_record(input_file(path))
        record["flags"] = frozenset(record["flags"])
        return cls(**record)
