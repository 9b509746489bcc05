// VDBoolArray operations between two arrays and their length rules.

#include "foundation/vd_bool_array.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr unsigned char kGuard = 1;

struct OrBytes {
    unsigned char operator()(unsigned char a, unsigned char b) const { return a | b; }
};
struct XorBytes {
    unsigned char operator()(unsigned char a, unsigned char b) const { return a ^ b; }
};

} // namespace

// The result has the larger bit count. Bytes common to both are combined; the partial
// byte of the shorter array takes part under the mask of its used bits (so its stale
// bits count as 0); the longer array's remaining bytes are kept or copied.
template <class Op> void VDBoolArray::combineLonger(const VDBoolArray& other, Op op) {
    if (other.count_ == 0) return;
    const unsigned char* theirs = other.data_;
    const int shorter = std::min(count_, other.count_);
    const int whole = shorter >> 3;
    if (other.count_ > count_) {
        if (other.count_ > capacityInBits()) growStorage(other.count_);
        for (int k = 0; k < whole; ++k)
            data_[k] = op(data_[k], theirs[k]);
        int next = whole;
        if (shorter & 7) {
            data_[next] = op(data_[next] & lowBits(shorter & 7), theirs[next]);
            ++next;
        }
        std::memcpy(data_ + next, theirs + next,
                    static_cast<std::size_t>(bytesFor(other.count_) - next));
        count_ = other.count_;
    } else {
        for (int k = 0; k < whole; ++k)
            data_[k] = op(data_[k], theirs[k]);
        if (shorter & 7) data_[whole] = op(data_[whole], theirs[whole] & lowBits(shorter & 7));
    }
}

void VDBoolArray::merge(const VDBoolArray& other) {
    combineLonger(other, OrBytes());
}

void VDBoolArray::toggle(const VDBoolArray& other) {
    combineLonger(other, XorBytes());
}

void VDBoolArray::clear(const VDBoolArray& other) {
    if (other.count_ == 0) return;
    const int shorter = std::min(count_, other.count_);
    const int whole = shorter >> 3;
    for (int k = 0; k < whole; ++k)
        data_[k] &= static_cast<unsigned char>(~other.data_[k]);
    if (shorter & 7)
        data_[whole] &= static_cast<unsigned char>(~(other.data_[whole] & lowBits(shorter & 7)));
}

void VDBoolArray::inter(const VDBoolArray& other) {
    if (count_ == 0) return;
    if (other.count_ == 0) {
        count_ = 0;
        data_[0] = kGuard;
        return;
    }
    const int shorter = std::min(count_, other.count_);
    const int whole = shorter >> 3;
    for (int k = 0; k < whole; ++k)
        data_[k] &= other.data_[k];
    if (shorter & 7) data_[whole] &= other.data_[whole] & lowBits(shorter & 7);
    count_ = shorter;
    // A new guard right after the shortened data keeps later scans short.
    const int next = bytesFor(shorter);
    if (next < getCapacityInBytes()) data_[next] = kGuard;
}

bool VDBoolArray::hasInter(const VDBoolArray& other) const {
    const int shorter = std::min(count_, other.count_);
    const int whole = shorter >> 3;
    for (int k = 0; k < whole; ++k)
        if (data_[k] & other.data_[k]) return true;
    return (shorter & 7) != 0 && (data_[whole] & other.data_[whole] & lowBits(shorter & 7)) != 0;
}

bool VDBoolArray::bitTest(const VDBoolArray& other) const {
    const int last = other.findLast(true);
    if (last < 0) return true;
    if (last >= count_) return false;
    const int lastByte = last >> 3;
    for (int k = 0; k < lastByte; ++k)
        if (other.data_[k] & ~data_[k]) return false;
    return (other.data_[lastByte] & ~data_[lastByte] & throughBit(last)) == 0;
}

bool VDBoolArray::operator==(const VDBoolArray& other) const {
    if (count_ != other.count_) return false;
    const int whole = count_ >> 3;
    if (std::memcmp(data_, other.data_, static_cast<std::size_t>(whole)) != 0) return false;
    return (count_ & 7) == 0 || ((data_[whole] ^ other.data_[whole]) & lowBits(count_ & 7)) == 0;
}
