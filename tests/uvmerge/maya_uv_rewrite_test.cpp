#include "uvmerge/maya_uv_rewrite.h"

#include "support/temp_dir.h"
#include "uvmerge/maya_test_scenes.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

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

// Short data lines read their missing UVs and edges as 0 and drop their missing faces;
// a later line over the same range wins entry by entry. Digit runs far beyond any
// number type saturate (counts, indices) or overflow to infinity (reals); nothing is
// sized after them.
TEST(MayaUvRewrite, ChangedQuadScenes) {
    const std::string uvLine = " 0 0 1 0 1 1 0 1;", nines(400, '9');
    const std::string later = "\tsetAttr \".uvst[0].uvsp[0:3]\" -type \"float2\"\n 5 5;\n"
                              "\tsetAttr \".uvst[0].uvsp[2:2]\" -type \"float2\"\n 9 9;\n";
    const struct {
        std::string from, to;
        bool ok;
        std::string found; // in the text, or in the refusal
    } cases[] = {
        {uvLine, " 0.5 0.25 0.75;", true,
         "\n 0.50000 0.25000 0.75000 0.00000 0.00000 0.00000 0.00000 0.00000;\n"},
        {uvLine + "\n", " 1 1 2 2 3 3 4 4;\n" + later, true,
         "[0:3]\" -type \"float2\"\n 5.00000 5.00000 0.00000 0.00000 9.00000 9.00000 0.00000 "
         "0.00000;\n"},
        // The face range promises three faces; the line holds one.
        {"fc[0:0]", "fc[0:2]", true, "\tsetAttr -s 1 \".fc\";\n\tsetAttr \".fc[0:0]\""},
        // Edge 3 reads (0, 0): the last corner is on vertex 0 too and, as the higher
        // corner, its UV (0, 1) comes first.
        {" 2 3 0 3 0 0;", " 2 3 0;", true,
         " 0.00000 1.00000 0.00000 0.00000 1.00000 0.00000 1.00000 1.00000;\n"},
        {uvLine, " " + nines + " 0 1 0 1 1 0 1;", true, "\n inf 0.00000 1.00000"},
        {uvLine, " -0." + nines + " 0 1 0 1 1 0 1;", true, "nan 0.00000 1.00000"},
        {uvLine, " -0 0 1 0 1 1 0 1;", true, "\n -0.00000 0.00000 1.00000"},
        {"mu 0 4 0 1 2 3", "mu 0 4 0 1 2 -" + nines, true,
         "1.00000 0.00000 0.00000;\n"}, // UV (0, 0)
        {"f 4 0 1 2 3 mu", "f 4 0 1 2 " + nines + " mu", false, "uses edge 2147483647"},
        {"f 4 0 1 2 3 mu", "f 4 0 1 2 -" + nines + " mu", false, "uses edge -2147483648"},
    };
    for (const auto& c : cases) {
        const uvmerge::MayaUvRewrite result = rewriteMayaUvs(replaced(quadScene(), c.from, c.to));
        EXPECT_EQ(result.ok, c.ok) << c.to;
        EXPECT_NE((c.ok ? result.text : result.refusal).find(c.found), std::string::npos)
            << c.to << "\ngot: " << result.text << result.refusal;
    }
}

TEST(MayaUvRewrite, RefusesScenesOutsideTheLayout) {
    EXPECT_EQ(rewriteMayaUvs("").refusal, "the file is empty");
    for (const RefusedScene& refused : refusedScenes()) {
        const uvmerge::MayaUvRewrite result = rewriteMayaUvs(refused.scene);
        EXPECT_FALSE(result.ok) << refused.reason;
        EXPECT_NE(result.refusal.find(refused.reason), std::string::npos)
            << refused.reason << "\n  got: " << result.refusal;
        EXPECT_TRUE(result.text.empty());
    }
}

} // namespace
} // namespace neq::test
