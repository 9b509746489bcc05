"""Arrays in and out: what the constructor accepts and converts, what it refuses (naming
the array), and the arrays a file gives."""

import numpy as np
import pytest

import neqbridge
from conftest import needs_meshes

QUAD_AND_TRIANGLE = dict(
    vertices=[[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0], [2, 0, 0]],
    faces=[[0, 1, 2, 3], [1, 4, 2, -1]],
)


def test_array_likes_are_converted_to_the_package_dtypes():
    mesh = neqbridge.Mesh(**QUAD_AND_TRIANGLE, uvs=np.zeros((2, 4, 2)),
                          colors=[[255, 0, 0]] * 5, groups=(3, 4))
    got = {name: (getattr(mesh, name).dtype, getattr(mesh, name).shape)
           for name in ("vertices", "faces", "uvs", "colors", "groups")}
    assert got == {"vertices": (np.float32, (5, 3)), "faces": (np.int32, (2, 4)),
                   "uvs": (np.float32, (2, 4, 2)), "colors": (np.uint8, (5, 3)),
                   "groups": (np.int16, (2,))}
    assert len(mesh) == 2
    assert all(getattr(mesh, n).flags.c_contiguous for n in ("vertices", "faces", "uvs"))


def test_triangles_split_quads_in_face_order_and_an_empty_mesh_has_none():
    triangles = neqbridge.Mesh(**QUAD_AND_TRIANGLE).triangles()
    assert (triangles.dtype, triangles.tolist()) == (np.int32, [[0, 1, 2], [0, 2, 3], [1, 4, 2]])
    empty = neqbridge.Mesh([], [])
    assert (empty.vertices.shape, empty.faces.shape, len(empty), empty.triangles().shape) == \
        ((0, 3), (0, 4), 0, (0, 3))


REFUSED = {
    "vertices of two coordinates": (dict(vertices=np.zeros((5, 2))), "vertices"),
    "faces of three corners": (dict(faces=[[0, 1, 2]]), "faces"),
    "a vertex index past the end": (dict(faces=[[0, 1, 5, 3]]), "faces: face 0"),
    "a negative corner": (dict(faces=[[0, 1, 2, 3], [-1, 1, 2, 3]]), "faces: face 1"),
    "a fourth index below -1": (dict(faces=[[0, 1, 2, -2]]), "faces: face 0"),
    "fractional indices": (dict(faces=[[0, 1, 2.5, 3]]), "faces"),
    "text for vertices": (dict(vertices=[["a", "b", "c"]]), "vertices"),
    "ragged faces": (dict(faces=[[0, 1, 2, 3], [0, 1]]), "faces"),
    "uvs of the wrong face count": (dict(uvs=np.zeros((3, 4, 2))), "uvs"),
    "colors out of byte range": (dict(colors=[[256, 0, 0]] * 5), "colors"),
    "colors of the wrong vertex count": (dict(colors=np.zeros((4, 3))), "colors"),
    "groups past int16": (dict(groups=[0, 40000]), "groups"),
}


@pytest.mark.parametrize("change, named", REFUSED.values(), ids=REFUSED.keys())
def test_bad_arrays_are_refused_naming_the_array(change, named):
    with pytest.raises(ValueError, match=f"^{named}"):
        neqbridge.Mesh(**{**QUAD_AND_TRIANGLE, **change})


@needs_meshes
def test_a_file_gives_arrays_of_the_package_dtypes(demo):
    mesh = neqbridge.read(demo / "base.NeQ")
    assert (mesh.vertices.dtype, mesh.faces.dtype, mesh.uvs.dtype, mesh.groups.dtype) == \
        (np.float32, np.int32, np.float32, np.int16)
    assert mesh.vertices.shape[1:] == (3,) and mesh.uvs.shape == (len(mesh), 4, 2)
    # The arrays own the parsed data themselves (no copy into NumPy's memory).
    assert mesh.vertices.base is not None and mesh.vertices.flags.c_contiguous
