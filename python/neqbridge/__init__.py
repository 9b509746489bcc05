"""neqbridge for Python: NeQ meshes as NumPy arrays, their conversions, and the host's
operations (OBJ export, UV tiles, groups, blend shapes, UV weld, unique names), the
bridge's configuration layer and the host entries of the shared library.

Failures raise exceptions: FileNotFoundError, PermissionError and other OSErrors with
the errno and the path, `FormatError` (a ValueError) naming the file and the offset or
line, ValueError for bad arguments. Files are read and written with the GIL released.
"""

from __future__ import annotations

from . import bridge, config, host
from ._errors import FormatError
from ._mesh import Mesh, convert, read, write
from ._operations import (
    AppRecord,
    blend_scene,
    group_count,
    obj_export,
    split_uv_tiles,
    unique_names,
    uv_tiles,
    weld_uvs,
)

__all__ = [
    "AppRecord",
    "FormatError",
    "Mesh",
    "blend_scene",
    "bridge",
    "config",
    "convert",
    "group_count",
    "host",
    "obj_export",
    "read",
    "split_uv_tiles",
    "unique_names",
    "uv_tiles",
    "weld_uvs",
    "write",
]
