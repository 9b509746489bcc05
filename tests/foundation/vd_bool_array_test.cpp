#include "foundation/vd_bool_array.h"

#include "foundation/bool_array_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using neq::test::arrayOf;
using neq::test::bitsOf;

// The storage bytes, also those beyond the bit count.
std::vector<int> storage(const VDBoolArray& a) {
    return std::vector<int>(a.getData(), a.getData() + a.getCapacityInBytes());
}

void expectGuards(const VDBoolArray& a, const char* after) {
    EXPECT_EQ(a.getLeadingGuard(), 1) << after;
    EXPECT_EQ(a.getTrailingGuard(), 1) << after;
}

TEST(VDBoolArray, EmptyArraysShareOneStaticByte) {
    VDBoolArray a, b;
    EXPECT_EQ(a.getSize(), 0);
    EXPECT_EQ(a.getCapacityInBytes(), 0);
    EXPECT_EQ(a.getData(), b.getData());
    EXPECT_EQ(a.getMemoryUsed(), 1u);
    EXPECT_EQ(a.getDynMemoryUsed(), 1u);
    expectGuards(a, "default");
    EXPECT_EQ(a.findFirst(true), -1);
    EXPECT_EQ(a.findFirst(false, -4), -1);
    EXPECT_EQ(a.findLast(false), -1);
    EXPECT_EQ(a.findLast(true, 10), -1);
    EXPECT_EQ(a.getNumberOfBitSet(), 0);
    EXPECT_FALSE(a.get(0));

    // Nothing allocates for zero bits, and releasing returns to the shared byte.
    EXPECT_EQ(VDBoolArray(0, true).getData(), a.getData());
    VDBoolArray copied(a);
    EXPECT_EQ(copied.getData(), a.getData());
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
    EXPECT_EQ(freed.getCapacityInBytes(), 0);
    VDBoolArray negative(-5, true);
    EXPECT_EQ(negative.getSize(), 0);
    EXPECT_EQ(negative.getCapacityInBytes(), 0);
}

TEST(VDBoolArray, AllocationIsExactAndOnlyGrows) {
    for (int n = 1; n <= 41; ++n) {
        const VDBoolArray filled(n, true);
        EXPECT_EQ(filled.getCapacityInBytes(), (n + 7) / 8) << n;
        // Every allocated byte takes the value, also the bits beyond the count.
        for (int byte : storage(filled))
            EXPECT_EQ(byte, 0xFF) << n;
        expectGuards(filled, "constructor");
        EXPECT_EQ(filled.getMemoryUsed(), static_cast<std::size_t>((n + 7) / 8 + 1));

        VDBoolArray grown;
        grown.resize(n, false);
        EXPECT_EQ(grown.getCapacityInBytes(), (n + 7) / 8) << n;
        grown.setAutoResize(n + 8);
        EXPECT_EQ(grown.getCapacityInBytes(), (n + 16) / 8) << n;
        expectGuards(grown, "growth");
    }
    VDBoolArray a(40, true);
    a.resize(3, false);
    EXPECT_EQ(a.getCapacityInBytes(), 5);
    a.resize(40, false);
    EXPECT_EQ(a.getCapacityInBytes(), 5);
    a.resize(41, false);
    EXPECT_EQ(a.getCapacityInBytes(), 6);
    a.assign(7, true);
    EXPECT_EQ(a.getCapacityInBytes(), 6);
    a.reinit(7, true);
    EXPECT_EQ(a.getCapacityInBytes(), 1);
    EXPECT_EQ(bitsOf(a), "1111111");
    a.reinit(0, true);
    EXPECT_EQ(a.getCapacityInBytes(), 0);
}

