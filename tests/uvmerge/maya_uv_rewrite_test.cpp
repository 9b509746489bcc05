#include "uvmerge/maya_uv_rewrite.h"

#include "support/temp_dir.h"
#include "uvmerge/maya_test_scenes.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

using uvmerge::rewriteMayaUvs;

// Case-insensitive headers after blanks, a blank line that leaves a range open, numbers
// with signs inside and points twice ("1-2" is -12, "2.5.5" is 25.5), "1e-3" read as 1,
// surplus entries ignored, a short edge line, an "F" read as the "f" it stands for, a
// triangle with reversed edges and a negative UV index (a UV of (0, 0)), an edge count
// line before the UV count (not recognised), removed lines that share one mark, text
// kept between two removed lines (two marks), and "// END OF" cutting what follows.
TEST(MayaUvRewrite, QuirksOfTheReader) {
    EXPECT_EQ(rewritten(readTestData("uvmerge/quirks.ma")),
              readTestData("uvmerge/quirks_welded.ma"));
}

// Without UV or face statements nothing is welded, but the transform lines and the text
// after "// End of " still go.
TEST(MayaUvRewrite, ScenesWithoutMarksLoseOnlyTransformsAndTheCut) {
    const uvmerge::MayaUvRewrite result = rewriteMayaUvs(readTestData("uvmerge/no_marks.ma"));
    ASSERT_TRUE(result.ok);
    EXPECT_FALSE(result.welded);
    EXPECT_EQ(result.text, readTestData("uvmerge/no_marks_rewritten.ma"));

    EXPECT_EQ(rewritten("a\n\tsetAttr \".t\" 1;\n setAttr \".r\" 2;\nsetattr \".S\" 3\nb"), "a\nb");
    EXPECT_EQ(rewritten("// End of x\r\nmore"), "// End of x\r");
    EXPECT_EQ(rewritten(" // End of x\nmore\n"), " // End of x\nmore\n"); // first byte only
    EXPECT_EQ(rewritten("x"), "x");
}

// A data line that runs out reads its missing UVs and edges as 0 and drops its missing
// faces; a later line over the same range wins entry by entry.
TEST(MayaUvRewrite, ShortDataLines) {
    std::string scene = replaced(kQuadScene, " 0 0 1 0 1 1 0 1;", " 0.5 0.25 0.75;");
    EXPECT_NE(rewritten(scene).find("\n 0.50000 0.25000 0.75000 0.00000 0.00000 0.00000 0.00000 "
                                    "0.00000;\n"),
              std::string::npos);

    const std::string later = "\tsetAttr \".uvst[0].uvsp[0:3]\" -type \"float2\"\n 5 5;\n"
                              "\tsetAttr \".uvst[0].uvsp[2:2]\" -type \"float2\"\n 9 9;\n";
    scene = replaced(kQuadScene, " 0 0 1 0 1 1 0 1;\n", " 1 1 2 2 3 3 4 4;\n" + later);
    EXPECT_NE(rewritten(scene).find("[0:3]\" -type \"float2\"\n 5.00000 5.00000 0.00000 0.00000 "
                                    "9.00000 9.00000 0.00000 0.00000;\n"),
              std::string::npos);

    // The face range promises three faces; the line holds one.
    scene = replaced(kQuadScene, "fc[0:0]", "fc[0:2]");
    EXPECT_NE(rewritten(scene).find("\tsetAttr -s 1 \".fc\";\n\tsetAttr \".fc[0:0]\""),
              std::string::npos);

    // A short edge line: edge 3 reads (0, 0), so the quad's last corner is on vertex 0
    // too, and as the higher corner its UV (0, 1) comes first.
    scene = replaced(kQuadScene, " 2 3 0 3 0 0;", " 2 3 0;");
    EXPECT_NE(rewritten(scene).find(" 0.00000 1.00000 0.00000 0.00000 1.00000 0.00000 1.00000 "
                                    "1.00000;\n"),
              std::string::npos);
}

TEST(MayaUvRewrite, RefusesScenesOutsideTheLayout) {
    EXPECT_EQ(rewriteMayaUvs(kQuadScene).text, rewritten(kQuadScene));
    EXPECT_EQ(rewriteMayaUvs("").refusal, "the file is empty");
    for (const RefusedScene& refused : refusedScenes()) {
        const uvmerge::MayaUvRewrite result =
            rewriteMayaUvs(replaced(kQuadScene, refused.from, refused.to));
        EXPECT_FALSE(result.ok) << refused.to;
        EXPECT_NE(result.refusal.find(refused.reason), std::string::npos)
            << refused.reason << "\n  got: " << result.refusal;
        EXPECT_TRUE(result.text.empty());
    }
}

// Digit runs far beyond any number type: counts and indices saturate, reals overflow to
// infinity; nothing is undefined and nothing is sized after them.
TEST(MayaUvRewrite, OverlongNumbers) {
    const std::string digits(400, '9');
    std::string scene = replaced(kQuadScene, " 0 0 1 0 1 1 0 1;", " " + digits + " 0 1 0 1 1 0 1;");
    EXPECT_NE(rewritten(scene).find("\n inf 0.00000 1.00000"), std::string::npos);
    scene = replaced(kQuadScene, " 0 0 1 0 1 1 0 1;", " -0." + digits + " 0 1 0 1 1 0 1;");
    EXPECT_NE(rewritten(scene).find("nan 0.00000 1.00000"), std::string::npos);
    scene = replaced(kQuadScene, " 0 0 1 0 1 1 0 1;", " -0 0 1 0 1 1 0 1;");
    EXPECT_NE(rewritten(scene).find("\n -0.00000 0.00000 1.00000"), std::string::npos);

    scene = replaced(kQuadScene, "mu 0 4 0 1 2 3", "mu 0 4 0 1 2 -" + digits);
    EXPECT_TRUE(rewriteMayaUvs(scene).ok); // saturates to a negative index: no UV
    scene = replaced(kQuadScene, "f 4 0 1 2 3 mu", "f 4 0 1 2 " + digits + " mu");
    EXPECT_NE(rewriteMayaUvs(scene).refusal.find("uses edge 2147483647"), std::string::npos);
    scene = replaced(kQuadScene, "f 4 0 1 2 3 mu", "f 4 0 1 2 -" + digits + " mu");
    EXPECT_NE(rewriteMayaUvs(scene).refusal.find("uses edge -2147483648"), std::string::npos);
}

} // namespace
} // namespace neq::test
