#include "interchange/sample_meshes.h"

#include "support/temp_dir.h"

namespace neq::interchange {
namespace {

TEST(ObjFile, WritesShortestFloatsOneUvPerValueAndGroups) {
    EXPECT_EQ(writeObj(test::sampleMesh()), neq::test::readTestData("interchange/sample.obj"));
}

TEST(ObjFile, RoundTripGivesTheSameMeshToTheBit) {
    Mesh mesh = test::sampleMesh();
    test::expectSameMesh(readObj(writeObj(mesh), "m.obj"), mesh);
    mesh.uvs.clear();
    mesh.colors.clear();
    mesh.groups.clear();
    test::expectSameMesh(readObj(writeObj(mesh), "m.obj"), mesh);
    for (int value = 0; value < 256; ++value) { // every colour value
        Mesh one;
        one.positions = {0, 0, 0};
        one.colors = {static_cast<std::uint8_t>(value), 0, 0};
        EXPECT_EQ(readObj(writeObj(one), "c.obj").colors[0], value);
    }
}

TEST(ObjFile, ReadsEveryCornerFormRelativeIndicesNamesAndContinuations) {
    ReadReport report;
    const Mesh mesh =
        readObj(neq::test::readTestData("interchange/corner_forms.obj"), "in.obj", &report);
    EXPECT_EQ(mesh.positions.size(), 15u);
    EXPECT_EQ(mesh.positions[14], 2.0f);
    EXPECT_EQ(mesh.faces, (std::vector<std::int32_t>{0, 1,  2, -1, 0, 1,  2, -1, 0, 2,
                                                     3, -1, 0, 3,  4, -1, 0, 1,  2, 3}));
    EXPECT_EQ(mesh.groups, (std::vector<std::int16_t>{0, 1, 1, 1, 2}));
    EXPECT_EQ(std::vector<float>(mesh.uvs.begin(), mesh.uvs.begin() + 6),
              (std::vector<float>{0.5f, 0.25f, 1, 1, 0, 0}));
    EXPECT_EQ(std::vector<float>(mesh.uvs.end() - 8, mesh.uvs.end()),
              (std::vector<float>{0.5f, 0.25f, 1, 1, 0.5f, 0.25f, 1, 1}));
    EXPECT_EQ(report.splitPolygons, 1u);
    EXPECT_EQ(report.skippedStatements, 3u);
    EXPECT_EQ(report.groupNames, (std::vector<std::string>{"body", "body/skin", "body/body/skin"}));
}

// assimp's OBJ export: a comment header, mtllib, colours, three-component vt, vn, one
// `g` and `usemtl` per mesh, "f  v/vt/vn" with two blanks.
TEST(ObjFile, AnotherProgramsObjKeepsItsFacesUvsAndGroupsThroughNeq) {
    ReadReport report;
    const Mesh first = readObj(neq::test::readTestData("interchange/assimp.obj"), "a.obj", &report);
    EXPECT_EQ(first.faceCount(), 15u);
    EXPECT_EQ(first.groups.front(), 0);
    EXPECT_EQ(first.groups.back(), 2);
    EXPECT_EQ(report.groupNames.back(), "meshes[0]-2/$Material_0");
    EXPECT_EQ(report.skippedStatements, 1u); // mtllib
    const Mesh viaNeq = readNeq(writeNeq(first), "a.NeQ");
    test::expectSameMesh(readObj(writeObj(viaNeq), "b.obj"), first);
}

} // namespace
} // namespace neq::interchange