TEST(VDBoolArray, EdgeCasesOfSingleBitsAndRanges) {
    const VDBoolArray ten(10, true);
    EXPECT_EQ(storage(ten), (std::vector<int>{0xFF, 0xFF}));
    EXPECT_EQ(ten.findFirst(false), -1);
    EXPECT_FALSE(ten.get(10));
    EXPECT_FALSE(ten.get(-1));
    EXPECT_TRUE(ten[9]);

    VDBoolArray a;
    a.set(5, 0); // a count below 1 counts as 1
    EXPECT_EQ(bitsOf(a), "000001");
    a.clear(2, -7);
    EXPECT_EQ(bitsOf(a), "000001");
    a.set(-1, 4); // a negative first does nothing
    EXPECT_EQ(bitsOf(a), "000001");
    a.set(3, 20); // whole bytes in the middle
    EXPECT_EQ(bitsOf(a), "00011111111111111111111");
    a.clear(4, 18);
    EXPECT_EQ(bitsOf(a), "00010000000000000000001");
    a.clear(24, 2);
    EXPECT_EQ(a.getSize(), 26);
    EXPECT_EQ(bitsOf(a).substr(20), "001000");

    VDBoolArray b;
    b.setAutoResize(20);
    EXPECT_EQ(b.getSize(), 21);
    EXPECT_EQ(b.findFirst(true), 20);
    EXPECT_EQ(b.getNumberOfBitSet(), 1);
    b.toggleAutoResize(22);
    b.clearAutoResize(24);
    b.setAutoResize(-1);
    EXPECT_EQ(bitsOf(b).substr(19), "010100");
    EXPECT_EQ(b.getAsMask(20), 0x10);
    EXPECT_EQ(b.getAsMask(19), 0);

    VDBoolArray c = arrayOf("0110");
    c.set(0, true);
    c.set(1, false);
    c.toggle(3);
    EXPECT_EQ(bitsOf(c), "1011");
    const int list[] = {1, 3};
    c.clear(2, list);
    EXPECT_EQ(bitsOf(c), "1010");
    c.set(2, list);
    EXPECT_EQ(bitsOf(c), "1111");
    c.clear(VDArray<int>{0, 2});
    EXPECT_EQ(bitsOf(c), "0101");
    c.set(VDArray<int>{2});
    EXPECT_EQ(bitsOf(c), "0111");
}

TEST(VDBoolArray, InsertRefusesTheEndAndEraseMovesDown) {
    VDBoolArray three = arrayOf("101");
    three.insert(3, true);
    three.insert(-1, true);
    EXPECT_EQ(bitsOf(three), "101");

    VDBoolArray four = arrayOf("0001");
    four.insert(3, true);
    EXPECT_EQ(bitsOf(four), "00011");
    four.insert(0, true);
    EXPECT_EQ(bitsOf(four), "100011");

    VDBoolArray eight = arrayOf("11111111");
    eight.insert(2, false); // grows into a second byte
    EXPECT_EQ(bitsOf(eight), "110111111");
    EXPECT_EQ(eight.getCapacityInBytes(), 2);
    expectGuards(eight, "insert");

    VDBoolArray e = arrayOf("0110100001");
    e.erase(1);
    EXPECT_EQ(bitsOf(e), "010100001");
    e.erase(8);
    EXPECT_EQ(bitsOf(e), "01010000");
    e.erase(8);
    e.erase(-1);
    EXPECT_EQ(bitsOf(e), "01010000");
}

TEST(VDBoolArray, SearchesStopAtTheGuards) {
    // The bits beyond the count are set, up to the trailing guard.
    const VDBoolArray all(13, true);
    EXPECT_EQ(all.findFirst(false), -1);
    EXPECT_EQ(all.findFirst(true, 12), 12);
    EXPECT_EQ(all.findFirst(true, 13), -1);
    EXPECT_EQ(all.findFirst(true, -8), 0);
    EXPECT_EQ(all.findLast(false), -1);
    EXPECT_EQ(all.findLast(true, 100), 12);
    EXPECT_EQ(all.findLast(true, -1), -1);

    // A long cleared tail left by a shrink is scanned to the guard.
    VDBoolArray shrunk(800, true);
    shrunk.resize(3, false);
    EXPECT_EQ(shrunk.findFirst(true), 0);
    EXPECT_EQ(shrunk.findFirst(true, 3), -1);
    EXPECT_EQ(shrunk.findFirst(false), -1);
    shrunk.clear(0, 3);
    EXPECT_EQ(shrunk.findFirst(true), -1);
    EXPECT_EQ(shrunk.findLast(true), -1);
    EXPECT_EQ(shrunk.findLast(false), 2);

    VDBoolArray sparse(100, false);
    sparse.set(0);
    sparse.set(64);
    sparse.set(99);
    EXPECT_EQ(sparse.findFirst(true, 1), 64);
    EXPECT_EQ(sparse.findFirst(true, 65), 99);
    EXPECT_EQ(sparse.findLast(true, 98), 64);
    EXPECT_EQ(sparse.findLast(true, 63), 0);
    EXPECT_EQ(sparse.findFirst(false, 99), -1);
    EXPECT_EQ(sparse.findLast(false, 0), -1);
}

