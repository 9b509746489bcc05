// The UV weld of a scene's text, and of its file in place or into another.

#include "uvmerge/maya_file_rewrite.h"
#include "uvmerge/maya_uv_rewrite.h"

#include "support/case_table.h"
#include "support/child_process.h"
#include "support/host_library.h"
#include "support/temp_dir.h"
#include "tooling/maya_mesh_writer.h"
#include "tooling/sample_mesh.h"
#include "uvmerge/vd_uv_merge_algo.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace neq::test {
namespace {

using namespace uvmerge;
using Failure = MayaFileWeld::Failure;

// A row of unit quads with continuous UVs (one UV per vertex once welded); `triangle` adds
// a face over the last quad's right edge in reverse and a new apex.
meshfile::Mesh stripMesh(int quads, bool triangle) {
    meshfile::Mesh mesh;
    for (int c = 0; c <= quads; ++c) {
        mesh.vertices.push_back({static_cast<float>(c), 0, 0});
        mesh.vertices.push_back({static_cast<float>(c), 1, 0});
        const float u0 = c * 0.125f, u1 = (c + 1) * 0.125f;
        if (c < quads) mesh.faces.push_back({2 * c, 2 * c + 2, 2 * c + 3, 2 * c + 1});
        if (c < quads) mesh.uvs.push_back({u0, 0, u1, 0, u1, 1, u0, 1});
        if (c == quads && triangle) mesh.faces.push_back({2 * c + 1, 2 * c, 2 * c + 2, -1});
        if (c == quads && triangle) mesh.uvs.push_back({u0, 1, u0, 0, u0 + 0.0625f, 0.5f, 0, 0});
    }
    if (triangle) mesh.vertices.push_back({quads + 0.5f, 0.5f, 0});
    return mesh;
}

// One quad over vertices 0..3 with its four UVs: the smallest scene the rewrite welds.
const std::string& quadScene() {
    static const std::string text = readTestData("uvmerge/quad.ma");
    return text;
}

std::string rewritten(const std::string& scene) {
    const MayaUvRewrite result = rewriteMayaUvs(scene);
    EXPECT_TRUE(result.ok) << result.refusal;
    return result.text;
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

struct QuadVariant {
    std::string scene, expected;
};

// quad.ma changed by each row FROM|TO|EXPECTED of tests/data/uvmerge/NAME.
std::vector<QuadVariant> quadVariants(const std::string& name) {
    std::vector<QuadVariant> variants;
    for (CaseRow row : readCaseTable("uvmerge/" + name)) {
        const std::size_t nines = row[1].find("NINES");
        if (nines != std::string::npos) row[1].replace(nines, 5, std::string(400, '9'));
        variants.push_back({replaced(quadScene(), row[0], row[1]), row[2]});
    }
    EXPECT_GT(variants.size(), 7u) << name;
    return variants;
}

// quirks.ma: headers in any case after blanks, signs and points inside numbers, "1e-3"
// read as 1, surplus entries, a short edge line, "F" for "f", reversed edges, a negative
// UV index, counts in another order, shared and separate marks, "// END OF". no_marks.ma:
// nothing to weld, yet the transform lines and the text after "// End of " go.
TEST(MayaUvRewrite, GoldenScenesAndTransformLines) {
    EXPECT_EQ(rewritten(readTestData("uvmerge/quirks.ma")),
              readTestData("uvmerge/quirks_welded.ma"));
    const MayaUvRewrite result = rewriteMayaUvs(readTestData("uvmerge/no_marks.ma"));
    ASSERT_TRUE(result.ok);
    EXPECT_FALSE(result.welded);
    EXPECT_EQ(result.text, readTestData("uvmerge/no_marks_rewritten.ma"));

    EXPECT_EQ(rewritten("a\n\tsetAttr \".t\" 1;\n setAttr \".r\" 2;\nsetattr \".S\" 3\nb"), "a\nb");
    EXPECT_EQ(rewritten("// End of x\r\nmore"), "// End of x\r");
    EXPECT_EQ(rewritten(" // End of x\nmore\n"), " // End of x\nmore\n"); // first byte only
    EXPECT_EQ(rewritten("x"), "x");
}

// Changed scenes weld to a text holding EXPECTED; refused ones give it as the reason.
TEST(MayaUvRewrite, ChangedAndRefusedQuadScenes) {
    EXPECT_EQ(rewriteMayaUvs("").refusal, "the file is empty");
    for (const bool refusing : {false, true})
        for (const QuadVariant& v : quadVariants(refusing ? "refused.txt" : "changed.txt")) {
            const MayaUvRewrite result = rewriteMayaUvs(v.scene);
            EXPECT_EQ(result.ok, !refusing) << v.expected << ": " << result.refusal;
            EXPECT_NE((refusing ? result.refusal : result.text).find(v.expected), std::string::npos)
                << v.expected << "\n  got: " << result.text << result.refusal;
            EXPECT_TRUE(!refusing || result.text.empty());
        }
}

std::string houseScene(bool crlf) {
    MayaSceneOptions options;
    options.name = "house";
    options.crlf = crlf;
    return buildMayaScene(meshfile::makeSampleMesh(), options);
}

// The writer's layout, and the sample house welded from it (CR LF: removed lines leave LFs).
TEST(MayaUvRewrite, SampleHouseGoldens) {
    EXPECT_EQ(houseScene(false), readTestData("uvmerge/house.ma"));
    const std::string extra = "createNode transform -n \"extra\";\n";
    const MayaUvRewrite result = rewriteMayaUvs(houseScene(false) + extra);
    ASSERT_TRUE(result.ok) << result.refusal;
    EXPECT_EQ(result.text, readTestData("uvmerge/house_welded.ma"));
    EXPECT_TRUE(result.welded);
    EXPECT_EQ(std::vector<std::size_t>(
                  {result.uvsBefore, result.uvsAfter, result.faces, result.triangles}),
              std::vector<std::size_t>({33, 22, 9, 3}));

    EXPECT_EQ(rewritten(houseScene(true) + "createNode transform -n \"extra\";\r\n"),
              readTestData("uvmerge/house_crlf_welded.ma"));
}

// UVs in blocks of 250, faces in blocks of 500; the 251st UV is the triangle's apex.
TEST(MayaUvRewrite, BlocksOf250UvsAnd500Faces) {
    const std::tuple<int, bool, std::string, std::string> cases[] = {
        {125, false, "setAttr -s 252 \".uvst[0].uvsp\"", "uvsp[0:250]"},
        {124, false, "uvsp[0:249]\" -type \"float2\"\n", "uvsp[250"},
        {124, true, readTestData("uvmerge/strip_251_uvs_welded.ma"), ""},
        {500, false, "\tsetAttr -s 500 \".fc\";\n\tsetAttr \".fc[0:499]\"", ".fc[500"},
        {501, false, readTestData("uvmerge/strip_501_faces_welded.ma"), ""}};
    MayaSceneOptions options;
    options.name = "strip";
    for (const auto& [quads, triangle, found, absent] : cases) {
        const std::string text = rewritten(buildMayaScene(stripMesh(quads, triangle), options));
        if (absent.empty()) {
            EXPECT_EQ(text, found) << quads;
        } else {
            EXPECT_NE(text.find(found), std::string::npos) << quads;
            EXPECT_EQ(text.find(absent), std::string::npos) << quads;
        }
    }
}

// Links and failed replacements are the file layer's own tests.
TEST(MayaFileRewrite, WeldsInPlaceKeepingPermissionBitsOrIntoAnotherFile) {
    TempDir dir;
    const std::string scene = dir.file("quad.ma");
    writeFile(scene, quadScene());
    ASSERT_EQ(::chmod(scene.c_str(), 0640), 0);
    const MayaFileWeld weld = weldMayaFile(scene.c_str());
    EXPECT_EQ(weld.failure, Failure::none) << weld.reason;
    EXPECT_EQ(weld.rewrite.uvsAfter, 4u);
    EXPECT_EQ(readFile(scene), rewritten(quadScene()));
    EXPECT_EQ(modeOf(scene), 0640u);
    EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{"quad.ma"});

    // To another file: the input stays; a new output gets the usual permission bits.
    const std::string input = dir.file("in.ma"), output = dir.file("out.ma");
    writeFile(input, quadScene());
    const mode_t mask = ::umask(022);
    EXPECT_EQ(weldMayaFile(input.c_str(), output.c_str()).failure, Failure::none);
    ::umask(mask);
    EXPECT_EQ(readFile(input), quadScene());
    EXPECT_EQ(readFile(output), rewritten(quadScene()));
    EXPECT_EQ(modeOf(output), 0644u);
}

// Tens of megabytes, written in many pieces: what arrives is exactly the text made in memory.
TEST(MayaFileRewrite, LargeScenesAreReadAndWrittenWhole) {
    TempDir dir;
    const std::string scene = dir.file("strip.ma"), output = dir.file("welded.ma");
    MayaSceneOptions options;
    options.name = "strip";
    const std::string text = buildMayaScene(stripMesh(100000, true), options);
    ASSERT_GT(text.size(), 16u << 20);
    const std::string expected = rewritten(text);
    ASSERT_GT(expected.size(), 16u << 20);
    writeFile(scene, text);

    const MayaFileWeld toOther = weldMayaFile(scene.c_str(), output.c_str());
    EXPECT_EQ(toOther.failure, Failure::none) << toOther.reason;
    EXPECT_EQ(toOther.rewrite.faces, 100001u);
    EXPECT_TRUE(readFile(scene) == text);
    EXPECT_TRUE(readFile(output) == expected);
    EXPECT_TRUE(rewriteMayaFile(output.c_str()).rewrite.text == expected);
}

TEST(MayaFileRewrite, EveryRefusalLeavesTheFileAsItWas) {
    TempDir dir;
    const std::string scene = dir.file("scene.ma");
    for (const QuadVariant& refused : quadVariants("refused.txt")) {
        writeFile(scene, refused.scene);
        const MayaFileWeld weld = weldMayaFile(scene.c_str());
        EXPECT_EQ(weld.failure, Failure::refused) << refused.expected;
        EXPECT_NE(weld.reason.find(refused.expected), std::string::npos) << weld.reason;
        EXPECT_EQ(readFile(scene), refused.scene);
        EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{"scene.ma"});
    }
    writeFile(scene, "");
    EXPECT_EQ(weldMayaFile(scene.c_str()).reason, "the file is empty");
    EXPECT_EQ(readFile(scene), "");

