// Every prefix of valid files through every reader, in memory in an exact-size heap block
// (a sanitizer build reports any read past its end) and on disk through the loader.

#include "api/result_codes.h"
#include "meshfile/face_ids.h"
#include "meshfile/groups.h"
#include "meshfile/obj_export.h"
#include "meshfile/rgb_block.h"
#include "meshfile/uv_tiles.h"
#include "support/temp_dir.h"
#include "tooling/neq_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <set>
#include <vector>

namespace neq::meshfile {
namespace {

using Ids = std::vector<std::uint32_t>;

Mesh validMesh() {
    Mesh mesh;
    mesh.vertices = {{0, 1, 2}, {3, 4, 5}, {6, 7, 8}, {9, 10, 11}};
    mesh.faces = {{0, 1, 2, 3}, {1, 2, 3, -1}, {3, 2, 1, 0}};
    mesh.uvs = {{0, 0, 1, 0, 1, 1, 0, 1}, {1, 1, 2, 1, 2, 2, 1, 2}, {0, 0, 1, 0, 1, 1, 0, 1}};
    mesh.colours = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}};
    mesh.groups = {1, 2, 1};
    return mesh;
}

const char kOut[] = "/dev/null"; // what is written is checked elsewhere

// The UV and group readers on a prefix of the chain file: a cut header is no block, and
// the count of a cut block is clamped to the records present.
void checkUvAndGroups(const NeqView& view, const Mesh& mesh, std::size_t wholeSize) {
    const std::size_t length = view.size();
    // File header, vertex block, face block and the UV block's own header.
    const std::size_t uvStart = 32 + 16 + 12 * 4 + 16 + 16 * 3 + 16;
    const auto scan = scanUvTiles(view);
    const auto split = UvTileSplit::plan(view);
    ASSERT_EQ(scan.has_value(), length >= uvStart) << length;
    ASSERT_EQ(split.has_value(), scan.has_value()) << length;
    if (split) {
        EXPECT_EQ(split->pairCount(), 4 * std::min<std::size_t>(3, (length - uvStart) / 32));
        EXPECT_EQ(split->tiles().size(), scan->tiles.size()) << length;
        for (std::size_t k = 0; k < split->tiles().size(); ++k)
            EXPECT_EQ(split->tileImage(k).size(), split->tileFileSize());
    }
    const std::size_t groupStart = wholeSize - 16 - 2 * mesh.groups.size();
    const auto groups = countDistinctGroups(view);
    ASSERT_EQ(groups.has_value(), length >= groupStart) << length;
    if (groups) {
        const std::size_t present = std::min<std::size_t>(3, (length - groupStart) / 2);
        EXPECT_EQ(*groups,
                  std::set<int>(mesh.groups.begin(), mesh.groups.begin() + present).size());
    }
}

TEST(EveryPrefix, ReadersStayInsideTheBufferAndGiveResults) {
    const Mesh mesh = validMesh();
    const NeqBytes files[] = {buildNeqForObjExport(mesh), buildNeqChain(mesh),
                              buildNeqFacesFirst(mesh), buildNeqColoursFirst(mesh)};
    test::TempDir dir;
    const std::string onDisk = dir.file("prefix.neq");
    for (const NeqBytes& file : files) {
        for (std::size_t length = 0; length <= file.size(); ++length) {
            const std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[length]);
            if (length != 0) std::memcpy(copy.get(), file.data(), length);
            const NeqView view(copy.get(), length);

            Ids ids{1, 2};
            EXPECT_LE(readFaceIds(view, 1, ids), length / 16);
            EXPECT_EQ(exportColours(view, kOut).status, ExportStatus::Written);
            const float result = api::hostCode(exportObj(view, kOut, {4, 3, 4}));
            if (&file == &files[1]) checkUvAndGroups(view, mesh, file.size());
            if (&file != &files[0]) continue;
            // A cut only removes bytes, so a tag is either read whole or found missing.
            EXPECT_TRUE(result == 0.0f || result == -1.0f) << length << ": " << result;

            // Through the loader, which adds the repeated last byte.
            writeBytesToFile(onDisk, NeqBytes(file.begin(), file.begin() + length));
            EXPECT_EQ(loadFaceIds(onDisk.c_str(), 2, ids).status, ReadStatus::Done);
            EXPECT_EQ(api::hostCode(exportColours(onDisk.c_str(), kOut)), 0.0f);
            ids = {4, 3, 4};
            const float loaded = api::hostCode(exportObj(onDisk.c_str(), kOut, ids));
            EXPECT_TRUE(loaded == 0.0f || (loaded == -1.0f && length < file.size()))
                << length << ": " << loaded;
        }
    }
}

} // namespace
} // namespace neq::meshfile
