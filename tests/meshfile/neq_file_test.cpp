#include "meshfile/face_ids.h"
#include "meshfile/neq_file.h"
#include "neqbridge/neqbridge.hpp"
#include "support/case_table.h"
#include "support/temp_dir.h"
#include "tooling/neq_writer.h"
#include "tooling/sample_mesh.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

namespace neq::meshfile {
namespace {

using Ids = std::vector<std::uint32_t>;

char b(int value) {
    return static_cast<char>(value);
}

TEST(NeqFieldReaders, AssembleLittleEndianFromUnsignedBytes) {
    EXPECT_EQ(readShort(b(0xFF), b(0xFF)), -1);
    EXPECT_EQ(readShort(b(0x00), b(0x80)), -32768);
    EXPECT_EQ(readUnInt(b(0xFF), b(0xFF), b(0xFF), b(0xFF)), 4294967295u);
    EXPECT_EQ(readSignInt(b(0xFF), b(0xFF), b(0xFF), b(0xFF)), -1);
    // A high low byte must not spill sign bits into the bytes above it.
    EXPECT_EQ(readUnInt(b(0x80), b(0x00), b(0x00), b(0x00)), 0x80u);
    EXPECT_EQ(readSignInt(b(0x21), b(0x4E), b(0x00), b(0x00)), 20001);
    EXPECT_EQ(readaFloat(b(0x00), b(0x00), b(0x80), b(0xBE)), -0.25f);
    EXPECT_EQ(readanInt(b(0xFF)), 255);
}

NeqBytes loaded(const std::string& path) {
    NeqBytes bytes{1, 2, 3};
    EXPECT_TRUE(loadNeqFile(path.c_str(), bytes));
    return bytes;
}

TEST(NeqLoader, RepeatsTheLastByteAndRefusesWhatItCannotRead) {
    test::TempDir dir;
    test::writeFile(dir.file("abc"), "abc");
    EXPECT_EQ(loaded(dir.file("abc")), (NeqBytes{'a', 'b', 'c', 'c'}));
    test::writeFile(dir.file("empty"), "");
    EXPECT_EQ(loaded(dir.file("empty")), (NeqBytes{0}));

    NeqBytes bytes{1};
    EXPECT_FALSE(loadNeqFile(dir.path().c_str(), bytes)); // a directory
    EXPECT_TRUE(bytes.empty());
    EXPECT_FALSE(loadNeqFile(dir.file("missing").c_str(), bytes));
    EXPECT_FALSE(loadNeqFile(nullptr, bytes));
}

// Block header bytes: tag, length, count, unused.
NeqBytes header(std::uint32_t tag, std::uint32_t length, std::uint32_t count = 0) {
    NeqBytes out;
    for (std::uint32_t word : {tag, length, count, 0u})
        for (int shift = 0; shift < 32; shift += 8)
            out.push_back(static_cast<std::uint8_t>(word >> shift));
    return out;
}

NeqBytes fileOf(std::initializer_list<NeqBytes> blocks) {
    NeqBuilder builder;
    for (const NeqBytes& block : blocks)
        builder.raw(block.data(), block.size());
    return builder.take();
}

TEST(NeqBlockWalk, SkipsByLengthAndEndsAtTheBufferEnd) {
    const NeqBytes zeroLength = fileOf({header(15001, 0), header(kUvTag, 16)});
    EXPECT_EQ(findBlock(NeqView(zeroLength), kUvTag), 48u) << "length 0 skips 16 bytes";

    const NeqBytes chain =
        fileOf({header(kVertexTag, 40), NeqBytes(24, 7), header(kGroupTag, 16), header(0, 0)});
    EXPECT_EQ(findBlock(NeqView(chain), kVertexTag), 32u);
    EXPECT_EQ(findBlock(NeqView(chain), kGroupTag), 72u);
    EXPECT_EQ(findBlock(NeqView(chain), kUvTag), std::nullopt) << "ends in the zero blocks";

    const std::uint32_t hostileLengths[] = {std::numeric_limits<std::uint32_t>::max(), 0x80000000u,
                                            1000, 17};
    for (std::uint32_t length : hostileLengths) {
        const NeqBytes hostile = fileOf({header(kVertexTag, length), header(kUvTag, 16)});
        EXPECT_EQ(findBlock(NeqView(hostile), kUvTag), std::nullopt) << length;
    }
    const NeqBytes headerOnly(kFileHeaderSize, 0);
    EXPECT_EQ(findBlock(NeqView(headerOnly), 0), std::nullopt);
    // A tag cut by the end of the buffer is never the wanted one.
    const NeqBytes cutTag = fileOf({header(15001, 16), NeqBytes{0xB9, 0x88}});
    EXPECT_EQ(findBlock(NeqView(cutTag), kColourTag), std::nullopt);
}

Mesh twoQuadsOneTriangle() {
    Mesh mesh;
    mesh.faces = {{0, 1, 2, 3}, {4, 5, 6, 0}, {1, 2, 3, -1}};
    return mesh;
}

TEST(FaceIds, MultiplierIsFourToTheLevelMinusOneTruncated) {
    for (const test::CaseRow& row : test::readCaseTable("meshfile/subdivision_multipliers.txt"))
        EXPECT_EQ(subdivisionMultiplier(std::stod(row[0])), std::stoul(row[1])) << row[0];
}

// 4·m per quad, 3·m per triangle; at level 16, 4 * 2^30 wraps to 0 in the unsigned entries.
TEST(FaceIds, QuadsAndTrianglesPerLevel) {
    const NeqBytes bytes = buildNeqFacesFirst(twoQuadsOneTriangle());
    Ids ids{99};
    EXPECT_EQ(readFaceIds(NeqView(bytes), 2, ids), 3u);
    EXPECT_EQ(ids, (Ids{16, 16, 12}));
    EXPECT_EQ(readFaceIds(NeqView(bytes), 16, ids), 3u);
    EXPECT_EQ(ids, (Ids{0, 0, 3u << 30}));
}

TEST(FaceIds, ReadsTheFirstBlockWhateverItsTagAndClampsItsCount) {
    // A vertex-first file, read as faces 16 bytes at a time: the 4th word of record 0 is
    // vertex 1's x = -1.0f, whose sign bit reads as a negative index (a triangle).
    Mesh mesh;
    mesh.vertices = {{0, 0, 0}, {-1, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    NeqBytes bytes = buildNeqChain(mesh);
    Ids ids;
    EXPECT_EQ(readFaceIds(NeqView(bytes), 1, ids), 4u);
    EXPECT_EQ(ids, (Ids{3, 4, 4, 4}));

    // A count far past the end yields only the records that fit in the buffer.
    bytes = buildNeqFacesFirst(twoQuadsOneTriangle());
    bytes[kFirstBlockCountOffset + 3] = 0x7F;
    EXPECT_EQ(readFaceIds(NeqView(bytes), 1, ids), 4u) << "3 faces and the 16 zero bytes";
    EXPECT_EQ(ids, (Ids{4, 4, 3, 4}));

    const NeqBytes tooShort(kFirstBlockCountOffset + 3, 0xFF);
    EXPECT_EQ(readFaceIds(NeqView(tooShort), 1, ids), 0u);
}

// The demo's and the benchmarks' meshes, byte for byte (sample_base.NeQ is base.NeQ).
TEST(SampleMesh, BaseSubdividedAndBenchmarkMeshesAsGoldens) {
    const Mesh base = makeSampleMesh();
    const std::pair<Mesh, const char*> cases[] = {
        {base, "meshfile/sample_base.NeQ"},
        {subdivideMesh(base), "meshfile/sample_subdivided.NeQ"},
        {makeBenchmarkMesh(20, 3), "meshfile/benchmark_20_faces_3_tiles.NeQ"},
    };
    for (const auto& [mesh, golden] : cases) {
        const NeqBytes bytes = buildNeqChain(mesh);
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), test::readTestData(golden)) << golden;
    }
    EXPECT_TRUE(makeBenchmarkMesh(100, 0).uvs.empty());
    Mesh broken = base;
    broken.faces.push_back({0, 1, 99, -1});
    EXPECT_THROW(subdivideMesh(broken), std::out_of_range);
}

} // namespace
} // namespace neq::meshfile
