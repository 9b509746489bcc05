#pragma once

// VDBitMgr: bit counts and bit positions of 8-bit, 16-bit and word values, through five
// byte lookup tables. Bit 0 is the least significant bit (getBitOrdering() reports 1).
//
// The word forms take an unsigned long but look at bits 0..31 only, on every platform:
// the value is treated as a 32-bit word, so results do not change between 32-bit and
// 64-bit builds. The position forms answer the width (8, 16 or 32) when no bit matches.

#include "foundation/export.h"

#include <array>

class NEQBRIDGE_API VDBitMgr {
  public:
    using ByteTable = std::array<unsigned char, 256>;

    // Indexed by a byte value b.
    static const ByteTable numberOfBitSet; // number of 1 bits
    static const ByteTable first1;         // lowest 1 bit; 8 when b == 0
    static const ByteTable first0;         // lowest 0 bit; 8 when b == 0xFF
    static const ByteTable last1;          // highest 1 bit; 8 when b == 0
    static const ByteTable last0;          // highest 0 bit; 8 when b == 0xFF

    static int getBitOrdering() { return 1; }

    static int getNumBits1(unsigned char x) { return numberOfBitSet[x]; }
    static int getNumBits0(unsigned char x) { return 8 - numberOfBitSet[x]; }
    static int getFirstBit1(unsigned char x) { return first1[x]; }
    static int getFirstBit0(unsigned char x) { return first0[x]; }
    static int getLastBit1(unsigned char x) { return last1[x]; }
    static int getLastBit0(unsigned char x) { return last0[x]; }

    static int getNumBits1(unsigned short x);
    static int getNumBits0(unsigned short x);
    static int getFirstBit1(unsigned short x);
    static int getFirstBit0(unsigned short x);
    static int getLastBit1(unsigned short x);
    static int getLastBit0(unsigned short x);

    static int getNumBits1(unsigned long x);
    static int getNumBits0(unsigned long x);
    static int getFirstBit1(unsigned long x);
    static int getFirstBit0(unsigned long x);
    static int getLastBit1(unsigned long x);
    static int getLastBit0(unsigned long x);
};
