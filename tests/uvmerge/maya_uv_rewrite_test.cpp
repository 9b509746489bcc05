#include "uvmerge/maya_uv_rewrite.h"

#include "support/temp_dir.h"
#include "tooling/maya_mesh_writer.h"
#include "tooling/sample_mesh.h"
#include "uvmerge/maya_test_scenes.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

using uvmerge::buildMayaScene;
using uvmerge::MayaSceneOptions;
using uvmerge::rewriteMayaUvs;

// quirks.ma: case-insensitive headers after blanks, a blank line that leaves a range
// open, numbers with signs inside and points twice ("1-2" is -12, "2.5.5" is 25.5),
// "1e-3" read as 1, surplus entries ignored, a short edge line, an "F" read as "f", a
// triangle with reversed edges and a negative UV index (a UV of (0, 0)), an edge count
// line before the UV count (not recognised), removed lines that share one mark, text
// kept between two removed lines (two marks), and "// END OF" cutting what follows.
// no_marks.ma: without UV or face statements nothing is welded, but the transform lines
// and the text after "// End of " still go.
TEST(MayaUvRewrite, GoldenScenesAndTransformLines) {
    EXPECT_EQ(rewritten(readTestData("uvmerge/quirks.ma")),
              readTestData("uvmerge/quirks_welded.ma"));
    const uvmerge::MayaUvRewrite result = rewriteMayaUvs(readTestData("uvmerge/no_marks.ma"));
    ASSERT_TRUE(result.ok);
    EXPECT_FALSE(result.welded);
    EXPECT_EQ(result.text, readTestData("uvmerge/no_marks_rewritten.ma"));

    EXPECT_EQ(rewritten("a\n\tsetAttr \".t\" 1;\n setAttr \".r\" 2;\nsetattr \".S\" 3\nb"), "a\nb");
    EXPECT_EQ(rewritten("// End of x\r\nmore"), "// End of x\r");
    EXPECT_EQ(rewritten(" // End of x\nmore\n"), " // End of x\nmore\n"); // first byte only
    EXPECT_EQ(rewritten("x"), "x");
}

TEST(MayaUvRewrite, ChangedQuadScenes) {
    for (const QuadVariant& changed : quadVariants("changed.txt")) {
        const uvmerge::MayaUvRewrite result = rewriteMayaUvs(changed.scene);
        EXPECT_TRUE(result.ok) << result.refusal;
        EXPECT_NE(result.text.find(changed.expected), std::string::npos)
            << changed.expected << "\ngot: " << result.text << result.refusal;
    }
}

TEST(MayaUvRewrite, RefusesScenesOutsideTheLayout) {
    EXPECT_EQ(rewriteMayaUvs("").refusal, "the file is empty");
    for (const QuadVariant& refused : refusedScenes()) {
        const uvmerge::MayaUvRewrite result = rewriteMayaUvs(refused.scene);
        EXPECT_FALSE(result.ok) << refused.expected;
        EXPECT_NE(result.refusal.find(refused.expected), std::string::npos)
            << refused.expected << "\n  got: " << result.refusal;
        EXPECT_TRUE(result.text.empty());
    }
}

std::string houseScene(bool crlf) {
    MayaSceneOptions options;
    options.name = "house";
    options.crlf = crlf;
    return buildMayaScene(meshfile::makeSampleMesh(), options);
}

// The writer's layout, and the sample house welded from it: transform lines gone,
// reversed edges followed to their second vertex, the roof triangles written with three
// corners, and everything after "// End of " cut (with CR LF, the LF of each removed
// line stays behind as an empty line and ends the text before the next mark).
TEST(MayaUvRewrite, SampleHouseGoldens) {
    EXPECT_EQ(houseScene(false), readTestData("uvmerge/house.ma"));
    const std::string extra = "createNode transform -n \"extra\";\n";
    const uvmerge::MayaUvRewrite result = rewriteMayaUvs(houseScene(false) + extra);
    ASSERT_TRUE(result.ok) << result.refusal;
    EXPECT_EQ(result.text, readTestData("uvmerge/house_welded.ma"));
    EXPECT_TRUE(result.welded);
    EXPECT_EQ(result.uvsBefore, 33u);
    EXPECT_EQ(result.uvsAfter, 22u);
    EXPECT_EQ(result.faces, 9u);
    EXPECT_EQ(result.triangles, 3u);

    EXPECT_EQ(rewritten(houseScene(true) + "createNode transform -n \"extra\";\r\n"),
              readTestData("uvmerge/house_crlf_welded.ma"));
}

TEST(MayaUvRewrite, BlocksOf250UvsAnd500Faces) {
    MayaSceneOptions options;
    options.name = "strip";
    // 250 UVs and 125 faces: one block each.
    const std::string uvs250 = rewritten(buildMayaScene(stripMesh(125, false), options));
    EXPECT_NE(uvs250.find("setAttr -s 252 \".uvst[0].uvsp\""), std::string::npos);
    const std::string uvs250Only = rewritten(buildMayaScene(stripMesh(124, false), options));
    EXPECT_NE(uvs250Only.find("uvsp[0:249]\" -type \"float2\"\n"), std::string::npos);
    EXPECT_EQ(uvs250Only.find("uvsp[250"), std::string::npos);
    // 251 UVs: 0:249 and 250:250, the last from the triangle's apex.
    EXPECT_EQ(rewritten(buildMayaScene(stripMesh(124, true), options)),
              readTestData("uvmerge/strip_251_uvs_welded.ma"));

    const std::string faces500 = rewritten(buildMayaScene(stripMesh(500, false), options));
    EXPECT_NE(faces500.find("\tsetAttr -s 500 \".fc\";\n\tsetAttr \".fc[0:499]\""),
              std::string::npos);
    EXPECT_EQ(faces500.find(".fc[500"), std::string::npos);
    EXPECT_EQ(rewritten(buildMayaScene(stripMesh(501, false), options)),
              readTestData("uvmerge/strip_501_faces_welded.ma"));
}

} // namespace
} // namespace neq::test
