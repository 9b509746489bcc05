#include "foundation/vd_vector.h"

#include "support/case_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>

namespace {

using neq::test::CaseRow;
using neq::test::readCaseTable;

TEST(VDVector, ComponentsArePacked) {
    static_assert(sizeof(VDVector2d) == 16 && sizeof(VDVector2f) == 8, "packed");
    static_assert(sizeof(VDVector3d) == 24 && sizeof(VDVector3f) == 12, "packed");
    static_assert(std::is_standard_layout<VDVector3f>::value, "file image");
    EXPECT_EQ(VDVector3f(VDVector2f(2, 3)), VDVector3f(2, 3, 0));
    EXPECT_EQ(VDVector2d::m_zero, VDVector2d(0, 0));
    EXPECT_EQ(VDVector2f::m_zero, VDVector2f(0, 0));
    EXPECT_EQ(VDVector3d::m_zero, VDVector3d(0, 0, 0));
    EXPECT_EQ(VDVector3f::m_zero, VDVector3f(0, 0, 0));
}

template <class V> V parsed(const std::string& text) {
    V v;
    std::istringstream in(text);
    for (auto* c : {&v.x, &v.y, &v.z}) {
        std::string number;
        in >> number;
        *c = sizeof *c == 4 ? std::strtof(number.c_str(), nullptr)
                            : std::strtod(number.c_str(), nullptr);
    }
    return v;
}

template <class V> void checkCase(const CaseRow& row) {
    V v = parsed<V>(row[2]), out;
    if (row[0] == "normalize") {
        EXPECT_EQ(v.normalize(), std::strtod(row[3].c_str(), nullptr)) << row[2];
        out = v;
    } else if (row[0] == "orthogonalTo") {
        v.makeOrthogonalTo(parsed<V>(row[3]));
        out = v;
    } else {
        v.findOrthogonalVector(out);
    }
    EXPECT_EQ(out, parsed<V>(row[4])) << testing::PrintToString(row);
}

TEST(VDVector, ThreeComponentOperationsOfTheCaseTable) {
    for (const CaseRow& row : readCaseTable("foundation/vd_vector_cases.txt"))
        row[1] == "f" ? checkCase<VDVector3f>(row) : checkCase<VDVector3d>(row);
    VDVector3d withNan(std::nan(""), 1, 0);
    EXPECT_TRUE(std::isnan(withNan.normalize()));
    EXPECT_TRUE(std::isnan(withNan.y));
    const VDVector3d w(0.3, -2, 9);
    VDVector3d out;
    w.findOrthogonalVector(out);
    EXPECT_EQ(out.x * w.x + out.y * w.y + out.z * w.z, 0.0);
}

// The float and double twins of the two-component vector behave alike.
template <class V> class TwoComponentVector : public ::testing::Test {};
using TwoComponentTwins = ::testing::Types<VDVector2f, VDVector2d>;
TYPED_TEST_SUITE(TwoComponentVector, TwoComponentTwins);

TYPED_TEST(TwoComponentVector, NormalizeLeavesShortVectors) {
    using V = TypeParam;
    using T = decltype(V::x);
    for (const T shortX : {T(0.0000005), T(0.0000009)}) {
        V tiny(shortX, 0);
        tiny.normalize();
        EXPECT_EQ(tiny, V(shortX, 0));
        tiny.normalize(3);
        EXPECT_EQ(tiny, V(shortX, 0));
    }
    V v(3, 4);
    v.normalize(10);
    EXPECT_EQ(v, V(6, 8));
    v = V(-3, 4);
    v.normalize();
    EXPECT_NEAR(v.x, T(-0.6), 1e-7);
    EXPECT_NEAR(v.y, T(0.8), 1e-7);
    V small(T(0.000002), 0);
    small.normalize(T(0.5));
    EXPECT_NEAR(small.x, T(0.5), 1e-7);
}

// Truncation toward zero: only values just beyond an integer, away from zero, snap.
TYPED_TEST(TwoComponentVector, SnapIsOneSided) {
    using V = TypeParam;
    using T = decltype(V::x);
    V v(T(1.0005), T(-2.0005));
    v.snapToIntegerValues(T(0.001));
    EXPECT_EQ(v, V(1, -2));
    for (const V stays : {V(T(0.9995), 5), V(T(-2.9995), T(7.25))}) {
        V copy = stays;
        copy.snapToIntegerValues(T(0.001));
        EXPECT_EQ(copy, stays);
    }
    // The bound itself does not snap.
    V edge(T(1.5), 0);
    edge.snapToIntegerValues(T(0.5));
    EXPECT_EQ(edge, V(T(1.5), 0));
}

TEST(VDVector, IndexedSortTiesByIndexWithinTolerance) {
    VDArray<VDVector3f> points{VDVector3f(1, 0, 0), VDVector3f(0, 0, 0),
                               VDVector3f(0.00001f, 0, 0)};
    VDArray<int> indices{9, 9, 9, 9, 9};
    VDVector3f::indexedSort(indices, points, 0.001f);
    EXPECT_EQ(indices, (VDArray<int>{1, 2, 0}));
    EXPECT_EQ(points[0], VDVector3f(1, 0, 0));

    // x within tolerance falls through to y, then z.
    points = {VDVector3f(0, 5, 0), VDVector3f(0.0005f, 1, 0), VDVector3f(0, 1, -1)};
    VDVector3f::indexedSort(indices, points, 0.001f);
    EXPECT_EQ(indices, (VDArray<int>{2, 1, 0}));
    // A difference equal to the tolerance still counts as equal.
    points = {VDVector3f(0.5f, 0, 0), VDVector3f(0, 0, 0)};
    VDVector3f::indexedSort(indices, points, 0.5f);
    EXPECT_EQ(indices, (VDArray<int>{0, 1}));

    VDVector3f::indexedSort(indices, VDArray<VDVector3f>(), 0.1f);
    EXPECT_TRUE(indices.empty());

    const VDIndexedComparator<VDVector3f, VDVector3fComp> before(points.data(), 0.1f);
    EXPECT_TRUE(before(1, 0));
    EXPECT_FALSE(before(0, 1));
    EXPECT_FALSE(before(0, 0));
}

TEST(VDVector, IndexedSortMatchesAStableOrderOfSeparatedPoints) {
    // Components on a 0.01 grid: two points are equal or differ by far more than the
    // tolerance, so the tolerant order is the exact lexicographic one, ties by index. The
    // last round's chains of near values break transitivity: still a permutation.
    std::mt19937 engine(20261123);
    const auto grid = [&] {
        return static_cast<float>(static_cast<int>(engine() % 9) - 4) * 0.01f;
    };
    for (int round = 0; round < 6; ++round) {
        const bool chains = round == 5;
        VDArray<VDVector3f> points;
        for (int i = 0; i < (chains ? 2000 : 300); ++i)
            points.push_back(chains
                                 ? VDVector3f(static_cast<float>(engine() % 1000) * 0.0004f, 0, 0)
                                 : VDVector3f(grid(), grid(), grid()));
        VDArray<int> sorted, reference(points.size());
        VDVector3f::indexedSort(sorted, points, 0.001f);
        std::iota(reference.begin(), reference.end(), 0);
        if (chains) {
            ASSERT_EQ(sorted.size(), reference.size());
            EXPECT_TRUE(std::is_permutation(sorted.begin(), sorted.end(), reference.begin()));
            continue;
        }
        std::stable_sort(reference.begin(), reference.end(), [&](int i, int j) {
            return std::tie(points[i].x, points[i].y, points[i].z) <
                   std::tie(points[j].x, points[j].y, points[j].z);
        });
        EXPECT_EQ(sorted, reference) << "round " << round;
    }
}

} // namespace