    const MayaFileWeld missing = weldMayaFile(dir.file("none.ma").c_str());
    EXPECT_EQ(missing.failure, Failure::read);
    EXPECT_EQ(missing.reason, "No such file or directory");
}

// As an ordinary user: permission bits do not hold the superuser back.
TEST(MayaFileRewrite, ReadOnlyFilesAreLeftAlone) {
    TempDir dir;
    handToUnprivilegedUser(dir.path());
    const std::string scene = dir.file("scene.ma");
    writeFile(scene, quadScene());
    handToUnprivilegedUser(scene);
    ASSERT_EQ(::chmod(scene.c_str(), 0444), 0);
    EXPECT_TRUE(runInChild({std::nullopt, true}, [&] {
        const MayaFileWeld weld = weldMayaFile(scene.c_str());
        return weld.failure == Failure::write && weld.reason == "Permission denied";
    }));
    EXPECT_EQ(readFile(scene), quadScene());
}

// Which files the host's entry welds is tests/data/cli/transcripts/merge_uvs.txt.
TEST(MayaFileRewrite, HostEntryWeldsMayaScenesOnly) {
    TempDir dir;
    EXPECT_EQ(HostLibrary().call("NeQMergeUVs", nullptr), -1.0f);
    writeFile(dir.file("a.ma"), quadScene());
    const VDString path(dir.file("a.ma").c_str());
    EXPECT_FALSE(VDUVMergeAlgo::mergeUVsInNeQFile(path));
    EXPECT_FALSE(VDUVMergeAlgo::splitUVsInMayaFile(path));
    EXPECT_FALSE(VDUVMergeAlgo::splitUVsInNeQFile(path));
    EXPECT_EQ(readFile(dir.file("a.ma")), quadScene());
}

