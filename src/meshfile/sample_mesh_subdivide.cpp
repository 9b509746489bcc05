#include "meshfile/sample_mesh.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_map>

namespace neq::meshfile {
namespace {

using Vertex = std::array<float, 3>;
using Face = std::array<std::int32_t, 4>;
using UvRecord = std::array<float, 8>;

int cornerCount(const Face& face) {
    return face[3] < 0 ? 3 : 4;
}

Vertex midpoint(const Vertex& a, const Vertex& b) {
    return {(a[0] + b[0]) * 0.5f, (a[1] + b[1]) * 0.5f, (a[2] + b[2]) * 0.5f};
}

Rgb averageColour(const Rgb* const* colours, int count) {
    int red = 0, green = 0, blue = 0;
    for (int i = 0; i < count; ++i) {
        red += colours[i]->red;
        green += colours[i]->green;
        blue += colours[i]->blue;
    }
    const auto mean = [count](int sum) {
        return static_cast<std::uint8_t>((sum + count / 2) / count);
    };
    return {mean(red), mean(green), mean(blue)};
}

// UV records of the sub-faces of one base face, interpolated like the positions.
void appendSubdividedUvs(const UvRecord& uv, int corners, std::vector<UvRecord>& out) {
    float centreU = 0, centreV = 0;
    for (int k = 0; k < corners; ++k) {
        centreU += uv[2 * k];
        centreV += uv[2 * k + 1];
    }
    centreU /= static_cast<float>(corners);
    centreV /= static_cast<float>(corners);
    for (int k = 0; k < corners; ++k) {
        const int next = (k + 1) % corners;
        const int previous = (k + corners - 1) % corners;
        out.push_back({uv[2 * k], uv[2 * k + 1], (uv[2 * k] + uv[2 * next]) * 0.5f,
                       (uv[2 * k + 1] + uv[2 * next + 1]) * 0.5f, centreU, centreV,
                       (uv[2 * k] + uv[2 * previous]) * 0.5f,
                       (uv[2 * k + 1] + uv[2 * previous + 1]) * 0.5f});
    }
}

} // namespace

Mesh subdivideMesh(const Mesh& base) {
    const std::size_t baseVertexCount = base.vertices.size();
    const bool hasColours = !base.colours.empty();
    Mesh out;
    out.vertices = base.vertices;
    out.colours = base.colours;

    // Pass 1: one new vertex per edge, numbered in order of first use.
    std::unordered_map<std::uint64_t, std::int32_t> edgeVertices;
    edgeVertices.reserve(base.faces.size() * 2);
    std::vector<std::array<std::int32_t, 4>> faceEdges(base.faces.size());
    for (std::size_t f = 0; f < base.faces.size(); ++f) {
        const Face& face = base.faces[f];
        const int corners = cornerCount(face);
        for (int k = 0; k < corners; ++k) {
            const std::int32_t a = face[k], b = face[(k + 1) % corners];
            if (a < 0 || b < 0 || static_cast<std::size_t>(std::max(a, b)) >= baseVertexCount)
                throw std::out_of_range("face refers to a missing vertex");
            const std::uint64_t key = static_cast<std::uint64_t>(std::min(a, b)) << 32 |
                                      static_cast<std::uint32_t>(std::max(a, b));
            const auto inserted =
                edgeVertices.emplace(key, static_cast<std::int32_t>(out.vertices.size()));
            if (inserted.second) {
                out.vertices.push_back(midpoint(base.vertices[a], base.vertices[b]));
                if (hasColours) {
                    const Rgb* ends[] = {&base.colours.at(a), &base.colours.at(b)};
                    out.colours.push_back(averageColour(ends, 2));
                }
            }
            faceEdges[f][k] = inserted.first->second;
        }
    }

    // Pass 2: one centre vertex per face, and the sub-faces in base-face order.
    out.faces.reserve(base.faces.size() * 4);
    for (std::size_t f = 0; f < base.faces.size(); ++f) {
        const Face& face = base.faces[f];
        const int corners = cornerCount(face);
        const auto centre = static_cast<std::int32_t>(out.vertices.size());
        Vertex centrePosition = {0, 0, 0};
        const Rgb* cornerColours[4];
        for (int k = 0; k < corners; ++k) {
            for (int axis = 0; axis < 3; ++axis)
                centrePosition[axis] += base.vertices[face[k]][axis];
            if (hasColours) cornerColours[k] = &base.colours.at(face[k]);
        }
        for (float& c : centrePosition)
            c /= static_cast<float>(corners);
        out.vertices.push_back(centrePosition);
        if (hasColours) out.colours.push_back(averageColour(cornerColours, corners));

        for (int k = 0; k < corners; ++k) {
            out.faces.push_back(
                {face[k], faceEdges[f][k], centre, faceEdges[f][(k + corners - 1) % corners]});
            if (!base.groups.empty()) out.groups.push_back(base.groups.at(f));
        }
        if (!base.uvs.empty()) appendSubdividedUvs(base.uvs.at(f), corners, out.uvs);
    }
    return out;
}

} // namespace neq::meshfile
