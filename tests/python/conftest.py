"""The tool (the oracle for every operation the package wraps) and its demo's files."""

import os
import shutil
import subprocess

import numpy as np
import pytest

import neqbridge

CLI = os.environ.get("NEQBRIDGE_CLI", "neqbridge")
DATA = os.environ.get("NEQBRIDGE_TEST_DATA", os.path.join(os.path.dirname(__file__), "..", "data"))

needs_meshes = pytest.mark.skipif(not neqbridge._core.has_meshes,
                                  reason="built without the interchange library")


def run_tool(*args, env=None):
    """Runs the tool; returns its stdout as bytes."""
    done = subprocess.run([CLI, *args], capture_output=True, env=env)
    assert done.returncode == 0, f"{args}: {done.stderr.decode()}"
    return done.stdout


def assert_same_mesh(got, want, uv_tolerance=0.0):
    for name in ("vertices", "faces", "colors", "groups"):
        np.testing.assert_array_equal(getattr(got, name), getattr(want, name), err_msg=name)
    assert (got.uvs is None) == (want.uvs is None)
    if want.uvs is not None:
        np.testing.assert_allclose(got.uvs, want.uvs, rtol=0, atol=uv_tolerance)


def assert_same_files(folder, other):
    assert sorted(os.listdir(folder)) == sorted(os.listdir(other))
    for name in os.listdir(folder):
        assert (folder / name).read_bytes() == (other / name).read_bytes(), name


@pytest.fixture(scope="session")
def demo_files(tmp_path_factory):
    folder = tmp_path_factory.mktemp("demo")
    run_tool("demo", str(folder))
    return folder


@pytest.fixture
def demo(demo_files, tmp_path):
    """A private copy of the demo's files."""
    folder = tmp_path / "demo"
    shutil.copytree(demo_files, folder)
    return folder
