"""The bridge's shared folders and the installed locations recorded there.

The shared folder is /Users/Shared/Vandrel unless the environment variable
NEQBRIDGE_PUBLIC_FOLDER names another. It is read once, when neqbridge is first
imported: set it before that.
"""

from __future__ import annotations

import os
from typing import Optional

from . import _core


def paths() -> dict:
    """The shared folders by role: public, host, applications, projects and
    default_project. Folders are never created."""
    return _core.shared_folders()


def _entry(config_file: str, path: Optional[str]) -> Optional[str]:
    if path is None:
        return _core.read_path_entry(config_file)
    if not isinstance(path, str) or not path or any(c in path for c in "\n\r\0"):
        raise ValueError("path must be one line of text, not empty")
    folder = os.path.dirname(config_file)
    if not os.path.isdir(folder):
        raise FileNotFoundError(2, "the folder does not exist (the bridge never creates it)",
                                folder)
    _core.write_path_entry(config_file, path)
    return path


def host_path(path: Optional[str] = None) -> Optional[str]:
    """The host's installed location (the PATH entry of NeQBrush/NeQ_Config.txt), None
    when none is recorded; with `path`, records that location instead."""
    return _entry(_core.host_config_file(), path)


def app_path(app: str, path: Optional[str] = None) -> Optional[str]:
    """The same for the target application `app` (NeQApps/APP/NeQ_Config.txt)."""
    if not isinstance(app, str) or app in ("", ".", "..") or any(c in app for c in "/\0:"):
        raise ValueError(f"app must be a folder name, not {app!r}")
    return _entry(_core.app_config_file(app), path)
