#include "uvmerge/vd_uv_merge_algo.h"

#include "support/child_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using Uvs = VDArray<VDVector2f>;
using Ints = VDArray<int>;

struct Case {
    Uvs uvs;
    Ints uvIndices, vertIndices;
    int nbVertices;
};

// The weld done the plain way: per-corner values, a list of corners per vertex pushed at
// the front (highest corner first), each unnumbered corner compared with the later ones.
bool modelMerge(Case& c) {
    if (c.uvs.empty() || c.vertIndices.empty()) return false;
    const int n = static_cast<int>(c.vertIndices.size());
    int vertices = c.nbVertices;
    if (vertices < 0)
        vertices = std::max(-1, *std::max_element(c.vertIndices.begin(), c.vertIndices.end())) + 1;
    Uvs perCorner(c.uvs.begin(), c.uvs.begin() + (c.uvIndices.empty() ? n : 0));
    for (int i = 0; i < static_cast<int>(c.uvIndices.size()); ++i)
        perCorner.push_back(c.uvIndices[i] >= 0 ? c.uvs[c.uvIndices[i]] : VDVector2f());
    std::vector<int> head(vertices, -1), next(n, -1);
    for (int i = 0; i < n; ++i)
        if (c.vertIndices[i] >= 0) next[i] = std::exchange(head[c.vertIndices[i]], i);
    c.uvIndices.reinit(n, -1);
    int k = 0;
    for (int v = 0; v < vertices; ++v)
        for (int a = head[v]; a >= 0; a = next[a]) {
            if (c.uvIndices[a] != -1) continue;
            c.uvIndices[a] = k;
            for (int b = next[a]; b >= 0; b = next[b])
                if (perCorner[b] == perCorner[a]) c.uvIndices[b] = k;
            ++k;
        }
    c.uvs.assign(k, VDVector2f());
    for (int i = 0; i < n; ++i)
        if (c.uvIndices[i] >= 0) c.uvs[c.uvIndices[i]] = perCorner[i];
    return true;
}

std::vector<std::uint32_t> bitsOf(const Uvs& uvs) {
    std::vector<std::uint32_t> bits(uvs.size() * 2);
    if (!uvs.empty()) std::memcpy(bits.data(), uvs.data(), bits.size() * 4);
    return bits;
}

// Up to 300 corners on few vertices, values from a small pool (both zeros, NaNs, one ulp
// apart), negative indices, both input forms, given and computed vertex counts, now and
// then a sparse numbering or one vertex with far more corners than a real mesh has.
Case randomCase(std::mt19937& random) {
    const float kNaN = std::numeric_limits<float>::quiet_NaN();
    const float pool[] = {0.0f, -0.0f, 0.5f, 0.25f, std::nextafter(0.25f, 1.0f),
                          kNaN, -kNaN, 1.0f, -3.5f, std::numeric_limits<float>::infinity()};
    auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    auto uv = [&] { return VDVector2f(pool[pick(10)], pool[pick(10)]); };
    Case c;
    const int corners = 1 + pick(300), vertices = 1 + pick(pick(4) == 0 ? 3 : 40);
    const int spread = pick(4) == 0 ? 5000 : 1, values = 1 + pick(40);
    for (int i = 0; i < values; ++i)
        c.uvs.push_back(uv());
    const bool perCorner = pick(4) == 0;
    for (int i = 0; i < corners; ++i) {
        c.vertIndices.push_back(pick(8) == 0 ? -1 - pick(3) : pick(vertices) * spread);
        if (!perCorner) c.uvIndices.push_back(pick(8) == 0 ? -1 - pick(5) : pick(values));
    }
    while (perCorner && static_cast<int>(c.uvs.size()) < corners + pick(3))
        c.uvs.push_back(uv());
    c.nbVertices = pick(2) == 0 ? -1 : (vertices - 1) * spread + 1 + pick(3);
    return c;
}

