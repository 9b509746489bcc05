"""The host entries of the shared library, called as the host calls them: by exported
name, `float entry(char* text, double number, char* out)`, for plug-in authors who test
their scripts. The library is loaded once and kept, so its state (open folder, name
registry, name list) carries from call to call as it does in the host.

The library is $NEQBRIDGE_LIBRARY when set, else the copy installed beside this package.
"""

from __future__ import annotations

import ctypes
import os
import threading
from typing import Optional, Union

ENTRIES = (
    "Version", "addBlendFile", "endBlendFile", "clearUVString", "ClearNameSet",
    "CheckName", "OpenFolder", "GetFile", "CloseFolder", "SetFolder",
    "FileDelete", "GetPublicFolder", "CreateFolder", "AddFile", "NeQMergeUVs",
)

LIBRARY_FILE = "libneqbridge.so.4"


class _Null:
    def __repr__(self) -> str:
        return "neqbridge.host.NULL"


#: Passed as `text` or `out_in`, hands the entry a null pointer.
NULL = _Null()

# Entries write at most a path or a name plus a suffix ("_copy" and a number); the buffer
# is this much longer than anything given to the call.
_SPARE = 64 * 1024

_lock = threading.Lock()
_library: Optional[ctypes.CDLL] = None


def library_path() -> str:
    override = os.environ.get("NEQBRIDGE_LIBRARY")
    if override:
        return override
    return os.path.join(os.path.dirname(os.path.abspath(__file__)), LIBRARY_FILE)


def _load() -> ctypes.CDLL:
    global _library
    if _library is None:
        path = library_path()
        try:
            _library = ctypes.CDLL(path, mode=os.RTLD_NOW | os.RTLD_LOCAL)
        except OSError as error:
            raise OSError(f"cannot load the library {path}: {error}") from None
    return _library


def _bytes(value: Union[str, bytes, "os.PathLike[str]"], name: str) -> bytes:
    data = os.fsencode(value)
    if b"\0" in data:
        raise ValueError(f"{name} holds a NUL character")
    return data


def call(entry: str, text: Union[str, bytes, None, _Null] = None,
         out_in: Union[str, bytes, None, _Null] = None) -> tuple[float, str]:
    """Calls the host entry `entry` with `text` (None or NULL: a null pointer) and an
    output buffer that first holds `out_in` (None: empty; NULL: a null pointer). Returns
    the entry's float and the text the buffer then holds."""
    if entry not in ENTRIES:
        raise ValueError(f"unknown entry {entry!r}; the entries are {', '.join(ENTRIES)}")
    text_bytes = None if text is None or text is NULL else _bytes(text, "text")
    out_bytes = None if out_in is NULL else _bytes(out_in or b"", "out_in")
    size = len(text_bytes or b"") + len(out_bytes or b"") + _SPARE
    text_buffer = None if text_bytes is None else ctypes.create_string_buffer(text_bytes)
    out_buffer = None if out_bytes is None else ctypes.create_string_buffer(out_bytes, size)
    with _lock:
        function = getattr(_load(), entry)
        function.restype = ctypes.c_float
        function.argtypes = (ctypes.c_char_p, ctypes.c_double, ctypes.c_char_p)
        result = function(text_buffer, 0.0, out_buffer)
    out_text = "" if out_buffer is None else os.fsdecode(out_buffer.value)
    return float(result), out_text
