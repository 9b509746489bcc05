#include "interchange/sample_meshes.h"

#include "support/temp_dir.h"
#include "support/tool_run.h"

namespace neq::interchange {
namespace {

using neq::test::expectRuns;
using neq::test::readFile;
using neq::test::runTool;

class ConvertCommand : public ::testing::Test {
  protected:
    ConvertCommand() {
        Mesh mesh = test::sampleMesh();
        for (std::size_t i = 0; i < mesh.neqHeader.size(); ++i) // a header to carry over
            mesh.neqHeader[i] = static_cast<std::uint8_t>(i * 7);
        neq::test::writeFile(neqPath, writeNeq(mesh));
    }

    neq::test::TempDir dir;
    const std::string neqPath = dir.file("in.NeQ");
};

TEST_F(ConvertCommand, RoundTripsThroughEveryFormat) {
    const std::string obj = dir.file("m.obj"), back = dir.file("back.neq");
    expectRuns({
        {"convert " + neqPath + " " + obj, 0, "wrote " + obj + ": 5 vertices, 2 faces\n"},
        {"convert -q " + obj + " " + back, 0, ""},
    });
    // NeQ -> OBJ -> NeQ: the same bytes, but for the header, which OBJ does not carry.
    const std::string original = readFile(neqPath);
    EXPECT_EQ(readFile(back).substr(32), original.substr(32));
    EXPECT_EQ(readFile(back).substr(0, 32), std::string(32, '\0'));

    for (const char* name : {"m.glb", "m.gltf", "copy.NeQ"}) {
        const std::string out = dir.file(name);
        ASSERT_EQ(runTool("convert -q " + neqPath + " " + out).exitCode, 0) << name;
        const Mesh mesh = readMeshFile(out);
        EXPECT_EQ(mesh.faces, test::sampleMesh().faces) << name;
        EXPECT_EQ(mesh.groups, test::sampleMesh().groups) << name;
    }
    EXPECT_EQ(readFile(dir.file("copy.NeQ")), original); // the header kept
}

TEST_F(ConvertCommand, OptionsTransformTheMesh) {
    const std::string out = dir.file("t.NeQ");
    ASSERT_EQ(runTool("convert " + neqPath + " " + out +
                      " --up z --flip-x --flip-normals --no-groups --no-colors")
                  .exitCode,
              0);
    Mesh expected = test::sampleMesh();
    Transform transform;
    transform.switchYZ = transform.flipX = transform.flipNormals = true;
    transform.keepGroups = transform.keepColors = false;
    apply(expected, transform);
    test::expectSameMesh(readMeshFile(out), expected);
    ASSERT_EQ(runTool("convert -q " + neqPath + " " + out + " --no-uvs --flip-y --flip-z --up y")
                  .exitCode,
              0);
    EXPECT_TRUE(readMeshFile(out).uvs.empty());
    EXPECT_EQ(readMeshFile(out).positions[10], -1.0f);
}

TEST_F(ConvertCommand, RefusesAndFailsWithTheFileAndTheReason) {
    const std::string bad = dir.file("bad.obj"), missing = dir.file("none.obj");
    neq::test::writeFile(bad, "v 0 0 0\nf 1 1 1 1 9\n");
    neq::test::writeFile(dir.file("plain.obj"), "v 0 0 0\nv 1 0 0\nv 0 1 0\n");
    neq::test::writeFile(dir.file("notes.glb"), "notes");
    expectRuns({
        {"convert " + neqPath, 2, "convert: missing OUT\nusage: neqbridge convert IN OUT"},
        {"convert " + neqPath + " x.txt", 2,
         "convert: cannot tell the format of 'x.txt' from its extension (.NeQ, .obj, .glb or "
         ".gltf)\n"},
        {"convert " + neqPath + " x.obj --up x", 2, "convert: --up must be y or z, not 'x'\n"},
        {"convert " + neqPath + " x.glb --side-buffer", 2,
         "convert: --side-buffer applies to a .gltf output only\n"},
        {"convert " + missing + " x.NeQ", 1,
         "convert: cannot open input '" + missing + "': No such file or directory\n"},
        {"convert " + bad + " " + dir.file("x.NeQ"), 1,
         "convert: cannot read input '" + bad +
             "': line 2: f: vertex index 9 is out of range "
             "(1 so far)\n"},
        {"convert " + neqPath + " " + dir.path() + "/../" + dir.path().substr(5) + "/in.NeQ", 1,
         "is the input '" + neqPath + "' (the same file); writing it would destroy the input"},
        {"convert " + dir.file("plain.obj") + " " + dir.file("x.glb"), 1,
         "convert: cannot write output '" + dir.file("x.glb") +
             "': faces: a glTF mesh needs at least one face\n"},
        {"convert " + neqPath + " " + dir.file("notes.glb"), 1,
         "convert: output '" + dir.file("notes.glb") +
             "' exists and is not a glb file; it was "
             "left as it is (give --force to replace it)\n"},
        {"uv-layout " + neqPath + " " + dir.file("plain.obj"), 1,
         "exists and is not an SVG picture"},
        {"convert " + neqPath + " " + dir.file("no/x.obj"), 1,
         "convert: cannot write output '" + dir.file("no/x.obj") +
             "': No such file or "
             "directory\n"},
    });
    EXPECT_EQ(neq::test::listFolder(dir.path()),
              (std::vector<std::string>{"bad.obj", "in.NeQ", "notes.glb", "plain.obj"}));
    EXPECT_EQ(runTool("convert -q --force " + neqPath + " " + dir.file("notes.glb")).exitCode, 0);
}

TEST_F(ConvertCommand, UvLayoutDrawsTilesOutlinesAndGroups) {
    const std::string svg = dir.file("uv.svg");
    expectRuns({
        {"uv-layout " + neqPath + " " + svg, 0, "wrote " + svg + ": 2 faces\n"},
        {"uv-layout " + dir.file("m.obj") + " " + svg, 1, "cannot open input"},
    });
    EXPECT_EQ(readFile(svg), neq::test::readTestData("interchange/sample.svg"));
}

} // namespace
} // namespace neq::interchange
