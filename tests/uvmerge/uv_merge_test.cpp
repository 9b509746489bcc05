#include "uvmerge/vd_uv_merge_algo.h"

#include "support/child_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace {

using Uvs = VDArray<VDVector2f>;
using Ints = VDArray<int>;

// The weld done the plain way: per-corner values, a linked list of corners per vertex
// (pushed at the front, so each list runs from the highest corner down), and every
// unnumbered corner compared with all the later ones of its list.
bool modelMerge(Uvs& uvs, Ints& uvIndices, const Ints& vertIndices, int nbVertices) {
    if (uvs.empty() || vertIndices.empty()) return false;
    const int n = static_cast<int>(vertIndices.size());
    if (nbVertices < 0) {
        int maximum = -1;
        for (int v : vertIndices)
            maximum = std::max(maximum, v);
        nbVertices = maximum + 1;
    }
    Uvs perCorner(n);
    if (!uvIndices.empty()) {
        for (int i = 0; i < n; ++i)
            if (uvIndices[i] >= 0) perCorner[i] = uvs[uvIndices[i]];
    } else {
        perCorner.assign(uvs.begin(), uvs.begin() + n);
    }
    std::vector<int> head(nbVertices, -1), next(n, -1);
    for (int i = 0; i < n; ++i) {
        const int v = vertIndices[i];
        if (v < 0) continue;
        next[i] = head[v];
        head[v] = i;
    }
    uvIndices.reinit(n, -1);
    int k = 0;
    for (int v = 0; v < nbVertices; ++v)
        for (int c = head[v]; c >= 0; c = next[c]) {
            if (uvIndices[c] != -1) continue;
            uvIndices[c] = k;
            for (int d = next[c]; d >= 0; d = next[d])
                if (perCorner[d] == perCorner[c]) uvIndices[d] = k;
            ++k;
        }
    Uvs merged(k);
    for (int i = 0; i < n; ++i)
        if (uvIndices[i] >= 0) merged[uvIndices[i]] = perCorner[i];
    uvs.swap(merged);
    return true;
}

std::vector<std::uint32_t> bitsOf(const Uvs& uvs) {
    std::vector<std::uint32_t> bits(uvs.size() * 2);
    if (!uvs.empty()) std::memcpy(bits.data(), uvs.data(), bits.size() * 4);
    return bits;
}

struct Case {
    Uvs uvs;
    Ints uvIndices, vertIndices;
    int nbVertices;
};

// A few hundred corners over a few vertices, values from a small pool so that many are
// equal: repeated values, both zeros, NaNs, values one ulp apart; negative UV indices,
// filler corners, both input forms, given and computed vertex counts, and now and then
// one vertex with far more corners than any real mesh has.
Case randomCase(std::mt19937& random) {
    const float kNaN = std::numeric_limits<float>::quiet_NaN();
    const float pool[] = {0.0f, -0.0f, 0.5f, 0.25f, std::nextafter(0.25f, 1.0f),
                          kNaN, -kNaN, 1.0f, -3.5f, std::numeric_limits<float>::infinity()};
    auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    Case c;
    const int corners = 1 + pick(300);
    const int vertices = 1 + pick(pick(4) == 0 ? 3 : 40);
    // Now and then vertex numbers far beyond the corners (a sparse numbering).
    const int spread = pick(4) == 0 ? 5000 : 1;
    const int values = 1 + pick(40);
    for (int i = 0; i < values; ++i)
        c.uvs.push_back({pool[pick(10)], pool[pick(10)]});
    const bool perCorner = pick(4) == 0;
    for (int i = 0; i < corners; ++i) {
        c.vertIndices.push_back(pick(8) == 0 ? -1 - pick(3) : pick(vertices) * spread);
        if (!perCorner) c.uvIndices.push_back(pick(8) == 0 ? -1 - pick(5) : pick(values));
    }
    if (perCorner)
        while (static_cast<int>(c.uvs.size()) < corners + pick(3))
            c.uvs.push_back({pool[pick(10)], pool[pick(10)]});
    c.nbVertices = pick(2) == 0 ? -1 : (vertices - 1) * spread + 1 + pick(3);
    return c;
}

