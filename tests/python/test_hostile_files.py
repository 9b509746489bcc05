"""An interpreter survives the fuzz corpora (when a fuzz build made them) and the demo's
files cut at every byte or with every 32-bit field overwritten by extreme values."""

import glob
import os
import struct
import subprocess
import sys

import pytest

import neqbridge
from conftest import needs_meshes

HERE = os.path.dirname(os.path.abspath(__file__))
EXTREMES = [struct.pack("<I", v) for v in (0, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x10000)]


def cuts(data):
    return [data[:n] for n in range(len(data))]


def overwrites(data):
    return [data[:at] + value + data[at + 4:] for at in range(0, len(data) - 3, 4)
            for value in EXTREMES]


def run_batch(tmp_path, extension, contents):
    paths = [tmp_path / f"hostile{n}{extension}" for n in range(len(contents))]
    for path, content in zip(paths, contents):
        path.write_bytes(content)
    package_folder = os.path.dirname(os.path.dirname(os.path.abspath(neqbridge.__file__)))
    env = dict(os.environ, PYTHONPATH=package_folder)
    done = subprocess.run([sys.executable, os.path.join(HERE, "hostile_batch.py"), *map(str, paths)],
                          capture_output=True, text=True, cwd=tmp_path, env=env)
    assert done.returncode == 0, done.stderr[-2000:]
    assert done.stdout.startswith(f"{len(paths)} files")


# (demo file, made into hostile variants by)
BATCHES = {
    "NeQ chain cut": ("base.NeQ", cuts),
    "NeQ chain overwritten": ("base.NeQ", overwrites),
    "NeQ export layout cut": ("subdivided.NeQ", cuts),
    "NeQ export layout overwritten": ("subdivided.NeQ", overwrites),
    "face block first overwritten": ("base_faces.NeQ", overwrites),
    "Maya scene cut": ("subdivided.ma", lambda d: cuts(d)[::7]),
    "application record cut": ("NeQ_App.txt", cuts),
}


@pytest.mark.parametrize("source, make", BATCHES.values(), ids=BATCHES.keys())
def test_made_hostile_files(demo_files, tmp_path, source, make):
    run_batch(tmp_path, os.path.splitext(source)[1], make((demo_files / source).read_bytes()))


@needs_meshes
def test_made_hostile_obj_and_gltf(demo_files, tmp_path):
    for extension in (".obj", ".glb", ".gltf"):
        whole = tmp_path / f"whole{extension}"
        neqbridge.convert(demo_files / "base.NeQ", whole)
        data = whole.read_bytes()
        run_batch(tmp_path, extension, cuts(data)[:: max(1, len(data) // 400)])


# scripts/fuzz keeps each target's corpus in build/fuzz/corpus/<target>.
CORPORA = os.environ.get("NEQBRIDGE_FUZZ_CORPORA",
                         os.path.join(HERE, "..", "..", "build", "fuzz", "corpus"))
EXTENSION_OF_TARGET = {"neq": ".neq", "maya": ".ma", "config": ".txt", "obj": ".obj",
                       "gltf": ".gltf"}


def corpus_batches():
    for folder in sorted(glob.glob(os.path.join(CORPORA, "*"))):
        name = os.path.basename(folder)
        extension = next((e for key, e in EXTENSION_OF_TARGET.items() if key in name), None)
        if extension and (extension in (".neq", ".ma", ".txt") or neqbridge._core.has_meshes):
            yield pytest.param(folder, extension, id=name)


@pytest.mark.parametrize("folder, extension", list(corpus_batches()) or
                         [pytest.param(None, None, marks=pytest.mark.skip("no fuzz corpora"))])
def test_fuzz_corpora(tmp_path, folder, extension):
    files = sorted(glob.glob(os.path.join(folder, "*")))
    for start in range(0, len(files), 2000):
        run_batch(tmp_path, extension,
                  [open(f, "rb").read() for f in files[start:start + 2000]])
