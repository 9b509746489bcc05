#include "tooling/sample_mesh.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <stdexcept>

namespace neq::meshfile {
namespace {

// Every face refers to existing vertices, and per-vertex / per-face arrays line up.
void expectConsistent(const Mesh& mesh) {
    for (const auto& face : mesh.faces)
        for (int k = 0; k < (face[3] < 0 ? 3 : 4); ++k)
            ASSERT_LT(static_cast<std::size_t>(face[k]), mesh.vertices.size());
    EXPECT_EQ(mesh.colours.size(), mesh.vertices.size());
    EXPECT_EQ(mesh.groups.size(), mesh.faces.size());
    EXPECT_TRUE(mesh.uvs.empty() || mesh.uvs.size() == mesh.faces.size());
}

std::set<int> tilesOfFirstPairs(const Mesh& mesh) {
    std::set<int> tiles;
    for (const auto& uv : mesh.uvs)
        tiles.insert(static_cast<int>(std::floor(uv[0])) +
                     100 * static_cast<int>(std::floor(uv[1])));
    return tiles;
}

// The demo's byte-exact outputs pin the sample down; these check the shapes it relies on.
TEST(SampleMesh, SubdivisionKeepsBaseFaceOrderAndSharesEdges) {
    const Mesh base = makeSampleMesh();
    const Mesh fine = subdivideMesh(base);
    expectConsistent(base);
    expectConsistent(fine);
    // 6 quads x 4 + 3 triangles x 3; vertices: 15 base + 23 edges + 9 centres.
    EXPECT_EQ(base.faces.size(), 9u);
    EXPECT_EQ(fine.faces.size(), 33u);
    EXPECT_EQ(fine.vertices.size(), 47u);
    EXPECT_EQ(tilesOfFirstPairs(base), (std::set<int>{0, 1}));
    EXPECT_EQ(tilesOfFirstPairs(fine), tilesOfFirstPairs(base));
    // The last base face, a roof triangle, gives the last three sub-faces.
    EXPECT_EQ(fine.faces[30][0], base.faces[8][0]);
    EXPECT_EQ(fine.faces[32][0], base.faces[8][2]);
    EXPECT_EQ(fine.groups[32], 3);

    Mesh broken = base;
    broken.faces.push_back({0, 1, 99, -1});
    EXPECT_THROW(subdivideMesh(broken), std::out_of_range);
}

TEST(SampleMesh, BenchmarkMeshIsAClosedTorusOverTheAskedTiles) {
    const Mesh mesh = makeBenchmarkMesh(1000, 10);
    expectConsistent(mesh);
    EXPECT_NEAR(static_cast<double>(mesh.faces.size()), 1000.0, 50.0);
    EXPECT_EQ(tilesOfFirstPairs(mesh), (std::set<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    // A closed quad mesh: vertices == faces, before and after subdividing.
    EXPECT_EQ(mesh.vertices.size(), mesh.faces.size());
    EXPECT_EQ(subdivideMesh(mesh).vertices.size(), 4 * mesh.faces.size());
    EXPECT_TRUE(makeBenchmarkMesh(100, 0).uvs.empty());
}

} // namespace
} // namespace neq::meshfile