// A scene declaring huge counts over short data lines; a comment fills the rest.
std::string hostileScene(std::size_t size, std::size_t uvCount, std::size_t edgeCount) {
    std::string text = readTestData("uvmerge/hostile_head.ma");
    for (std::size_t n : {uvCount, uvCount - 1, edgeCount, edgeCount - 1, size - 2, size - 2})
        text = replaced(text, "@", std::to_string(n));
    text.append(size - text.size() - 1, '/');
    return text + "\n";
}

// Whatever its counts say, the weld keeps within 3 times the file plus 64 MB (a 10 MB
// scene once took 208 MB).
TEST(MayaFileRewrite, HostileCountsStayWithinThreeTimesTheFilePlus64MB) {
    constexpr std::size_t kSize = 10u << 20;
    const struct {
        std::size_t uvCount, edgeCount;
        bool welded;
    } kScenes[] = {{kSize - 1000, kSize - 1000, false}, {kSize / 9, kSize / 13, true}};
    TempDir dir;
    for (const auto& scene : kScenes) {
        writeFile(dir.file("h.ma"), hostileScene(kSize, scene.uvCount, scene.edgeCount));
        EXPECT_TRUE(runInChild({}, [&] {
            if (!limitAddressSpace(addressSpaceInUse() + 3 * kSize + (64u << 20))) return false;
            return VDUVMergeAlgo::mergeUVsInMayaFile(VDString(dir.file("h.ma").c_str())) ==
                   scene.welded;
        })) << scene.uvCount;
    }
}

} // namespace
} // namespace neq::test
