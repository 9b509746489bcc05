// VDBoolArray storage: allocation with guards, assign, resize, copy and release.

#include "foundation/vd_bool_array.h"

#include <algorithm>
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
