// VDBoolArray: storage (allocation with guards, assign, resize, copy, release), bit
// access, searches and the logical operations.

#include "foundation/vd_bool_array.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <utility>

namespace {

constexpr unsigned char kGuard = 1;

// The leading guard and the one shared byte every empty array points at. Nothing ever
// writes to it: every writing path needs a bit count or a capacity above 0.
unsigned char s_emptyBlock[2] = {kGuard, kGuard};

unsigned char* sharedEmptyByte() {
    return &s_emptyBlock[1];
}

unsigned char fillByte(bool value) {
    return value ? 0xFF : 0x00;
}

} // namespace

VDBoolArray::VDBoolArray() : data_(sharedEmptyByte()), end_(sharedEmptyByte()), count_(0) {}

VDBoolArray::VDBoolArray(int n, bool value) : VDBoolArray() {
    assign(n, value);
}

VDBoolArray::VDBoolArray(const VDBoolArray& other) : VDBoolArray() {
    copy(other, false);
}

VDBoolArray::VDBoolArray(VDBoolArray&& other) noexcept : VDBoolArray() {
    swap(other);
}

VDBoolArray& VDBoolArray::operator=(const VDBoolArray& other) {
    copy(other, true);
    return *this;
}

VDBoolArray& VDBoolArray::operator=(VDBoolArray&& other) noexcept {
    if (this != &other) {
        clearArray();
        swap(other);
    }
    return *this;
}

VDBoolArray::~VDBoolArray() {
    release();
}

unsigned char* VDBoolArray::allocate(int bytes) {
    auto* block = new unsigned char[static_cast<std::size_t>(bytes) + 2];
    block[0] = kGuard;
    block[bytes + 1] = kGuard;
    return block + 1;
}

void VDBoolArray::release() {
    if (data_ != sharedEmptyByte()) delete[](data_ - 1);
}

void VDBoolArray::adopt(unsigned char* data, int bytes) {
    release();
    data_ = data;
    end_ = data + bytes;
}

void VDBoolArray::clearArray() {
    release();
    data_ = end_ = sharedEmptyByte();
    count_ = 0;
}

void VDBoolArray::swap(VDBoolArray& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(end_, other.end_);
    std::swap(count_, other.count_);
}

std::size_t VDBoolArray::getMemoryUsed() const {
    return static_cast<std::size_t>(bytesFor(count_)) + 1;
}

void VDBoolArray::growStorage(int n) {
    const int bytes = bytesFor(n);
    const int kept = bytesFor(count_);
    unsigned char* fresh = allocate(bytes);
    std::memcpy(fresh, data_, static_cast<std::size_t>(kept));
    std::memset(fresh + kept, 0, static_cast<std::size_t>(bytes - kept));
    adopt(fresh, bytes);
}

void VDBoolArray::assign(int n, bool value) {
    n = std::max(n, 0);
    const int bytes = bytesFor(n);
    if (bytes > getCapacityInBytes()) adopt(allocate(bytes), bytes);
    std::memset(data_, fillByte(value), static_cast<std::size_t>(getCapacityInBytes()));
    count_ = n;
}

void VDBoolArray::assign(int n, const char* bytes) {
    n = std::max(n, 0);
    const int size = bytesFor(n);
    if (size > getCapacityInBytes()) adopt(allocate(size), size);
    if (bytes != nullptr)
        std::memcpy(data_, bytes, static_cast<std::size_t>(size));
    else
        std::memset(data_, 0, static_cast<std::size_t>(size));
    count_ = n;
}

void VDBoolArray::fillUpward(int bit, bool value) {
    const unsigned char upward = fromBit(bit);
    if (value)
        data_[bit >> 3] |= upward;
    else
        data_[bit >> 3] &= static_cast<unsigned char>(~upward);
}

void VDBoolArray::resize(int n, bool value) {
    n = std::max(n, 0);
    const int old = count_;
    const unsigned char fill = fillByte(value);
    if (n > capacityInBits()) {
        const int bytes = bytesFor(n);
        const int kept = bytesFor(old);
        unsigned char* fresh = allocate(bytes);
        std::memcpy(fresh, data_, static_cast<std::size_t>(kept));
        std::memset(fresh + kept, fill, static_cast<std::size_t>(bytes - kept));
        adopt(fresh, bytes);
        fillUpward(old, value);
    } else if (data_ != end_) {
        const int from = bytesFor(n);
        std::memset(data_ + from, fill, static_cast<std::size_t>(getCapacityInBytes() - from));
        // A full old array has its count's byte on the trailing guard: leave it be.
        if (old < capacityInBits()) fillUpward(old, value);
    }
    count_ = n;
}

void VDBoolArray::reinit(int n, bool value) {
    clearArray();
    resize(n, value);
}

void VDBoolArray::copy(const VDBoolArray& other, bool reuseStorage) {
    if (this == &other) return;
    const int bytes = bytesFor(other.count_);
    if (!reuseStorage || bytes > getCapacityInBytes()) {
        if (bytes == 0)
            clearArray();
        else
            adopt(allocate(bytes), bytes);
    }
    std::memcpy(data_, other.data_, static_cast<std::size_t>(bytes));
    count_ = other.count_;
}

// VDBoolArray edits: auto-resizing bits, ranges, index lists, whole-array changes,
// insert and erase.

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

// VDBoolArray searches and counts: whole bytes at a time through the byte tables.

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

// VDBoolArray operations between two arrays and their length rules.

namespace {

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
