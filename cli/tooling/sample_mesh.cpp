#include "tooling/sample_mesh.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <unordered_map>

namespace neq::meshfile {
namespace {

constexpr int kGridColumns = 3;      // quads across
constexpr int kGridRows = 2;         // quads up
constexpr int kSecondTileColumn = 2; // grid columns from here on lie in tile _u1_v0

std::int32_t gridVertex(int row, int column) {
    return row * (kGridColumns + 1) + column;
}
std::int32_t apexVertex(int column) {
    return (kGridRows + 1) * (kGridColumns + 1) + column;
}

// u of a grid column as seen from a quad in `faceColumn`: the left columns share tile
// 0, the right column has tile 1 to itself (a seam runs between them).
float quadU(int column, int faceColumn) {
    if (faceColumn < kSecondTileColumn) return 0.05f + 0.45f * static_cast<float>(column);
    return 1.05f + 0.9f * static_cast<float>(column - kSecondTileColumn);
}
float quadV(int row) {
    return 0.05f + 0.3f * static_cast<float>(row);
}
// The roof sits in tile 1 above the right column's quads.
float roofU(float column) {
    return 1.05f + 0.3f * column;
}
constexpr float kRoofBaseV = 0.7f;
constexpr float kRoofApexV = 0.95f;

} // namespace

Mesh makeSampleMesh() {
    Mesh mesh;
    for (int row = 0; row <= kGridRows; ++row) {
        for (int column = 0; column <= kGridColumns; ++column) {
            mesh.vertices.push_back(
                {-1.875f + 1.25f * static_cast<float>(column),
                 -0.625f + 1.25f * static_cast<float>(row),
                 0.1f * static_cast<float>(column % 2) - 0.05f * static_cast<float>(row)});
            mesh.colours.push_back({static_cast<std::uint8_t>(40 + 60 * column),
                                    static_cast<std::uint8_t>(30 + 90 * row),
                                    static_cast<std::uint8_t>(200 - 50 * column)});
        }
    }
    for (int column = 0; column < kGridColumns; ++column) {
        mesh.vertices.push_back({-1.25f + 1.25f * static_cast<float>(column), 2.75f,
                                 0.0625f * static_cast<float>(column)});
        mesh.colours.push_back({250, static_cast<std::uint8_t>(200 - 40 * column), 40});
    }

    for (int row = 0; row < kGridRows; ++row) {
        for (int column = 0; column < kGridColumns; ++column) {
            mesh.faces.push_back({gridVertex(row, column), gridVertex(row, column + 1),
                                  gridVertex(row + 1, column + 1), gridVertex(row + 1, column)});
            const float u0 = quadU(column, column), u1 = quadU(column + 1, column);
            const float v0 = quadV(row), v1 = quadV(row + 1);
            mesh.uvs.push_back({u0, v0, u1, v0, u1, v1, u0, v1});
            mesh.groups.push_back(static_cast<std::int16_t>(row + 1));
        }
    }
    for (int column = 0; column < kGridColumns; ++column) {
        mesh.faces.push_back({gridVertex(kGridRows, column), gridVertex(kGridRows, column + 1),
                              apexVertex(column), -1});
        const float u0 = roofU(static_cast<float>(column));
        const float u1 = roofU(static_cast<float>(column) + 1.0f);
        const float apexU = roofU(static_cast<float>(column) + 0.5f);
        // A triangle's unused fourth pair repeats the third, keeping it in the tile.
        mesh.uvs.push_back({u0, kRoofBaseV, u1, kRoofBaseV, apexU, kRoofApexV, apexU, kRoofApexV});
        mesh.groups.push_back(3);
    }
    return mesh;
}

} // namespace neq::meshfile

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

