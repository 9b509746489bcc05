#include "interchange/sample_meshes.h"

#include "support/temp_dir.h"

namespace neq::interchange {
namespace {

// The v flip (1 - v, twice) may round; everything else comes back to the bit.
void expectSameAfterVFlip(Mesh actual, const Mesh& expected) {
    ASSERT_EQ(actual.uvs.size(), expected.uvs.size());
    for (std::size_t i = 1; i < actual.uvs.size(); i += 2) {
        EXPECT_NEAR(actual.uvs[i], expected.uvs[i], 1e-6f) << i;
        actual.uvs[i] = expected.uvs[i];
    }
    test::expectSameMesh(actual, expected);
}

TEST(GltfFile, GlbAndGltfGiveBackTheQuadsVerticesAndGroups) {
    Mesh mesh = test::sampleMesh();
    mesh.positions.insert(mesh.positions.end(), {5, 6, 7}); // a vertex no face uses
    mesh.colors.insert(mesh.colors.end(), {9, 8, 7});
    expectSameAfterVFlip(readGltf(writeGlb(mesh), "m.glb"), mesh);
    expectSameAfterVFlip(readGltf(writeGltf(mesh, "", nullptr), "m.gltf"), mesh);

    neq::test::TempDir dir;
    WriteOptions side;
    side.gltfSideBuffer = true;
    writeMeshFile(dir.file("m.gltf"), mesh, side);
    EXPECT_EQ(neq::test::listFolder(dir.path()), (std::vector<std::string>{"m.bin", "m.gltf"}));
    expectSameAfterVFlip(readMeshFile(dir.file("m.gltf")), mesh);
    mesh.uvs.clear();
    mesh.colors.clear();
    mesh.groups.clear();
    test::expectSameMesh(readGltf(writeGlb(mesh), "m.glb"), mesh);
}

// assimp's glb of the first OBJ group of `sample.obj`: one primitive of two triangles,
// colours as float RGBA, no neqbridge extras.
TEST(GltfFile, AnotherProgramsPrimitivesBecomeTriangleGroups) {
    const Mesh mesh = readGltf(neq::test::readTestData("interchange/assimp_sample.glb"), "a.glb");
    const Mesh sample = test::sampleMesh();
    EXPECT_EQ(mesh.positions,
              std::vector<float>(sample.positions.begin(), sample.positions.begin() + 12));
    EXPECT_EQ(mesh.colors,
              std::vector<std::uint8_t>(sample.colors.begin(), sample.colors.begin() + 12));
    EXPECT_EQ(mesh.faces, (std::vector<std::int32_t>{0, 1, 2, -1, 0, 2, 3, -1}));
    EXPECT_EQ(mesh.groups, (std::vector<std::int16_t>{0, 0}));
    EXPECT_EQ(mesh.uvs, (std::vector<float>{0, 0, 1, 0, 1, 1, 0, 0, 0, 0, 1, 1, 0, 1, 0, 0}));
    EXPECT_THROW(readGltf("glTF\x02", "cut.glb"), FormatError); // the message is the parser's
    // A points primitive is read past, and counted.
    ReadReport report;
    readGltf(
        R"({"asset":{"version":"2.0"},"meshes":[{"primitives":[{"attributes":{},"mode":0}]}]})",
        "p.gltf", &report);
    EXPECT_EQ(report.skippedStatements, 1u);
}

} // namespace
} // namespace neq::interchange
