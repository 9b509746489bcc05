// What the differential test against the model (vd_bool_array_model_test.cpp) cannot
// see: the empty state, the storage bytes beyond the bit count, aliasing, and the
// accessors without a size test.

#include "foundation/vd_bool_array.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

// The storage bytes, also those beyond the bit count.
std::vector<int> storage(const VDBoolArray& a) {
    return std::vector<int>(a.getData(), a.getData() + a.getCapacityInBytes());
}

std::string bitsOf(const VDBoolArray& a) {
    std::string text;
    for (int i = 0; i < a.getSize(); ++i)
        text += a.get(i) ? '1' : '0';
    return text;
}

TEST(VDBoolArray, EmptyArraysShareOneStaticByte) {
    VDBoolArray a, b;
    EXPECT_EQ(a.getCapacityInBytes(), 0);
    EXPECT_EQ(a.getData(), b.getData());
    EXPECT_EQ(a.getDynMemoryUsed(), 1u);
    EXPECT_EQ(a.getLeadingGuard(), 1);
    EXPECT_EQ(a.findFirst(true), -1);
    EXPECT_EQ(a.findLast(true, 10), -1);
    EXPECT_FALSE(a.get(0));

    // Nothing allocates for zero bits, and releasing returns to the shared byte.
    EXPECT_EQ(VDBoolArray(0, true).getData(), a.getData());
    EXPECT_EQ(VDBoolArray(a).getData(), a.getData());
    a.resize(0, true);
    a.inter(b);
    a.clear(b);
    a.merge(b);
    EXPECT_EQ(a.getData(), b.getData());
    VDBoolArray grown(30, true);
    grown.clearArray();
    EXPECT_EQ(grown.getData(), b.getData());
    EXPECT_EQ(grown.getSize(), 0);
    VDBoolArray freed(9, false);
    freed.freeData();
    EXPECT_EQ(freed.getData(), b.getData());
    VDBoolArray negative(-5, true);
    EXPECT_EQ(negative.getSize(), 0);
    EXPECT_EQ(negative.getCapacityInBytes(), 0);
}

TEST(VDBoolArray, FillsAndAccessorsSeeWholeBytes) {
    // Every allocated byte takes the value, also the bits beyond the count.
    EXPECT_EQ(storage(VDBoolArray(10, true)), (std::vector<int>{0xFF, 0xFF}));
    VDBoolArray a(13, false);
    a.assign(10, true);
    EXPECT_EQ(storage(a), (std::vector<int>{0xFF, 0xFF}));
    EXPECT_FALSE(a.get(10));
    EXPECT_FALSE(a.get(-1));
    EXPECT_TRUE(a[9]);
    a.clear(4);
    EXPECT_EQ(a.getAsMask(4), 0);
    EXPECT_EQ(a.getAsMask(5), 0x20);
    EXPECT_EQ(a.getAsMask(12), 0x10) << "no size test";
}

TEST(VDBoolArray, CoarseMarkingKeepsTheBitsBeyondTheCount) {
    VDBoolArray a(13, false);
    a.setAllModifiedIndices(VDArray<int>{9, 40, -1});
    EXPECT_EQ(storage(a), (std::vector<int>{0x00, 0x1F}));

    VDBoolArray b(13, true);
    b.clearAllModifiedIndices(VDArray<int>{2, 12});
    EXPECT_EQ(storage(b), (std::vector<int>{0x00, 0xE0}));
}

TEST(VDBoolArray, InPlaceResizeIsDeliberatelyNarrow) {
    VDBoolArray clean(40, true);
    clean.resize(4, false);
    // The old count's byte is the trailing guard here: it is left alone, and so are the
    // bits of byte 0 above the new count.
    EXPECT_EQ(storage(clean), (std::vector<int>{0xFF, 0, 0, 0, 0}));
    clean.resize(30, false);
    EXPECT_EQ(bitsOf(clean), "1111" + std::string(26, '0'));

    // A shrink with true leaves set bytes; growing with false keeps the whole bytes
    // between the old count's byte and the new end byte as they were.
    VDBoolArray dirty(40, false);
    dirty.resize(4, true);
    EXPECT_EQ(storage(dirty), (std::vector<int>{0x00, 0xFF, 0xFF, 0xFF, 0xFF}));
    dirty.resize(30, false);
    EXPECT_EQ(storage(dirty), (std::vector<int>{0x00, 0xFF, 0xFF, 0xFF, 0x00}));

    // Shrinking keeps the bits between the new and the old count in that byte.
    VDBoolArray partial(16, true);
    partial.resize(3, true);
    partial.resize(12, false);
    partial.resize(9, false);
    EXPECT_EQ(storage(partial), (std::vector<int>{0x07, 0x0F}));
}

TEST(VDBoolArray, InterWritesAGuardAfterTheShortenedData) {
    VDBoolArray i(24, true);
    VDBoolArray other(10, true);
    other.clear(1);
    i.inter(other);
    EXPECT_EQ(storage(i), (std::vector<int>{0xFD, 0x03, 0x01}));
    EXPECT_EQ(i.findFirst(false, 9), -1);

    VDBoolArray toEmpty(12, true);
    toEmpty.inter(VDBoolArray());
    EXPECT_EQ(toEmpty.getSize(), 0);
    EXPECT_EQ(storage(toEmpty), (std::vector<int>{0x01, 0xFF}));
}

TEST(VDBoolArray, AliasingAndMoves) {
    VDBoolArray a(43, true);
    a.clear(3);
    const VDBoolArray& alias = a;
    a = alias;
    EXPECT_EQ(a.getSize(), 43);
    EXPECT_EQ(a.findFirst(false), 3);
    a.merge(a);
    a.set(a);
    EXPECT_EQ(a.findFirst(false), 3);
    a.toggle(a);
    EXPECT_EQ(a.getNumberOfBitSet(), 0);
    EXPECT_EQ(a.getSize(), 43);

    a.set(5);
    VDBoolArray moved(std::move(a));
    EXPECT_EQ(moved.findFirst(true), 5);
    EXPECT_EQ(a.getSize(), 0);
    EXPECT_EQ(a.getLeadingGuard(), 1);
    EXPECT_EQ(a.getTrailingGuard(), 1);
}

} // namespace