TEST(UvMerge, MatchesThePlainWeldOnRandomMeshes) {
    std::mt19937 random(20240610);
    for (int seed = 0; seed < 3000; ++seed) {
        Case mine = randomCase(random), model = mine;
        const bool ok =
            VDUVMergeAlgo::mergeUVs(mine.uvs, mine.uvIndices, mine.vertIndices, mine.nbVertices);
        ASSERT_EQ(ok, modelMerge(model.uvs, model.uvIndices, model.vertIndices, model.nbVertices))
            << "seed " << seed;
        EXPECT_EQ(bitsOf(mine.uvs), bitsOf(model.uvs)) << "seed " << seed; // bit for bit
        EXPECT_EQ(mine.uvIndices, model.uvIndices) << "seed " << seed;
    }
}

// A corner on vertex 2,147,483,646 once took a table of 8 GiB, and an allocation
// failure escaped as an exception; under 1 GiB of address space it welds at once.
TEST(UvMerge, HugeVertexNumbersCostOnlyTheCorners) {
    EXPECT_TRUE(neq::test::runInChild({}, [] {
        if (!neq::test::limitAddressSpace(rlim_t{1} << 30)) return false;
        Uvs uvs = {{0.5f, 0.5f}, {0.5f, 0.5f}, {1, 1}};
        Ints uvIndices = {0, 1, 2};
        const int huge = std::numeric_limits<int>::max() - 1;
        return VDUVMergeAlgo::mergeUVs(uvs, uvIndices, {huge, huge, 7}, -1) &&
               uvIndices == Ints{1, 1, 0} && uvs == Uvs{{1, 1}, {0.5f, 0.5f}};
    }));
    // A failed allocation is a refusal that leaves the arguments as they were.
    if (neq::test::kAddressSanitizer) return;
    EXPECT_TRUE(neq::test::runInChild({}, [] {
        const std::size_t corners = 4000000;
        Uvs uvs(corners, VDVector2f(1, 2));
        Ints uvIndices(corners, 0);
        const Ints vertIndices(corners, 3);
        if (!neq::test::limitAddressSpace(neq::test::addressSpaceInUse() + (8u << 20)))
            return false;
        return !VDUVMergeAlgo::mergeUVs(uvs, uvIndices, vertIndices, -1) && uvs.size() == corners &&
               std::all_of(uvIndices.begin(), uvIndices.end(), [](int i) { return i == 0; });
    }));
}

// One worked example; the model comparison covers the rest. Vertex 0 has corners 0, 2,
// 4: the highest is met first and owns number 0. Corners 0 and 2 differ by one ulp, NaNs
// never share, and corner 5 is a filler.
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
    const Ints uvIndices = {0, 1, 1};
    const Ints vertIndices = {0, 1, 2};
    const struct {
        Uvs uvs;
        Ints uvIndices;
        Ints vertIndices;
        int nbVertices;
    } kRefused[] = {
        {{}, uvIndices, vertIndices, -1},  // no UVs
        {uvs, uvIndices, {}, -1},          // no corners
        {uvs, {0, 2, 1}, vertIndices, -1}, // UV index past the list
        {uvs, {0, 1}, vertIndices, -1},    // not one UV index per corner
        {uvs, {}, vertIndices, -1},        // too few per-corner UVs
        {uvs, uvIndices, {0, 3, 1}, 3},    // vertex at the given count
        {uvs, uvIndices, {0, std::numeric_limits<int>::max(), 1}, -1}, // count not an int
    };
    for (const auto& refused : kRefused) {
        Uvs u = refused.uvs;
        Ints i = refused.uvIndices;
        EXPECT_FALSE(VDUVMergeAlgo::mergeUVs(u, i, refused.vertIndices, refused.nbVertices));
        EXPECT_EQ(u, refused.uvs);
        EXPECT_EQ(i, refused.uvIndices);
    }
}

} // namespace
