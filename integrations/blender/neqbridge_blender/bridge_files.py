"""The bridge's shared files as the add-on uses them.

- The Blender record: `NeQApps/Blender/NeQ_App.txt`, written by
  `neqbridge bridge register-app Blender`.
- The objects in transit: `NeQBrush/NeQ_ObjectList.txt`, one object name per line, each
  object the file `NeQProjects/Default/<name>.NeQ`; `NeQBrush/NeQ_ObjectPath.txt` holds
  the path of the last object written.

The shared folder is found by the `neqbridge` package, which honours
NEQBRIDGE_PUBLIC_FOLDER.
"""

import os

import neqbridge

APP = "Blender"
RECORD_FILE = "NeQ_App.txt"
OBJECT_LIST_FILE = "NeQ_ObjectList.txt"
OBJECT_PATH_FILE = "NeQ_ObjectPath.txt"
EXTENSION = ".NeQ"


def _folders():
    return neqbridge.bridge.paths()


def host_file(name):
    return os.path.join(_folders()["host"], name)


def project_file(object_name):
    return os.path.join(_folders()["default_project"], object_name + EXTENSION)


def app_record_path():
    """Blender's record in the shared folder, or None when there is none."""
    path = os.path.join(_folders()["applications"], APP, RECORD_FILE)
    return path if os.path.isfile(path) else None


def read_record(path):
    """The record of the file `path`, or of Blender's shared record when `path` is
    empty; None when neither applies."""
    if not path:
        path = app_record_path()
        if path is None:
            return None
    return neqbridge.AppRecord.read(path)


def read_object_list():
    """The names in the host's object list; blank lines and line-end blanks skipped."""
    with open(host_file(OBJECT_LIST_FILE), encoding="utf-8") as listing:
        return [line.strip() for line in listing if line.strip()]


def _write_text(path, text):
    """Replaces `path` whole, so a reader never sees half a list."""
    temporary = f"{path}.{os.getpid()}.tmp"
    try:
        with open(temporary, "w", encoding="utf-8", newline="\n") as out:
            out.write(text)
        os.replace(temporary, path)
    finally:
        if os.path.exists(temporary):
            os.remove(temporary)


def object_name(name):
    """An object name usable as a file name in the project folder."""
    cleaned = "".join("_" if c in '/\\\n\r' else c for c in name).strip()
    return cleaned if cleaned not in ("", ".", "..") else "object"


def publish(names, last_path):
    """Lists `names` as the objects in transit and records the last one's path."""
    _write_text(host_file(OBJECT_LIST_FILE), "".join(f"{name}\n" for name in names))
    _write_text(host_file(OBJECT_PATH_FILE), last_path + "\n")
