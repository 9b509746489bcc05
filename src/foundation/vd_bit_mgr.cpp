#include "foundation/vd_bit_mgr.h"

namespace {

using ByteTable = VDBitMgr::ByteTable;

// Each entry answers a question about one byte; built by the compiler.
template <class Entry> constexpr ByteTable makeTable(Entry entry) {
    ByteTable table{};
    for (int b = 0; b < 256; ++b)
        table[b] = static_cast<unsigned char>(entry(b));
    return table;
}

constexpr int countOnes(int b) {
    int n = 0;
    for (; b != 0; b >>= 1)
        n += b & 1;
    return n;
}

// Lowest (highest) bit equal to `bit`, 8 when there is none.
constexpr int lowestEqual(int b, int bit) {
    for (int i = 0; i < 8; ++i)
        if (((b >> i) & 1) == bit) return i;
    return 8;
}
constexpr int highestEqual(int b, int bit) {
    for (int i = 7; i >= 0; --i)
        if (((b >> i) & 1) == bit) return i;
    return 8;
}

constexpr ByteTable kNumberOfBitSet = makeTable([](int b) { return countOnes(b); });
constexpr ByteTable kFirst1 = makeTable([](int b) { return lowestEqual(b, 1); });
constexpr ByteTable kFirst0 = makeTable([](int b) { return lowestEqual(b, 0); });
constexpr ByteTable kLast1 = makeTable([](int b) { return highestEqual(b, 1); });
constexpr ByteTable kLast0 = makeTable([](int b) { return highestEqual(b, 0); });

static_assert(kNumberOfBitSet[0xFF] == 8 && kFirst1[0] == 8 && kFirst0[0xFF] == 8 &&
                  kLast1[0x80] == 7 && kLast0[0x7F] == 7,
              "byte tables");

// The byte k of x (k = 0 is the least significant).
constexpr unsigned byteOf(unsigned long x, int k) {
    return static_cast<unsigned>((x >> (8 * k)) & 0xFFu);
}

template <int Bytes> int countSet(unsigned long x) {
    int n = 0;
    for (int k = 0; k < Bytes; ++k)
        n += kNumberOfBitSet[byteOf(x, k)];
    return n;
}

// Walks the bytes upward while the table says "none in this byte"; Bytes * 8 when no
// byte has the bit.
template <int Bytes> int firstBit(unsigned long x, const ByteTable& table) {
    for (int k = 0; k < Bytes; ++k) {
        const int bit = table[byteOf(x, k)];
        if (bit < 8) return 8 * k + bit;
    }
    return 8 * Bytes;
}

// Walks the bytes downward from the highest; Bytes * 8 when no byte has the bit.
template <int Bytes> int lastBit(unsigned long x, const ByteTable& table) {
    for (int k = Bytes - 1; k >= 0; --k) {
        const int bit = table[byteOf(x, k)];
        if (bit < 8) return 8 * k + bit;
    }
    return 8 * Bytes;
}

} // namespace

const ByteTable VDBitMgr::numberOfBitSet = kNumberOfBitSet;
const ByteTable VDBitMgr::first1 = kFirst1;
const ByteTable VDBitMgr::first0 = kFirst0;
const ByteTable VDBitMgr::last1 = kLast1;
const ByteTable VDBitMgr::last0 = kLast0;

int VDBitMgr::getNumBits1(unsigned short x) {
    return countSet<2>(x);
}
int VDBitMgr::getNumBits0(unsigned short x) {
    return 16 - countSet<2>(x);
}
int VDBitMgr::getFirstBit1(unsigned short x) {
    return firstBit<2>(x, kFirst1);
}
int VDBitMgr::getFirstBit0(unsigned short x) {
    return firstBit<2>(x, kFirst0);
}
int VDBitMgr::getLastBit1(unsigned short x) {
    return lastBit<2>(x, kLast1);
}
int VDBitMgr::getLastBit0(unsigned short x) {
    return lastBit<2>(x, kLast0);
}

int VDBitMgr::getNumBits1(unsigned long x) {
    return countSet<4>(x);
}
int VDBitMgr::getNumBits0(unsigned long x) {
    return 32 - countSet<4>(x);
}
int VDBitMgr::getFirstBit1(unsigned long x) {
    return firstBit<4>(x, kFirst1);
}
int VDBitMgr::getFirstBit0(unsigned long x) {
    return firstBit<4>(x, kFirst0);
}
int VDBitMgr::getLastBit1(unsigned long x) {
    return lastBit<4>(x, kLast1);
}
int VDBitMgr::getLastBit0(unsigned long x) {
    return lastBit<4>(x, kLast0);
}
