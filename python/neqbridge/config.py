"""The configuration files of `KEY = value` lines that the bridge keeps."""

from __future__ import annotations

from typing import Optional

from . import _core
from ._errors import PathLike, host_path, input_file


def _check_key(key: str) -> None:
    if not isinstance(key, str) or not key:
        raise ValueError("key must be non-empty text")
    if any(c in key for c in "=\n\r\0") or key[0] in " \t" or key[-1] in " \t":
        raise ValueError(f"key {key!r} holds '=', a line end, or blanks at its ends")


def get(path: PathLike, key: str) -> Optional[str]:
    """The value of the first line whose key is `key` (case ignored), without one pair of
    enclosing double quotes; None when there is none."""
    _check_key(key)
    return _core.config_get(input_file(path), key)


def set(path: PathLike, key: str, value: str) -> None:  # noqa: A001 - the issue's name
    """Makes "KEY = value" (key in capitals, value as given) the file's first line and
    drops every other line of that key. The file is created when missing (its folder
    is not) and replaced whole, keeping its permissions."""
    _check_key(key)
    if not isinstance(value, str) or any(c in value for c in "\n\r\0"):
        raise ValueError("value must be one line of text")
    _core.config_set(host_path(path), key, value)
