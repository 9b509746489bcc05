"""meshio reads and writes NeQ files once neqbridge.meshio is imported."""

import meshio
import numpy as np
import pytest

import neqbridge.meshio  # noqa: F401  registers the format
from conftest import assert_same_mesh, needs_meshes

pytestmark = needs_meshes


@pytest.fixture
def mixed(tmp_path):
    """Quads, then a triangle, then a quad: three cell blocks in face order."""
    mesh = neqbridge.Mesh(
        [[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0], [2, 0, 0], [2, 1, 0]],
        [[0, 1, 2, 3], [1, 4, 5, 2], [0, 2, 3, -1], [1, 4, 5, 2]],
        uvs=np.arange(32, dtype=np.float32).reshape(4, 4, 2) / 32,
        colors=np.arange(18).reshape(6, 3), groups=[1, 1, 2, 3])
    mesh.uvs[2, 3] = 0  # the triangle's unused pair, which meshio does not carry
    path = tmp_path / "mixed.NeQ"
    neqbridge.write(path, mesh)
    return mesh, path


def test_meshio_reads_cells_and_data(mixed):
    mesh, path = mixed
    m = meshio.read(path)
    assert [(block.type, len(block.data)) for block in m.cells] == \
        [("quad", 2), ("triangle", 1), ("quad", 1)]
    assert m.cells[1].data.tolist() == [[0, 2, 3]]
    np.testing.assert_array_equal(m.points, mesh.vertices)
    np.testing.assert_array_equal(m.point_data["color"], mesh.colors)
    assert [g.tolist() for g in m.cell_data["polygroup"]] == [[1, 1], [2], [3]]
    assert [uv.shape for uv in m.cell_data["uv"]] == [(2, 4, 2), (1, 3, 2), (1, 4, 2)]


def test_meshio_writes_back_the_same_file(mixed, tmp_path):
    mesh, path = mixed
    meshio.write(tmp_path / "again.neq", meshio.read(path))
    assert_same_mesh(neqbridge.read(tmp_path / "again.neq"), mesh)


def test_meshio_refuses_cells_that_are_not_faces(tmp_path):
    tetra = meshio.Mesh(np.zeros((4, 3)), [("tetra", [[0, 1, 2, 3]])])
    with pytest.raises(meshio.WriteError, match="tetra"):
        meshio.write(tmp_path / "t.NeQ", tetra)