namespace neq::meshfile {
namespace {

std::uint8_t toByte(double value) {
    return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

constexpr double kTwoPi = 6.283185307179586;
constexpr double kRingRadius = 12.3456;
constexpr double kTubeRadius = 4.321;
constexpr double kCentre[3] = {-3.2109, 0.0123, 7.89};
constexpr int kBenchmarkGroups = 8;
// UV shells stay this far inside their tile's unit square.
constexpr double kTileMargin = 0.02;

// The tile of a face column and where that tile's band of columns starts and ends.
struct TileBand {
    std::size_t tile, firstColumn, endColumn;
};
TileBand tileBandOf(std::size_t column, std::size_t columns, std::size_t tiles) {
    const std::size_t tile = column * tiles / columns;
    const auto bandStart = [&](std::size_t t) { return (t * columns + tiles - 1) / tiles; };
    return {tile, bandStart(tile), bandStart(tile + 1)};
}

} // namespace

Mesh makeBenchmarkMesh(std::size_t approxFaces, int uvTiles) {
    // Four times as many columns (around the ring) as rows (around the tube).
    const auto columns = std::max<std::size_t>(
        3,
        static_cast<std::size_t>(std::lround(std::sqrt(4.0 * static_cast<double>(approxFaces)))));
    const std::size_t rows = std::max<std::size_t>(3, (approxFaces + columns / 2) / columns);
    const auto vertexAt = [columns, rows](std::size_t row, std::size_t column) {
        return static_cast<std::int32_t>(row % rows * columns + column % columns);
    };

    Mesh mesh;
    mesh.vertices.reserve(rows * columns);
    mesh.colours.reserve(rows * columns);
    for (std::size_t row = 0; row < rows; ++row) {
        const double tube = kTwoPi * static_cast<double>(row) / static_cast<double>(rows);
        for (std::size_t column = 0; column < columns; ++column) {
            const double ring = kTwoPi * static_cast<double>(column) / static_cast<double>(columns);
            const double radius = kRingRadius + kTubeRadius * std::cos(tube);
            mesh.vertices.push_back({static_cast<float>(kCentre[0] + radius * std::cos(ring)),
                                     static_cast<float>(kCentre[1] + kTubeRadius * std::sin(tube)),
                                     static_cast<float>(kCentre[2] + radius * std::sin(ring))});
            mesh.colours.push_back({toByte(128 + 127 * std::cos(ring)),
                                    toByte(128 + 127 * std::sin(tube)),
                                    static_cast<std::uint8_t>((row * 7 + column * 3) & 0xFF)});
        }
    }

    const auto tiles = static_cast<std::size_t>(std::max(uvTiles, 0));
    mesh.faces.reserve(rows * columns);
    mesh.groups.reserve(rows * columns);
    if (tiles > 0) mesh.uvs.reserve(rows * columns);
    for (std::size_t row = 0; row < rows; ++row) {
        const auto group = static_cast<std::int16_t>(row * kBenchmarkGroups / rows);
        for (std::size_t column = 0; column < columns; ++column) {
            mesh.faces.push_back({vertexAt(row, column), vertexAt(row, column + 1),
                                  vertexAt(row + 1, column + 1), vertexAt(row + 1, column)});
            mesh.groups.push_back(group);
            if (tiles == 0) continue;
            const TileBand band = tileBandOf(column, columns, tiles);
            const auto u = [&band](std::size_t c) {
                const double within = static_cast<double>(c - band.firstColumn) /
                                      static_cast<double>(band.endColumn - band.firstColumn);
                return static_cast<float>(static_cast<double>(band.tile) + kTileMargin +
                                          (1 - 2 * kTileMargin) * within);
            };
            const auto v = [rows](std::size_t r) {
                return static_cast<float>(kTileMargin + (1 - 2 * kTileMargin) *
                                                            static_cast<double>(r) /
                                                            static_cast<double>(rows));
            };
            const float u0 = u(column), u1 = u(column + 1), v0 = v(row), v1 = v(row + 1);
            mesh.uvs.push_back({u0, v0, u1, v0, u1, v1, u0, v1});
        }
    }
    return mesh;
}

} // namespace neq::meshfile