TEST(UvMerge, MatchesThePlainWeldOnRandomMeshes) {
    std::mt19937 random(20240610);
    for (int seed = 0; seed < 3000; ++seed) {
        Case mine = randomCase(random), model = mine;
        ASSERT_EQ(
            VDUVMergeAlgo::mergeUVs(mine.uvs, mine.uvIndices, mine.vertIndices, mine.nbVertices),
            modelMerge(model))
            << seed;
        EXPECT_EQ(bitsOf(mine.uvs), bitsOf(model.uvs)) << seed;
        EXPECT_EQ(mine.uvIndices, model.uvIndices) << seed;
    }
}

// A corner on vertex 2^31 - 2 once took a table of 8 GiB; a failed allocation once
// escaped as an exception instead of a refusal that leaves the arguments alone.
TEST(UvMerge, HugeVertexNumbersCostOnlyTheCorners) {
    using namespace neq::test;
    EXPECT_TRUE(runInChild({}, [] {
        if (!limitAddressSpace(rlim_t{1} << 30)) return false;
        Uvs uvs = {{0.5f, 0.5f}, {0.5f, 0.5f}, {1, 1}};
        Ints uvIndices = {0, 1, 2};
        const int huge = std::numeric_limits<int>::max() - 1;
        return VDUVMergeAlgo::mergeUVs(uvs, uvIndices, {huge, huge, 7}, -1) &&
               uvIndices == Ints{1, 1, 0} && uvs == Uvs{{1, 1}, {0.5f, 0.5f}};
    }));
    if (kAddressSanitizer) return;
    EXPECT_TRUE(runInChild({}, [] {
        const std::size_t corners = 4000000;
        Uvs uvs(corners, VDVector2f(1, 2));
        Ints uvIndices(corners, 0);
        const Ints vertIndices(corners, 3), before = uvIndices;
        if (!limitAddressSpace(addressSpaceInUse() + (8u << 20))) return false;
        return !VDUVMergeAlgo::mergeUVs(uvs, uvIndices, vertIndices, -1) && uvs.size() == corners &&
               uvIndices == before;
    }));
}

// The worked example: vertex 0's highest corner (4) is met first and owns number 0;
// corners 0 and 2 differ by one ulp, NaNs never share, corner 5 is a filler.
TEST(UvMerge, NumbersByVertexThenByDescendingCornerWithExactEquality) {
    const float kNaN = std::numeric_limits<float>::quiet_NaN();
    Uvs uvs = {{1, 1}, {kNaN, 0}, {1, 1.0000001f}, {kNaN, 0}, {1, 1}, {7, 7}};
    Ints uvIndices; // one value per corner
    ASSERT_TRUE(VDUVMergeAlgo::mergeUVs(uvs, uvIndices, {0, 1, 0, 1, 0, -1}, -1));
    EXPECT_EQ(uvIndices, (Ints{0, 3, 1, 2, 0, -1}));
    EXPECT_EQ(bitsOf(uvs), bitsOf(Uvs{{1, 1}, {1, 1.0000001f}, {kNaN, 0}, {kNaN, 0}}));
}

TEST(UvMerge, RefusesWithoutTouchingItsArguments) {
    const Uvs uvs = {{1, 2}, {3, 4}};
    const Ints uvIndices = {0, 1, 1}, vertIndices = {0, 1, 2};
    const Case kRefused[] = {
        {{}, uvIndices, vertIndices, -1},  // no UVs
        {uvs, uvIndices, {}, -1},          // no corners
        {uvs, {0, 2, 1}, vertIndices, -1}, // UV index past the list
        {uvs, {0, 1}, vertIndices, -1},    // not one UV index per corner
        {uvs, {}, vertIndices, -1},        // too few per-corner UVs
        {uvs, uvIndices, {0, 3, 1}, 3},    // vertex at the given count
        {uvs, uvIndices, {0, std::numeric_limits<int>::max(), 1}, -1}, // count not an int
    };
    for (const Case& refused : kRefused) {
        Case c = refused;
        EXPECT_FALSE(VDUVMergeAlgo::mergeUVs(c.uvs, c.uvIndices, c.vertIndices, c.nbVertices));
        EXPECT_EQ(c.uvs, refused.uvs);
        EXPECT_EQ(c.uvIndices, refused.uvIndices);
    }
}

} // namespace
