#include "meshfile/sample_mesh.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <stdexcept>

namespace neq::meshfile {
namespace {

int cornersOf(const std::array<std::int32_t, 4>& face) {
    return face[3] < 0 ? 3 : 4;
}

// Every face refers to existing vertices, and per-vertex / per-face arrays line up.
void expectConsistent(const Mesh& mesh) {
    for (const auto& face : mesh.faces)
        for (int k = 0; k < cornersOf(face); ++k) {
            ASSERT_GE(face[k], 0);
            ASSERT_LT(static_cast<std::size_t>(face[k]), mesh.vertices.size());
        }
    EXPECT_EQ(mesh.colours.size(), mesh.vertices.size());
    EXPECT_EQ(mesh.groups.size(), mesh.faces.size());
    if (!mesh.uvs.empty()) {
        EXPECT_EQ(mesh.uvs.size(), mesh.faces.size());
    }
}

std::set<int> tilesOfFirstPairs(const Mesh& mesh) {
    std::set<int> tiles;
    for (const auto& uv : mesh.uvs)
        tiles.insert(static_cast<int>(std::floor(uv[0])) +
                     100 * static_cast<int>(std::floor(uv[1])));
    return tiles;
}

TEST(SampleMesh, BaseHasQuadsTrianglesTwoTilesAndThreeGroups) {
    const Mesh mesh = makeSampleMesh();
    expectConsistent(mesh);
    EXPECT_EQ(mesh.vertices.size(), 15u);
    ASSERT_EQ(mesh.faces.size(), 9u);
    int triangles = 0;
    for (const auto& face : mesh.faces)
        triangles += cornersOf(face) == 3;
    EXPECT_EQ(triangles, 3);
    EXPECT_EQ(tilesOfFirstPairs(mesh), (std::set<int>{0, 1}));
    EXPECT_EQ(std::set<std::int16_t>(mesh.groups.begin(), mesh.groups.end()),
              (std::set<std::int16_t>{1, 2, 3}));
}

TEST(SampleMesh, SubdivisionKeepsBaseFaceOrder) {
    const Mesh base = makeSampleMesh();
    const Mesh fine = subdivideMesh(base);
    expectConsistent(fine);
    // 6 quads x 4 + 3 triangles x 3; vertices: 15 base + 23 edges + 9 centres.
    ASSERT_EQ(fine.faces.size(), 33u);
    ASSERT_EQ(fine.vertices.size(), 47u);
    ASSERT_EQ(fine.uvs.size(), fine.faces.size());
    const std::size_t firstCentre = 15 + 23;

    std::size_t next = 0;
    for (std::size_t f = 0; f < base.faces.size(); ++f) {
        const auto& face = base.faces[f];
        const int corners = cornersOf(face);
        for (int k = 0; k < corners; ++k, ++next) {
            SCOPED_TRACE("base face " + std::to_string(f) + " corner " + std::to_string(k));
            const auto& sub = fine.faces[next];
            EXPECT_EQ(cornersOf(sub), 4);
            EXPECT_EQ(sub[0], face[k]);
            EXPECT_EQ(static_cast<std::size_t>(sub[2]), firstCentre + f);
            EXPECT_EQ(fine.groups[next], base.groups[f]);
            EXPECT_EQ(fine.uvs[next][0], base.uvs[f][2 * k]);
            EXPECT_EQ(fine.uvs[next][1], base.uvs[f][2 * k + 1]);
            // The point after the corner is the midpoint of the edge to the next corner.
            const auto& a = base.vertices[face[k]];
            const auto& b = base.vertices[face[(k + 1) % corners]];
            EXPECT_EQ(fine.vertices[sub[1]][0], (a[0] + b[0]) * 0.5f);
            EXPECT_EQ(fine.vertices[sub[1]][1], (a[1] + b[1]) * 0.5f);
        }
    }
    EXPECT_EQ(tilesOfFirstPairs(fine), tilesOfFirstPairs(base));
}

TEST(SampleMesh, SubdivisionSharesEdgesAndColours) {
    Mesh base;
    base.vertices = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {4, 0, 0}};
    base.colours = {{0, 0, 0}, {255, 0, 0}, {255, 255, 0}, {0, 255, 0}, {9, 9, 9}};
    base.faces = {{0, 1, 2, 3}, {1, 4, 2, -1}};
    const Mesh fine = subdivideMesh(base);
    // The edge 1-2 is used by both faces and gets one midpoint: 5 + 6 edges + 2 centres.
    ASSERT_EQ(fine.vertices.size(), 13u);
    ASSERT_EQ(fine.faces.size(), 7u);
    EXPECT_EQ(fine.faces[1][1], fine.faces[4][3]); // mid(1,2) from either side
    const Rgb& mid01 = fine.colours[fine.faces[0][1]];
    EXPECT_EQ(mid01.red, 128);
    EXPECT_EQ(mid01.green, 0);
    const Rgb& centre = fine.colours[fine.faces[0][2]];
    EXPECT_EQ(centre.red, 128);
    EXPECT_EQ(centre.green, 128);
    EXPECT_TRUE(fine.uvs.empty());
    EXPECT_TRUE(fine.groups.empty());

    base.faces.push_back({0, 1, 7, -1});
    EXPECT_THROW(subdivideMesh(base), std::out_of_range);
}

TEST(SampleMesh, BenchmarkMeshIsAClosedTorusOverTheAskedTiles) {
    const Mesh mesh = makeBenchmarkMesh(1000, 10);
    expectConsistent(mesh);
    EXPECT_NEAR(static_cast<double>(mesh.faces.size()), 1000.0, 50.0);
    EXPECT_EQ(mesh.vertices.size(), mesh.faces.size());
    EXPECT_EQ(tilesOfFirstPairs(mesh), (std::set<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    for (const auto& uv : mesh.uvs)
        for (int pair = 0; pair < 4; ++pair)
            EXPECT_EQ(std::floor(uv[2 * pair]), std::floor(uv[0])) << "shell leaves its tile";

    // A closed quad mesh: subdividing keeps vertices == faces, four times over.
    const Mesh fine = subdivideMesh(mesh);
    EXPECT_EQ(fine.faces.size(), 4 * mesh.faces.size());
    EXPECT_EQ(fine.vertices.size(), fine.faces.size());
    EXPECT_TRUE(makeBenchmarkMesh(100, 0).uvs.empty());
}

} // namespace
} // namespace neq::meshfile
