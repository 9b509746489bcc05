#include "uvmerge/maya_file_rewrite.h"

#include "support/child_process.h"
#include "support/host_library.h"
#include "support/temp_dir.h"
#include "tooling/maya_mesh_writer.h"
#include "uvmerge/maya_test_scenes.h"
#include "uvmerge/vd_uv_merge_algo.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>
#include <vector>

namespace neq::test {
namespace {

using uvmerge::MayaFileWeld;
using uvmerge::weldMayaFile;
using Failure = MayaFileWeld::Failure;

mode_t permissionBits(const std::string& path) {
    struct stat info {};
    ::stat(path.c_str(), &info);
    return info.st_mode & 07777;
}

const std::string& weldedQuad() {
    static const std::string text = rewritten(quadScene());
    return text;
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
    EXPECT_EQ(readFile(scene), weldedQuad());
    EXPECT_EQ(permissionBits(scene), 0640u);
    EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{"quad.ma"});

    // To another file: the input stays; a new output gets the usual permission bits.
    const std::string input = dir.file("in.ma"), output = dir.file("out.ma");
    writeFile(input, quadScene());
    const mode_t mask = ::umask(022);
    EXPECT_EQ(weldMayaFile(input.c_str(), output.c_str()).failure, Failure::none);
    ::umask(mask);
    EXPECT_EQ(readFile(input), quadScene());
    EXPECT_EQ(readFile(output), weldedQuad());
    EXPECT_EQ(permissionBits(output), 0644u);
}

// Tens of megabytes in and out: the file is read whole and written in many pieces, with
// writing to disk started along the way; what arrives is exactly the text made in memory.
TEST(MayaFileRewrite, LargeScenesAreReadAndWrittenWhole) {
    TempDir dir;
    const std::string scene = dir.file("strip.ma"), output = dir.file("welded.ma");
    uvmerge::MayaSceneOptions options;
    options.name = "strip";
    const std::string text = uvmerge::buildMayaScene(stripMesh(100000, true), options);
    ASSERT_GT(text.size(), 16u << 20);
    const std::string expected = rewritten(text);
    ASSERT_GT(expected.size(), 16u << 20);
    writeFile(scene, text);

    const MayaFileWeld toOther = weldMayaFile(scene.c_str(), output.c_str());
    EXPECT_EQ(toOther.failure, Failure::none) << toOther.reason;
    EXPECT_EQ(toOther.rewrite.faces, 100001u);
    EXPECT_TRUE(readFile(scene) == text);
    EXPECT_TRUE(readFile(output) == expected);
    EXPECT_TRUE(uvmerge::rewriteMayaFile(output.c_str()).rewrite.text == expected);
}

TEST(MayaFileRewrite, EveryRefusalLeavesTheFileAsItWas) {
    TempDir dir;
    const std::string scene = dir.file("scene.ma");
    for (const QuadVariant& refused : refusedScenes()) {
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

// Permission bits do not hold the superuser back: the weld runs as an ordinary user.
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

// A 10 MB scene that declares UV and edge counts up to `share` of what the rules allow
// (old rules: one entry per byte), with short data lines and an edge on a vertex near
// the file's size; a comment fills the rest.
std::string hostileScene(std::size_t size, int uvCount, int edgeCount) {
    const std::string vertex = std::to_string(size - 2);
    std::string text = "createNode mesh -n \"h\";\n\tsetAttr \".uvst[0].uvsn\" -type \"string\" "
                       "\"map1\";setAttr -s " +
                       std::to_string(uvCount) +
                       " \".uvst[0].uvsp\";\n"
                       "\tsetAttr \".uvst[0].uvsp[0:" +
                       std::to_string(uvCount - 1) +
                       "]\" -type \"float2\"\n 0.5 0.5;\n\tsetAttr -s " +
                       std::to_string(edgeCount) +
                       " \".ed\";\n\tsetAttr \".ed[0:" + std::to_string(edgeCount - 1) +
                       "]\"\n 0 " + vertex + " 0 " + vertex +
                       " 1 0 1 0 0;\n\tsetAttr -s 1 \".fc\";\n"
                       "\tsetAttr \".fc[0:0]\" -type \"polyFaces\"\n f 3 0 1 2 mu 0 3 0 0 0;\n//";
    text.append(size - text.size() - 1, '/');
    return text + "\n";
}

// The weld keeps within 3 times the file plus 64 MB whatever its counts and vertex
// numbers say (a 10 MB scene once took 208 MB). The address space is capped at that
// much beyond what the process already maps, in a child.
TEST(MayaFileRewrite, HostileCountsStayWithinThreeTimesTheFilePlus64MB) {
    constexpr std::size_t kSize = 10u << 20;
    const struct {
        int uvCount, edgeCount;
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
