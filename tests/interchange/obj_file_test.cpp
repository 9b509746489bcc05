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
    const char text[] = "# a comment\r\n"
                        "mtllib x.mtl\r\n"
                        "v 0 0 0\nv 1 0 0 # trailing comment\nv 1 1 0\nv 0 1 0\nv 2 2 \\\n 2\n"
                        "vt 0.5 0.25\nvt 1 1 0\nvn 0 0 1\n"
                        "o body\nf 1/1 2/2/1 3//1\ns off\n"
                        "usemtl skin\nf -5 -4 -3 -2 -1\n"
                        "g body\nf 1/-2/1 2/-1/1 3/1/1 4/2/1\nl 1 2\n";
    ReadReport report;
    const Mesh mesh = readObj(text, "in.obj", &report);
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

TEST(ObjFile, MalformedLinesNameTheLineAndTheFault) {
    const std::pair<const char*, const char*> cases[] = {
        {"v 1 2\n", "line 1: v: expected 3, 4 or 6 numbers, found 2"},
        {"\n\nv 1 2 3x\n", "line 3: v: '3x' is not a number"},
        {"v 1 2 3 4 5 6 7 8\n", "line 1: v: more than 7 numbers"},
        {"vt\n", "line 1: vt: expected 2 or 3 numbers, found 0"},
        {"v 0 0 0\nf 1 1\n", "line 2: f: a face needs at least 3 corners, this one has 2"},
        {"v 0 0 0\nf 1 2 1\n", "line 2: f: vertex index 2 is out of range (1 so far)"},
        {"v 0 0 0\nf 1 0 1\n", "line 2: f: vertex index 0 is out of range (1 so far)"},
        {"v 0 0 0\nf 1 -2 1\n", "line 2: f: vertex index -2 is out of range (1 so far)"},
        {"v 0 0 0\nf 1/1 1 1\n", "line 2: f: texture index 1 is out of range (0 so far)"},
        {"v 0 0 0\nf 1 1/ 1\n", "line 2: f: '1/' is not a corner (v, v/vt, v/vt/vn or v//vn)"},
        {"v 0 0 0\nf 1 1/1/1/1 1\n",
         "line 2: f: '1/1/1/1' is not a corner (v, v/vt, v/vt/vn or v//vn)"},
        {"v 0 0 0\nf 1 a 1\n", "line 2: f: 'a' is not a corner (v, v/vt, v/vt/vn or v//vn)"},
        {"v 0 0 \\\n0\nf 1 \\\n 1 \\\n 9\n",
         "line 3: f: vertex index 9 is out of range (1 so far)"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(test::errorOf<FormatError>([&] { readObj(c.first, "bad.obj"); }),
                  "bad.obj: " + std::string(c.second));
}

} // namespace
} // namespace neq::interchange