TEST(VDBoolArray, CountsAndIndexLists) {
    const VDBoolArray a = arrayOf("1101000011110001");
    EXPECT_EQ(a.getNumberOfBitSetWithin(4, 4), 0);
    EXPECT_EQ(a.getNumberOfBitSetWithin(6, 2), 0);
    EXPECT_EQ(a.getNumberOfBitClearedWithin(6, 2), 0);
    EXPECT_EQ(a.getNumberOfBitSetWithin(0, 8), 3);
    EXPECT_EQ(a.getNumberOfBitSetWithin(1, 2), 1);
    EXPECT_EQ(a.getNumberOfBitSetWithin(3, 15), 5);
    EXPECT_EQ(a.getNumberOfBitClearedWithin(3, 15), 7);
    EXPECT_EQ(a.getNumberOfBitSet(), 8);
    EXPECT_EQ(a.getNumberOfBitCleared(), 8);

    // The set bits beyond the count are not counted.
    VDBoolArray stale(13, true);
    stale.clear(0, 2);
    EXPECT_EQ(stale.getNumberOfBitSet(), 11);
    EXPECT_EQ(stale.getNumberOfBitCleared(), 2);
    VDArray<int> set{7, 7}, cleared;
    stale.getIndexesSet(set);
    stale.getIndexesCleared(cleared);
    EXPECT_EQ(set, (VDArray<int>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(cleared, (VDArray<int>{0, 1}));
}

TEST(VDBoolArray, CoarseMarkingKeepsTheBitsBeyondTheCount) {
    VDBoolArray a(13, false);
    a.setAllModifiedIndices(VDArray<int>{9, 40, -1});
    EXPECT_EQ(bitsOf(a), "0000000011111");
    EXPECT_EQ(storage(a), (std::vector<int>{0x00, 0x1F}));

    VDBoolArray b(13, true);
    b.clearAllModifiedIndices(VDArray<int>{2, 12});
    EXPECT_EQ(bitsOf(b), "0000000000000");
    EXPECT_EQ(storage(b), (std::vector<int>{0x00, 0xE0}));

    VDBoolArray c = arrayOf("1000000001");
    c.setAllModifiedIndices(VDArray<int>{});
    EXPECT_EQ(bitsOf(c), "1000000001");
    c.toggleAll();
    EXPECT_EQ(bitsOf(c), "0111111110");
    c.inverse();
    c.setAll();
    EXPECT_EQ(bitsOf(c), "1111111111");
    c.clearAll();
    EXPECT_EQ(c.getNumberOfBitSet(), 0);
}

TEST(VDBoolArray, InPlaceResizeIsDeliberatelyNarrow) {
    // Growing with false into a tail that a shrink cleared gives clean bits.
    VDBoolArray clean(40, true);
    clean.resize(4, false);
    // The old count's byte is the trailing guard here: it is left alone, and so are the
    // bits of byte 0 above the new count.
    EXPECT_EQ(storage(clean), (std::vector<int>{0xFF, 0, 0, 0, 0}));
    expectGuards(clean, "full shrink");
    clean.resize(30, false);
    EXPECT_EQ(bitsOf(clean), "1111" + std::string(26, '0'));
    expectGuards(clean, "clean growth");

    // A shrink with true leaves set bytes; growing with false keeps the whole bytes
    // between the old count's byte and the new end byte as they were.
    VDBoolArray dirty(40, false);
    dirty.resize(4, true);
    EXPECT_EQ(storage(dirty), (std::vector<int>{0x00, 0xFF, 0xFF, 0xFF, 0xFF}));
    dirty.resize(30, false);
    EXPECT_EQ(bitsOf(dirty), "0000"
                             "0000" +
                                 std::string(22, '1'));
    EXPECT_EQ(storage(dirty), (std::vector<int>{0x00, 0xFF, 0xFF, 0xFF, 0x00}));

    // An old count on a byte boundary: that whole byte takes the new value.
    VDBoolArray boundary(24, true);
    boundary.resize(8, false);
    boundary.resize(24, true);
    EXPECT_EQ(bitsOf(boundary), "11111111"
                                "11111111"
                                "00000000");

    // Bits of the old count's byte from the old count upward take the value.
    VDBoolArray partial(16, true);
    partial.resize(3, true);
    partial.resize(12, false);
    EXPECT_EQ(bitsOf(partial), "111"
                               "00000"
                               "1111");
    // Shrinking keeps the bits between the new and the old count in that byte.
    partial.resize(9, false);
    EXPECT_EQ(storage(partial), (std::vector<int>{0x07, 0x0F}));
}

TEST(VDBoolArray, MergeToggleAndSetTakeTheLargerCount) {
    VDBoolArray a = arrayOf("01000");
    a.merge(arrayOf("1000000000000000001"));
    EXPECT_EQ(bitsOf(a), "1100000000000000001");
    EXPECT_EQ(a.getCapacityInBytes(), 3);
    expectGuards(a, "merge growth");

    VDBoolArray b = arrayOf("0000000000000000001");
    b.merge(arrayOf("00001"));
    EXPECT_EQ(bitsOf(b), "0000100000000000001");
    b.merge(VDBoolArray());
    EXPECT_EQ(b.getSize(), 19);

    // Stale bits above the shorter count do not leak into the result.
    VDBoolArray stale(5, true);
    stale.clear(0, 5);
    stale.merge(VDBoolArray(16, false));
    EXPECT_EQ(bitsOf(stale), std::string(16, '0'));
    VDBoolArray other(21, true);
    other.resize(5, true);
    VDBoolArray longer = arrayOf("0000000000000000");
    longer.merge(other);
    EXPECT_EQ(bitsOf(longer), "1111100000000000");

    VDBoolArray empty;
    empty.merge(arrayOf("101"));
    EXPECT_EQ(bitsOf(empty), "101");

    VDBoolArray t = arrayOf("0110");
    t.toggle(arrayOf("1100000001"));
    EXPECT_EQ(bitsOf(t), "1010000001");
    t.toggle(arrayOf("11"));
    EXPECT_EQ(bitsOf(t), "0110000001");
    t.toggle(t);
    EXPECT_EQ(bitsOf(t), "0000000000");

    VDBoolArray s = arrayOf("001");
    s.set(arrayOf("1000001"));
    EXPECT_EQ(bitsOf(s), "1010001");
}

TEST(VDBoolArray, ClearAndInterFollowTheShorterCount) {
    VDBoolArray c = arrayOf("1111111111");
    c.clear(arrayOf("0101"));
    EXPECT_EQ(bitsOf(c), "1010111111");
    c.clear(arrayOf("00000000011111111111"));
    EXPECT_EQ(bitsOf(c), "1010111110");
    c.clear(VDBoolArray());
    EXPECT_EQ(bitsOf(c), "1010111110");

    VDBoolArray i(24, true);
    i.inter(arrayOf("1011011101"));
    EXPECT_EQ(bitsOf(i), "1011011101");
    EXPECT_EQ(i.getCapacityInBytes(), 3);
    // A new guard right after the shortened data.
    EXPECT_EQ(i.getData()[2], 1);
    expectGuards(i, "inter");
    EXPECT_EQ(i.findFirst(false, 9), -1);
    // Growing in place keeps that byte: bit 16 comes back set.
    i.resize(24, false);
    EXPECT_EQ(bitsOf(i), "1011011101"
                         "000000"
                         "10000000");

    VDBoolArray longer = arrayOf("110");
    longer.inter(arrayOf("0111111111111"));
    EXPECT_EQ(bitsOf(longer), "010");

    VDBoolArray toEmpty(12, true);
    toEmpty.inter(VDBoolArray());
    EXPECT_EQ(toEmpty.getSize(), 0);
    EXPECT_EQ(toEmpty.getData()[0], 1);
    EXPECT_EQ(toEmpty.getCapacityInBytes(), 2);

    VDBoolArray empty;
    empty.inter(arrayOf("11"));
    EXPECT_EQ(empty.getSize(), 0);

    EXPECT_TRUE(arrayOf("0010").hasInter(arrayOf("0011111")));
    EXPECT_FALSE(arrayOf("0100").hasInter(arrayOf("1011111")));
    EXPECT_FALSE(VDBoolArray(5, true).hasInter(VDBoolArray()));
    VDBoolArray staleTail(3, true);
    EXPECT_FALSE(staleTail.hasInter(arrayOf("0001111")));
}

TEST(VDBoolArray, BitTestLooksUpToTheOthersHighestSetBit) {
    const VDBoolArray a = arrayOf("1101");
    EXPECT_TRUE(a.bitTest(VDBoolArray()));
    EXPECT_TRUE(a.bitTest(VDBoolArray(40, false)));
    EXPECT_TRUE(a.bitTest(arrayOf("0101")));
    EXPECT_FALSE(a.bitTest(arrayOf("0011")));
    // A longer other whose extra bits are all clear still passes.
    EXPECT_TRUE(a.bitTest(arrayOf("1001000000000")));
    // Its highest set bit at or beyond this count fails.
    EXPECT_FALSE(a.bitTest(arrayOf("00001")));
    EXPECT_FALSE(VDBoolArray().bitTest(arrayOf("1")));
    EXPECT_TRUE(VDBoolArray(20, true).bitTest(arrayOf("11111111111111111111")));
}

TEST(VDBoolArray, EqualityIgnoresTheBitsBeyondTheCount) {
    VDBoolArray stale(12, true);
    stale.clear(0, 12);
    EXPECT_TRUE(stale == VDBoolArray(12, false));
    EXPECT_FALSE(stale != VDBoolArray(12, false));
    EXPECT_FALSE(stale == VDBoolArray(13, false));
    EXPECT_FALSE(arrayOf("000000001") == arrayOf("000000000"));
    EXPECT_TRUE(VDBoolArray() == VDBoolArray(0, true));
    VDBoolArray sixteen(16, true);
    sixteen.clear(15);
    EXPECT_FALSE(sixteen == VDBoolArray(16, true));
}

TEST(VDBoolArray, CopyAssignAndSwap) {
    const VDBoolArray source = arrayOf("1011");

    VDBoolArray big(100, false);
    big.copy(source); // reuses the storage
    EXPECT_EQ(bitsOf(big), "1011");
    EXPECT_EQ(big.getCapacityInBytes(), 13);
    big.copy(source, false); // exact fit
    EXPECT_EQ(big.getCapacityInBytes(), 1);
    big.copy(VDBoolArray(), false);
    EXPECT_EQ(big.getCapacityInBytes(), 0);

    VDBoolArray assigned(30, true);
    assigned = source;
    EXPECT_EQ(bitsOf(assigned), "1011");
    EXPECT_EQ(assigned.getCapacityInBytes(), 4);
    assigned = arrayOf("1111111111111111111111111111111111111111111");
    EXPECT_EQ(assigned.getSize(), 43);
    const VDBoolArray& alias = assigned;
    assigned = alias;
    EXPECT_EQ(assigned.getSize(), 43);

    const VDBoolArray copied(big = VDBoolArray(50, true));
    EXPECT_EQ(copied.getCapacityInBytes(), 7);
    EXPECT_NE(copied.getData(), big.getData());
    EXPECT_TRUE(copied == big);

    VDBoolArray x = arrayOf("11"), y = arrayOf("0001000000");
    const unsigned char* xData = x.getData();
    x.swap(y);
    EXPECT_EQ(bitsOf(x), "0001000000");
    EXPECT_EQ(bitsOf(y), "11");
    EXPECT_EQ(y.getData(), xData);

    VDBoolArray moved(std::move(x));
    EXPECT_EQ(bitsOf(moved), "0001000000");
    EXPECT_EQ(x.getSize(), 0);
    expectGuards(x, "moved from");

    VDBoolArray fromBytes;
    const char bytes[] = {'\xAB', '\x0F', '\x77'};
    fromBytes.assign(12, bytes);
    EXPECT_EQ(bitsOf(fromBytes), "110101011111");
    EXPECT_EQ(fromBytes.getCapacityInBytes(), 2);
    expectGuards(fromBytes, "assign bytes");
}

} // namespace
