// Meshes between the interchange library and NumPy. A mesh read from a file hands its
// vectors over to the arrays (each array owns its vector through a capsule): the data is
// never copied after parsing. Files are read and written with the GIL released.

#include "bindings.h"

#include "interchange/mesh.h"
#include "platform/system_hints.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>

namespace neq::python {
namespace {

using interchange::Mesh;

// An array of `shape` over the vector's memory; the array keeps the vector alive.
template <class T> py::array_t<T> arrayOf(std::vector<T>&& values, std::vector<py::ssize_t> shape) {
    auto* owned = new std::vector<T>(std::move(values));
    py::capsule owner(owned, [](void* p) { delete static_cast<std::vector<T>*>(p); });
    return py::array_t<T>(std::move(shape), owned->data(), owner);
}

// The arrays of a mesh, in the order Mesh(...) takes them, and the NeQ header.
py::tuple arraysOf(Mesh&& mesh) {
    const auto vertices = static_cast<py::ssize_t>(mesh.vertexCount());
    const auto faces = static_cast<py::ssize_t>(mesh.faceCount());
    const bool hasUvs = !mesh.uvs.empty(), hasColors = !mesh.colors.empty(),
               hasGroups = !mesh.groups.empty();
    const py::bytes header(reinterpret_cast<const char*>(mesh.neqHeader.data()),
                           mesh.neqHeader.size());
    return py::make_tuple(
        arrayOf(std::move(mesh.positions), {vertices, 3}),
        arrayOf(std::move(mesh.faces), {faces, 4}),
        hasUvs ? py::object(arrayOf(std::move(mesh.uvs), {faces, 4, 2})) : py::none(),
        hasColors ? py::object(arrayOf(std::move(mesh.colors), {vertices, 3})) : py::none(),
        hasGroups ? py::object(arrayOf(std::move(mesh.groups), {faces})) : py::none(), header);
}

// The package has already checked dtypes, shapes and indices, and made the arrays
// C-contiguous.
template <class T> using Array = std::optional<py::array_t<T, py::array::c_style>>;

template <class T> Array<T> arrayIn(const py::object& array) {
    if (array.is_none()) return std::nullopt;
    return py::cast<py::array_t<T, py::array::c_style>>(array);
}

template <class T> interchange::ArrayView<T> viewOf(const Array<T>& array) {
    if (!array) return {};
    return {array->data(), static_cast<std::size_t>(array->size())};
}

template <class T> void fill(std::vector<T>& values, const py::object& array) {
    const interchange::ArrayView<T> data = viewOf(arrayIn<T>(array));
    platform::reserveLarge(values, data.size);
    values.assign(data.data, data.data + data.size);
}

void copyHeader(const py::bytes& header, std::array<std::uint8_t, 32>& neqHeader) {
    const std::string_view bytes = header;
    std::memcpy(neqHeader.data(), bytes.data(), std::min(bytes.size(), neqHeader.size()));
}

Mesh meshOf(const py::object& vertices, const py::object& faces, const py::object& uvs,
            const py::object& colors, const py::object& groups, const py::bytes& header) {
    Mesh mesh;
    fill(mesh.positions, vertices);
    fill(mesh.faces, faces);
    fill(mesh.uvs, uvs);
    fill(mesh.colors, colors);
    fill(mesh.groups, groups);
    copyHeader(header, mesh.neqHeader);
    return mesh;
}

py::tuple readMesh(const std::string& path) {
    Mesh mesh;
    {
        py::gil_scoped_release released;
        mesh = interchange::readMeshFile(path);
    }
    return arraysOf(std::move(mesh));
}

void writeMesh(const std::string& path, const py::object& vertices, const py::object& faces,
               const py::object& uvs, const py::object& colors, const py::object& groups,
               const py::bytes& header, bool sideBuffer, bool durable) {
    if (interchange::formatOfPath(path) == interchange::Format::neq) {
        // A NeQ file is the arrays' own bytes: written from NumPy's memory, not a copy.
        // The references below keep the arrays alive while the GIL is released.
        const Array<float> v = arrayIn<float>(vertices), t = arrayIn<float>(uvs);
        const Array<std::int32_t> f = arrayIn<std::int32_t>(faces);
        const Array<std::uint8_t> c = arrayIn<std::uint8_t>(colors);
        const Array<std::int16_t> g = arrayIn<std::int16_t>(groups);
        std::array<std::uint8_t, 32> neqHeader{};
        copyHeader(header, neqHeader);
        interchange::MeshView view;
        view.positions = viewOf(v);
        view.faces = viewOf(f);
        view.uvs = viewOf(t);
        view.colors = viewOf(c);
        view.groups = viewOf(g);
        view.neqHeader = neqHeader.data();
        py::gil_scoped_release released;
        interchange::writeNeqFile(path, view, interchange::WriteOptions{sideBuffer, durable});
        return;
    }
    const Mesh mesh = meshOf(vertices, faces, uvs, colors, groups, header);
    py::gil_scoped_release released;
    // The arrays may have been changed since the Mesh checked them: every writer validates
    // the copy it writes, so none sees an index outside the vertices.
    interchange::writeMeshFile(path, mesh, interchange::WriteOptions{sideBuffer, durable});
}

py::dict convert(const std::string& in, const std::string& out,
                 const interchange::Transform& transform, bool sideBuffer, bool durable) {
    interchange::ReadReport report;
    {
        py::gil_scoped_release released;
        report = interchange::convertFile(in, out, transform,
                                          interchange::WriteOptions{sideBuffer, durable});
    }
    py::dict counts;
    counts["split_polygons"] = report.splitPolygons;
    counts["skipped_statements"] = report.skippedStatements;
    return counts;
}

} // namespace

void bindMeshes(py::module_& m) {
    py::class_<interchange::Transform>(m, "Transform")
        .def(py::init<>())
        .def_readwrite("flip_x", &interchange::Transform::flipX)
        .def_readwrite("flip_y", &interchange::Transform::flipY)
        .def_readwrite("flip_z", &interchange::Transform::flipZ)
        .def_readwrite("switch_yz", &interchange::Transform::switchYZ)
        .def_readwrite("flip_normals", &interchange::Transform::flipNormals)
        .def_readwrite("keep_groups", &interchange::Transform::keepGroups)
        .def_readwrite("keep_colors", &interchange::Transform::keepColors)
        .def_readwrite("keep_uvs", &interchange::Transform::keepUvs);
    m.def("read_mesh", readMesh);
    m.def("write_mesh", writeMesh);
    m.def("convert", convert);
}

} // namespace neq::python
