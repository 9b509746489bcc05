#!/usr/bin/env python3
"""neqbridge.read and neqbridge.write of a 1,000,000-face NeQ mesh, side by side in one
run with NumPy reading the same file (numpy.fromfile) and Python writing the same bytes,
plainly and durably (as neqbridge.write(..., durable=True) does).

usage: PYTHONPATH=build/release/python /usr/bin/python3 bench/python_mesh_io.py [RUNS] [DIR]

The mesh is a grid of 1000 x 1000 quads (1001 x 1001 vertices) with per-corner UVs,
vertex colours and 16 polygroups. Each figure is the fastest of RUNS (default 7); the
file is read once first so that every run reads it from the page cache.
"""

import os
import sys
import tempfile
import time

import numpy as np

import neqbridge


def grid(side):
    n = side + 1
    y, x = np.divmod(np.arange(n * n, dtype=np.int32), n)
    vertices = np.column_stack((x, y, np.sin(x * 0.01) * np.cos(y * 0.01))).astype(np.float32)
    q = (np.arange(side)[None, :] + n * np.arange(side)[:, None]).reshape(-1).astype(np.int32)
    faces = np.column_stack((q, q + 1, q + n + 1, q + n))
    uvs = (vertices[faces][:, :, :2] / side).astype(np.float32)
    colors = (np.arange(n * n * 3) % 251).astype(np.uint8).reshape(-1, 3)
    groups = (np.arange(len(faces)) % 16).astype(np.int16)
    return neqbridge.Mesh(vertices, faces, uvs, colors, groups)


def fastest(runs, work):
    best = float("inf")
    for _ in range(runs):
        start = time.perf_counter()
        work()
        best = min(best, time.perf_counter() - start)
    return best


def write_bytes(path, data):
    with open(path, "wb") as out:
        out.write(data)


def write_bytes_durably(path, data):
    """As the library writes every file: a temporary file beside it, flushed to disk,
    renamed over it."""
    temporary = path + ".tmp"
    with open(temporary, "wb") as out:
        out.write(data)
        out.flush()
        os.fsync(out.fileno())
    os.replace(temporary, path)


def main():
    runs = int(sys.argv[1]) if len(sys.argv) > 1 else 7
    folder = sys.argv[2] if len(sys.argv) > 2 else tempfile.mkdtemp(prefix="neqbridge-bench.")
    path = os.path.join(folder, "grid.NeQ")
    mesh = grid(1000)
    neqbridge.write(path, mesh)
    data = open(path, "rb").read()
    size = len(data) / 1e6

    read = fastest(runs, lambda: neqbridge.read(path))
    fromfile = fastest(runs, lambda: np.fromfile(path, dtype=np.uint8))
    copy = os.path.join(folder, "copy.NeQ")
    write = fastest(runs, lambda: neqbridge.write(copy, mesh))
    write_durably = fastest(runs, lambda: neqbridge.write(copy, mesh, durable=True))
    raw = fastest(runs, lambda: write_bytes(os.path.join(folder, "raw.NeQ"), data))
    durable = fastest(runs, lambda: write_bytes_durably(os.path.join(folder, "raw.NeQ"), data))
    assert open(copy, "rb").read() == data

    print(f"{len(mesh):,} faces, {len(mesh.vertices):,} vertices, {size:.1f} MB; "
          f"fastest of {runs}")
    print(f"neqbridge.read     {read * 1e3:8.1f} ms  {read / fromfile:5.2f}x numpy.fromfile")
    print(f"numpy.fromfile     {fromfile * 1e3:8.1f} ms")
    print(f"neqbridge.write    {write * 1e3:8.1f} ms  {write / raw:5.2f}x writing the bytes")
    print(f"write the bytes    {raw * 1e3:8.1f} ms")
    print(f"... durable=True   {write_durably * 1e3:8.1f} ms  "
          f"{write_durably / durable:5.2f}x writing the bytes durably")
    print(f"... durably        {durable * 1e3:8.1f} ms  (temporary file, fsync, rename)")


if __name__ == "__main__":
    main()
