#include "meshfile/sample_mesh.h"

#include <algorithm>
#include <cmath>

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
