#include "foundation/vd_bit_mgr.h"
#include "foundation/vd_bool_array.h"

#include <gtest/gtest.h>

namespace {

// Bit positions computed the slow way, for comparison with the tables.
int slowFirst(int b, int bit) {
    for (int i = 0; i < 8; ++i)
        if (((b >> i) & 1) == bit) return i;
    return 8;
}
int slowLast(int b, int bit) {
    for (int i = 7; i >= 0; --i)
        if (((b >> i) & 1) == bit) return i;
    return 8;
}

TEST(VDBitMgr, TablesDescribeEveryByte) {
    for (int b = 0; b < 256; ++b) {
        EXPECT_EQ(VDBitMgr::numberOfBitSet[b], __builtin_popcount(static_cast<unsigned>(b))) << b;
        EXPECT_EQ(VDBitMgr::first1[b], slowFirst(b, 1)) << b;
        EXPECT_EQ(VDBitMgr::first0[b], slowFirst(b, 0)) << b;
        EXPECT_EQ(VDBitMgr::last1[b], slowLast(b, 1)) << b;
        EXPECT_EQ(VDBitMgr::last0[b], slowLast(b, 0)) << b;

        const auto byte = static_cast<unsigned char>(b);
        EXPECT_EQ(VDBitMgr::getFirstBit1(byte), VDBitMgr::first1[b]);
        EXPECT_EQ(VDBoolArray::getNumBitsAt1(byte), VDBitMgr::numberOfBitSet[b]);
        EXPECT_EQ(VDBoolArray::getNumBitsAt0(byte), 8 - VDBitMgr::numberOfBitSet[b]);
        EXPECT_EQ(VDBoolArray::getFirstBitAt1(byte), VDBitMgr::first1[b]);
        EXPECT_EQ(VDBoolArray::getFirstBitAt0(byte), VDBitMgr::first0[b]);
        EXPECT_EQ(VDBoolArray::getLastBitAt1(byte), VDBitMgr::last1[b]);
        EXPECT_EQ(VDBoolArray::getLastBitAt0(byte), VDBitMgr::last0[b]);
    }
    EXPECT_EQ(VDBitMgr::getBitOrdering(), 1);
}

TEST(VDBitMgr, SixteenBitForms) {
    using U16 = unsigned short;
    EXPECT_EQ(VDBitMgr::getFirstBit1(U16(0)), 16);
    EXPECT_EQ(VDBitMgr::getLastBit1(U16(0)), 16);
    EXPECT_EQ(VDBitMgr::getFirstBit0(U16(0xFFFF)), 16);
    EXPECT_EQ(VDBitMgr::getLastBit0(U16(0xFFFF)), 16);
    EXPECT_EQ(VDBitMgr::getFirstBit1(U16(0x0100)), 8);
    EXPECT_EQ(VDBitMgr::getLastBit1(U16(0x8001)), 15);
    EXPECT_EQ(VDBitMgr::getFirstBit0(U16(0x00FF)), 8);
    EXPECT_EQ(VDBitMgr::getLastBit0(U16(0x7FFF)), 15);
    EXPECT_EQ(VDBitMgr::getLastBit0(U16(0xFF00)), 7);
    EXPECT_EQ(VDBitMgr::getNumBits1(U16(0xF0F1)), 9);
    EXPECT_EQ(VDBitMgr::getNumBits0(U16(0xF0F1)), 7);
}

TEST(VDBitMgr, WordFormsLookAtThirtyTwoBitsOnly) {
    EXPECT_EQ(VDBitMgr::getFirstBit1(0UL), 32);
    EXPECT_EQ(VDBitMgr::getLastBit1(0UL), 32);
    EXPECT_EQ(VDBitMgr::getFirstBit0(0xFFFFFFFFUL), 32);
    EXPECT_EQ(VDBitMgr::getLastBit0(0xFFFFFFFFUL), 32);
    EXPECT_EQ(VDBitMgr::getNumBits1(0UL), 0);
    EXPECT_EQ(VDBitMgr::getNumBits0(0UL), 32);
    EXPECT_EQ(VDBitMgr::getFirstBit1(0x00010000UL), 16);
    EXPECT_EQ(VDBitMgr::getFirstBit1(0x80000000UL), 31);
    EXPECT_EQ(VDBitMgr::getLastBit1(0x80000001UL), 31);
    EXPECT_EQ(VDBitMgr::getLastBit1(0x00000300UL), 9);
    EXPECT_EQ(VDBitMgr::getFirstBit0(0x00FFFFFFUL), 24);
    EXPECT_EQ(VDBitMgr::getLastBit0(0x7FFFFFFFUL), 31);
    EXPECT_EQ(VDBitMgr::getNumBits1(0xFFFFFFFFUL), 32);

    if (sizeof(unsigned long) > 4) {
        // The upper half of a wider word is not looked at.
        const unsigned long high = ~0UL << 16 << 16;
        EXPECT_EQ(VDBitMgr::getNumBits1(high), 0);
        EXPECT_EQ(VDBitMgr::getNumBits0(high), 32);
        EXPECT_EQ(VDBitMgr::getFirstBit1(high), 32);
        EXPECT_EQ(VDBitMgr::getLastBit1(high | 4UL), 2);
        EXPECT_EQ(VDBitMgr::getFirstBit0(high | 0xFFFFFFFFUL), 32);
        EXPECT_EQ(VDBitMgr::getLastBit0(high | 0xFFFFFFFFUL), 32);
        EXPECT_EQ(VDBitMgr::getNumBits1(~0UL), 32);
    }
}

} // namespace
