#include "meshfile/face_ids.h"
#include "meshfile/neq_file.h"
#include "tooling/neq_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace neq::meshfile {
namespace {

using Ids = std::vector<std::uint32_t>;

Mesh twoQuadsOneTriangle() {
    Mesh mesh;
    mesh.faces = {{0, 1, 2, 3}, {4, 5, 6, 0}, {1, 2, 3, -1}};
    return mesh;
}

// Past the 32-bit range the power saturates rather than converting undefinedly.
TEST(FaceIds, MultiplierIsFourToTheLevelMinusOneTruncated) {
    const double kInf = std::numeric_limits<double>::infinity();
    const std::uint32_t kMax = 2147483647u;
    const struct {
        double level;
        std::uint32_t multiplier;
    } cases[] = {
        {0, 0},  {1, 1},         {2, 4},     {3, 16},      {1.5, 2},
        {-3, 0}, {16, 1u << 30}, {17, kMax}, {kInf, kMax}, {std::nan(""), 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(subdivisionMultiplier(c.level), c.multiplier) << c.level;
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
    // A vertex-first file: its vertex records are read as faces, 16 bytes at a time.
    Mesh mesh;
    mesh.vertices = {{0, 0, 0}, {-1, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    NeqBytes bytes = buildNeqChain(mesh);
    Ids ids;
    // Count 4 at offset 40; the 4th word of record 0 is vertex 1's x = -1.0f, whose
    // sign bit reads as a negative index: a triangle.
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

} // namespace
} // namespace neq::meshfile
