// VDBoolArray edits: auto-resizing bits, ranges, index lists, whole-array changes,
// insert and erase.

#include "foundation/vd_bool_array.h"

#include <climits>
#include <cstring>

bool VDBoolArray::reach(int i) {
    if (i < 0) return false;
    if (i >= count_) resize(i + 1, false);
    return true;
}

void VDBoolArray::setAutoResize(int i) {
    if (reach(i)) set(i);
}

void VDBoolArray::clearAutoResize(int i) {
    if (reach(i)) clear(i);
}

void VDBoolArray::toggleAutoResize(int i) {
    if (reach(i)) toggle(i);
}

void VDBoolArray::fillBits(int begin, int end, bool value) {
    const int firstByte = begin >> 3;
    const int lastByte = (end - 1) >> 3;
    auto apply = [&](int byte, unsigned char mask) {
        if (value)
            data_[byte] |= mask;
        else
            data_[byte] &= static_cast<unsigned char>(~mask);
    };
    const unsigned char head = fromBit(begin);
    const unsigned char tail = throughBit(end - 1);
    if (firstByte == lastByte) {
        apply(firstByte, head & tail);
        return;
    }
    apply(firstByte, head);
    std::memset(data_ + firstByte + 1, value ? 0xFF : 0x00,
                static_cast<std::size_t>(lastByte - firstByte - 1));
    apply(lastByte, tail);
}

void VDBoolArray::writeRange(int first, int count, bool value) {
    if (first < 0) return;
    if (count < 1) count = 1;
    if (count > INT_MAX - first) return; // the end would not be an int
    const int end = first + count;
    if (end > count_) resize(end, false);
    fillBits(first, end, value);
}

void VDBoolArray::set(int n, const int* indices) {
    for (int k = 0; k < n; ++k)
        set(indices[k]);
}

void VDBoolArray::clear(int n, const int* indices) {
    for (int k = 0; k < n; ++k)
        clear(indices[k]);
}

void VDBoolArray::set(const VDArray<int>& indices) {
    for (int i : indices)
        set(i);
}

void VDBoolArray::clear(const VDArray<int>& indices) {
    for (int i : indices)
        clear(i);
}

void VDBoolArray::markBytes(const VDArray<int>& indices, unsigned char fill) {
    if (count_ == 0) return;
    const int lastByte = (count_ - 1) >> 3;
    const unsigned char saved = data_[lastByte];
    for (int i : indices)
        if (static_cast<unsigned>(i) < static_cast<unsigned>(count_)) data_[i >> 3] = fill;
    const unsigned char used = throughBit(count_ - 1);
    data_[lastByte] = static_cast<unsigned char>((data_[lastByte] & used) | (saved & ~used));
}

void VDBoolArray::setAll() {
    std::memset(data_, 0xFF, static_cast<std::size_t>(bytesFor(count_)));
}

void VDBoolArray::clearAll() {
    std::memset(data_, 0x00, static_cast<std::size_t>(bytesFor(count_)));
}

void VDBoolArray::toggleAll() {
    const int bytes = bytesFor(count_);
    for (int k = 0; k < bytes; ++k)
        data_[k] = static_cast<unsigned char>(~data_[k]);
}

void VDBoolArray::insert(int i, bool value) {
    if (i < 0 || i >= count_ || count_ == INT_MAX) return;
    resize(count_ + 1, false);
    for (int j = count_ - 1; j > i; --j)
        set(j, getNoSizeTest(j - 1));
    set(i, value);
}

void VDBoolArray::erase(int i) {
    if (i < 0 || i >= count_) return;
    for (int j = i; j < count_ - 1; ++j)
        set(j, getNoSizeTest(j + 1));
    --count_;
}
