#include "foundation/vd_bit_mgr.h"
#include "foundation/vd_bool_array.h"

#include <gtest/gtest.h>

namespace {

// The compiler's bit builtins are the oracle: lowest and highest set bit of a value
// `width` bits wide, or `width` when none is set.
int lowest1(unsigned v, int width) {
    return v == 0 ? width : __builtin_ctz(v);
}
int highest1(unsigned v, int width) {
    return v == 0 ? width : 31 - __builtin_clz(v);
}

// Every 16-bit value, through the byte, 16-bit and word forms; the word forms again with
// the value moved into the upper half of the 32 bits they look at.
TEST(VDBitMgr, EveryFormAgreesWithTheBuiltinsOverSixteenBits) {
    for (unsigned v = 0; v <= 0xFFFF; ++v) {
        const unsigned inverse = ~v & 0xFFFF;
        if (v < 256) {
            const auto byte = static_cast<unsigned char>(v);
            const unsigned inverseByte = ~v & 0xFF;
            ASSERT_EQ(VDBitMgr::numberOfBitSet[v], __builtin_popcount(v)) << v;
            ASSERT_EQ(VDBitMgr::first1[v], lowest1(v, 8)) << v;
            ASSERT_EQ(VDBitMgr::first0[v], lowest1(inverseByte, 8)) << v;
            ASSERT_EQ(VDBitMgr::last1[v], highest1(v, 8)) << v;
            ASSERT_EQ(VDBitMgr::last0[v], highest1(inverseByte, 8)) << v;
            ASSERT_EQ(VDBitMgr::getFirstBit1(byte), lowest1(v, 8));
            ASSERT_EQ(VDBoolArray::getNumBitsAt1(byte), __builtin_popcount(v));
            ASSERT_EQ(VDBoolArray::getNumBitsAt0(byte), 8 - __builtin_popcount(v));
            ASSERT_EQ(VDBoolArray::getFirstBitAt1(byte), lowest1(v, 8));
            ASSERT_EQ(VDBoolArray::getFirstBitAt0(byte), lowest1(inverseByte, 8));
            ASSERT_EQ(VDBoolArray::getLastBitAt1(byte), highest1(v, 8));
            ASSERT_EQ(VDBoolArray::getLastBitAt0(byte), highest1(inverseByte, 8));
        }
        const auto half = static_cast<unsigned short>(v);
        ASSERT_EQ(VDBitMgr::getNumBits1(half), __builtin_popcount(v)) << v;
        ASSERT_EQ(VDBitMgr::getNumBits0(half), 16 - __builtin_popcount(v)) << v;
        ASSERT_EQ(VDBitMgr::getFirstBit1(half), lowest1(v, 16)) << v;
        ASSERT_EQ(VDBitMgr::getFirstBit0(half), lowest1(inverse, 16)) << v;
        ASSERT_EQ(VDBitMgr::getLastBit1(half), highest1(v, 16)) << v;
        ASSERT_EQ(VDBitMgr::getLastBit0(half), highest1(inverse, 16)) << v;
        for (const unsigned long word : {v, v << 16, v | 0xFFFF0000u}) {
            const unsigned bits = static_cast<unsigned>(word), inverseWord = ~bits;
            ASSERT_EQ(VDBitMgr::getNumBits1(word), __builtin_popcount(bits));
            ASSERT_EQ(VDBitMgr::getNumBits0(word), 32 - __builtin_popcount(bits));
            ASSERT_EQ(VDBitMgr::getFirstBit1(word), lowest1(bits, 32));
            ASSERT_EQ(VDBitMgr::getFirstBit0(word), lowest1(inverseWord, 32));
            ASSERT_EQ(VDBitMgr::getLastBit1(word), highest1(bits, 32));
            ASSERT_EQ(VDBitMgr::getLastBit0(word), highest1(inverseWord, 32));
        }
    }
    EXPECT_EQ(VDBitMgr::getBitOrdering(), 1);
}

TEST(VDBitMgr, WordFormsLookAtThirtyTwoBitsOnly) {
    if (sizeof(unsigned long) == 4) GTEST_SKIP() << "no bits above 32";
    const unsigned long high = ~0UL << 16 << 16;
    EXPECT_EQ(VDBitMgr::getNumBits1(high), 0);
    EXPECT_EQ(VDBitMgr::getNumBits0(high), 32);
    EXPECT_EQ(VDBitMgr::getFirstBit1(high), 32);
    EXPECT_EQ(VDBitMgr::getLastBit1(high | 4UL), 2);
    EXPECT_EQ(VDBitMgr::getFirstBit0(high | 0xFFFFFFFFUL), 32);
    EXPECT_EQ(VDBitMgr::getLastBit0(high | 0xFFFFFFFFUL), 32);
    EXPECT_EQ(VDBitMgr::getNumBits1(~0UL), 32);
}

} // namespace
