// Every prefix of valid files through every reader of faces, colours and OBJ export:
// in memory each prefix sits in its own exact-size heap block, so a sanitizer build
// reports any read past its end; on disk each prefix goes through the loader too.

#include "meshfile/face_ids.h"
#include "meshfile/neq_writer.h"
#include "meshfile/obj_export.h"
#include "meshfile/rgb_block.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

namespace neq::meshfile {
namespace {

using Ids = std::vector<std::uint32_t>;

std::vector<NeqBytes> validFiles() {
    Mesh mesh;
    mesh.vertices = {{0, 1, 2}, {3, 4, 5}, {6, 7, 8}, {9, 10, 11}};
    mesh.faces = {{0, 1, 2, 3}, {1, 2, 3, -1}, {3, 2, 1, 0}};
    mesh.uvs = {{0, 0, 1, 0, 1, 1, 0, 1}, {1, 1, 2, 1, 2, 2, 1, 2}, {0, 0, 1, 0, 1, 1, 0, 1}};
    mesh.colours = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}};
    mesh.groups = {1, 2, 1};
    return {buildNeqForObjExport(mesh), buildNeqChain(mesh), buildNeqFacesFirst(mesh),
            buildNeqColoursFirst(mesh)};
}

// Output goes nowhere: what is written is checked elsewhere, and rewriting a real file
// hundreds of times costs seconds on some file systems.
const char kOut[] = "/dev/null";

TEST(EveryPrefix, InMemoryReadersStayInsideTheBuffer) {
    const std::vector<NeqBytes> files = validFiles();
    for (std::size_t shape = 0; shape < files.size(); ++shape) {
        const NeqBytes& file = files[shape];
        for (std::size_t length = 0; length <= file.size(); ++length) {
            const std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[length]);
            if (length != 0) std::memcpy(copy.get(), file.data(), length);
            const NeqView view(copy.get(), length);

            Ids ids{1, 2};
            EXPECT_LE(readFaceIds(view, 1, ids), length / 16);
            EXPECT_EQ(exportColours(view, kOut).status, ExportStatus::Written);
            const float result = exportObj(view, kOut, {4, 3, 4}).hostResult();
            // A cut only removes bytes, so a tag is either read whole or found missing.
            if (shape == 0) {
                EXPECT_TRUE(result == 0.0f || result == -1.0f) << length << ": " << result;
            }
        }
    }
}

TEST(EveryPrefix, LoadedFilesGiveResultsNotCrashes) {
    test::TempDir dir;
    const NeqBytes file = validFiles()[0];
    for (std::size_t length = 0; length <= file.size(); ++length) {
        const std::string in = dir.file(std::to_string(length) + ".neq");
        writeBytesToFile(in, NeqBytes(file.begin(), file.begin() + length));
        Ids ids;
        EXPECT_GE(loadFaceIds(in.c_str(), 2, ids), 0.0f);
        EXPECT_EQ(exportColours(in.c_str(), kOut).hostResult(), 0.0f);
        ids = {4, 3, 4};
        const float result = exportObj(in.c_str(), kOut, ids).hostResult();
        EXPECT_TRUE(result == 0.0f || result == -1.0f) << length << ": " << result;
        if (length == file.size()) {
            EXPECT_EQ(result, 0.0f);
        }
    }
}

} // namespace
} // namespace neq::meshfile
