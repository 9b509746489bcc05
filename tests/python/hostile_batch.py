"""Runs every file-reading operation on each file named, in one interpreter: an exception
not of the documented kinds, or a crash, fails the run."""

import os
import sys
import tempfile

import neqbridge

OPERATIONS = {
    ".neq": [
        lambda p, out: neqbridge.uv_tiles(p),
        lambda p, out: neqbridge.group_count(p),
        lambda p, out: neqbridge.split_uv_tiles(p, os.path.join(out, "tile.NeQ")),
        lambda p, out: neqbridge.obj_export(p, p, os.path.join(out, "export.obj")),
    ],
    ".ma": [lambda p, out: neqbridge.weld_uvs(p, os.path.join(out, "welded.ma"))],
    ".txt": [lambda p, out: neqbridge.config.get(p, "PATH"),
             lambda p, out: neqbridge.AppRecord.read(p)],
}
if neqbridge._core.has_meshes:
    OPERATIONS[".neq"].append(lambda p, out: neqbridge.read(p))
    for extension in (".obj", ".glb", ".gltf"):
        OPERATIONS[extension] = [lambda p, out: neqbridge.read(p)]


failures = 0
with tempfile.TemporaryDirectory() as out:
    for path in sys.argv[1:]:
        for operation in OPERATIONS[os.path.splitext(path)[1].lower()]:
            try:
                operation(path, out)
            except (OSError, ValueError):
                failures += 1
print(f"{len(sys.argv) - 1} files, {failures} refused")
