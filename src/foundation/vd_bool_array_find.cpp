// VDBoolArray searches and counts: whole bytes at a time through the byte tables.

#include "foundation/vd_bool_array.h"

#include <algorithm>

namespace {

// The byte a scan for value skips over whole.
unsigned char skippedByte(bool value) {
    return value ? 0x00 : 0xFF;
}

// b with the bits of mask forced so that they never match value.
unsigned char hideBits(unsigned char b, unsigned char mask, bool value) {
    return value ? static_cast<unsigned char>(b & ~mask) : static_cast<unsigned char>(b | mask);
}

} // namespace

int VDBoolArray::findFirst(bool value, int from) const {
    if (from >= count_) return -1;
    const int start = std::max(from, 0);
    const unsigned char skip = skippedByte(value);
    const VDBitMgr::ByteTable& table = value ? VDBitMgr::first1 : VDBitMgr::first0;
    const unsigned char* p = data_ + (start >> 3);
    unsigned char b = hideBits(*p, lowBits(start & 7), value);
    // The trailing guard (1) is neither skipped byte, so it ends the scan.
    while (b == skip)
        b = *++p;
    const long long index = 8LL * (p - data_) + table[b];
    return index < count_ ? static_cast<int>(index) : -1;
}

int VDBoolArray::findLast(bool value, int from) const {
    if (from < 0 || count_ == 0) return -1;
    const int start = std::min(from, count_ - 1);
    const unsigned char skip = skippedByte(value);
    const VDBitMgr::ByteTable& table = value ? VDBitMgr::last1 : VDBitMgr::last0;
    const unsigned char* p = data_ + (start >> 3);
    unsigned char b = hideBits(*p, static_cast<unsigned char>(~throughBit(start)), value);
    // The leading guard (1) is neither skipped byte, so it ends the scan.
    while (b == skip)
        b = *--p;
    if (p < data_) return -1;
    return static_cast<int>(8 * (p - data_) + table[b]);
}

int VDBoolArray::getNumberOfBitSetWithin(int from, int to) const {
    from = std::max(from, 0);
    to = std::min(to, count_);
    if (from >= to) return 0;
    const VDBitMgr::ByteTable& ones = VDBitMgr::numberOfBitSet;
    const int firstByte = from >> 3;
    const int lastByte = (to - 1) >> 3;
    const unsigned char head = fromBit(from);
    const unsigned char tail = throughBit(to - 1);
    if (firstByte == lastByte) return ones[data_[firstByte] & head & tail];
    int n = ones[data_[firstByte] & head] + ones[data_[lastByte] & tail];
    for (int k = firstByte + 1; k < lastByte; ++k)
        n += ones[data_[k]];
    return n;
}

int VDBoolArray::getNumberOfBitClearedWithin(int from, int to) const {
    from = std::max(from, 0);
    to = std::min(to, count_);
    if (from >= to) return 0;
    return (to - from) - getNumberOfBitSetWithin(from, to);
}

void VDBoolArray::collectIndexes(VDArray<int>& out, unsigned char flip) const {
    out.clear();
    const int bytes = bytesFor(count_);
    for (int k = 0; k < bytes; ++k) {
        unsigned b = static_cast<unsigned char>(data_[k] ^ flip);
        if (k == bytes - 1) b &= throughBit(count_ - 1);
        for (; b != 0; b &= b - 1)
            out.push_back(8 * k + VDBitMgr::first1[b]);
    }
}
