#include "meshfile/sample_mesh.h"

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
