"""The package's own exception and the path rules every operation shares."""

from __future__ import annotations

import os
import stat
from typing import Union

PathLike = Union[str, "os.PathLike[str]"]


class FormatError(ValueError):
    """A file the operation cannot use: `file` names it, `where` is "offset N" or
    "line N", `reason` says what is wrong."""

    def __init__(self, file: str, where: str, reason: str) -> None:
        super().__init__(file, where, reason)  # all three, so that it pickles
        self.file = file
        self.where = where
        self.reason = reason

    def __str__(self) -> str:
        return f"{self.file}: {self.where}: {self.reason}"


def host_path(path: PathLike) -> str:
    """The absolute form of `path` for the library's disk layer, which reads a path the
    host's way (what follows the first ':' from the first '/'): a path holding ':' would
    name another file there, so it is refused."""
    text = os.fspath(path)
    if not isinstance(text, str):
        text = os.fsdecode(text)
    if ":" in text:
        raise ValueError(f"{text!r}: paths holding ':' are not accepted")
    if "\0" in text:
        raise ValueError(f"{text!r}: paths holding a NUL character are not accepted")
    return os.path.abspath(text)


def input_file(path: PathLike) -> str:
    """host_path(path) for a regular file that can be opened for reading; otherwise the
    OSError (FileNotFoundError, PermissionError, IsADirectoryError...) that says why."""
    full = host_path(path)
    info = os.stat(full)
    if stat.S_ISDIR(info.st_mode):
        raise IsADirectoryError(21, "it is a folder, not a file", full)
    if not stat.S_ISREG(info.st_mode):
        raise OSError(22, "it is not a regular file", full)
    with open(full, "rb"):
        pass
    return full


def output_file(path: PathLike, inputs: list[str]) -> str:
    """host_path(path) for a file to write, refused when it is one of the inputs (also
    through a link), which the operation would destroy."""
    full = host_path(path)
    if os.path.isdir(full):
        raise IsADirectoryError(21, "it is a folder, not a file", full)
    for source in inputs:
        if os.path.exists(full) and os.path.samefile(full, source):
            raise ValueError(f"{full}: the output names the input {source}")
    return full
