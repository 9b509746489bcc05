#pragma once

// A plain model of VDBoolArray for the differential test: the bits below the count in
// a std::vector<bool>, and the capacity in bytes, which follows exact allocation. It
// encodes the length rules of the operations between two arrays.

#include "foundation/vd_bool_array.h"

#include <algorithm>
#include <vector>

namespace neq::test {

inline int bytesForBits(int n) {
    return (n + 7) / 8;
}

// Bit i of the array's storage, also beyond the bit count (i < 8 x capacity).
inline bool storedBit(const VDBoolArray& a, int i) {
    return (a.getData()[i / 8] >> (i % 8)) & 1;
}

struct BoolArrayModel {
    std::vector<bool> bits;
    int capacity = 0;

    int size() const { return static_cast<int>(bits.size()); }
    bool at(int i) const { return i < size() && bits[i]; }

    // `real` is the array before the same resize: where the in-place path keeps whole
    // bytes as they were, the new bits are what its storage holds there.
    void resize(int n, bool value, const VDBoolArray& real) {
        n = std::max(n, 0);
        const int old = size();
        std::vector<bool> grown(bits);
        grown.resize(static_cast<std::size_t>(n), value);
        if (n > 8 * capacity) {
            capacity = bytesForBits(n);
        } else {
            for (int i = old; i < n; ++i)
                if (i / 8 != old / 8) grown[i] = storedBit(real, i);
        }
        bits = grown;
    }

    void reinit(int n, bool value) {
        n = std::max(n, 0);
        bits.assign(static_cast<std::size_t>(n), value);
        capacity = bytesForBits(n);
    }

    void assign(int n, bool value) {
        n = std::max(n, 0);
        bits.assign(static_cast<std::size_t>(n), value);
        capacity = std::max(capacity, bytesForBits(n));
    }

    // Copy of other's bits into storage that is reused when large enough.
    void copyFrom(const BoolArrayModel& other, bool reuseStorage) {
        const int bytes = bytesForBits(other.size());
        if (!reuseStorage || bytes > capacity) capacity = bytes;
        bits = other.bits;
    }

    // merge, set(other), toggle(other): the larger count, missing bits read as 0.
    template <class Op> void combineLonger(const BoolArrayModel& other, Op op) {
        if (other.size() == 0) return;
        const int n = std::max(size(), other.size());
        if (n > 8 * capacity) capacity = bytesForBits(n);
        std::vector<bool> result(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i)
            result[i] = op(at(i), other.at(i));
        bits = result;
    }

    void clearWith(const BoolArrayModel& other) {
        if (other.size() == 0) return;
        for (int i = 0; i < std::min(size(), other.size()); ++i)
            if (other.bits[i]) bits[i] = false;
    }

    void inter(const BoolArrayModel& other) {
        if (size() == 0) return;
        const int n = std::min(size(), other.size());
        for (int i = 0; i < n; ++i)
            bits[i] = bits[i] && other.bits[i];
        bits.resize(static_cast<std::size_t>(n));
    }

    bool hasInter(const BoolArrayModel& other) const {
        for (int i = 0; i < std::min(size(), other.size()); ++i)
            if (bits[i] && other.bits[i]) return true;
        return false;
    }

    bool bitTest(const BoolArrayModel& other) const {
        const int last = other.findLast(true, other.size() - 1);
        if (last < 0) return true;
        if (last >= size()) return false;
        for (int i = 0; i <= last; ++i)
            if (other.bits[i] && !bits[i]) return false;
        return true;
    }

    int findFirst(bool value, int from) const {
        for (int i = std::max(from, 0); i < size(); ++i)
            if (bits[i] == value) return i;
        return -1;
    }

    int findLast(bool value, int from) const {
        if (from < 0) return -1;
        for (int i = std::min(from, size() - 1); i >= 0; --i)
            if (bits[i] == value) return i;
        return -1;
    }

    int countWithin(bool value, int from, int to) const {
        int n = 0;
        for (int i = std::max(from, 0); i < std::min(to, size()); ++i)
            n += bits[i] == value;
        return n;
    }

    std::vector<int> indexes(bool value) const {
        std::vector<int> out;
        for (int i = 0; i < size(); ++i)
            if (bits[i] == value) out.push_back(i);
        return out;
    }

    void insert(int i, bool value, const VDBoolArray& real) {
        if (i < 0 || i >= size()) return;
        resize(size() + 1, false, real);
        bits.pop_back();
        bits.insert(bits.begin() + i, value);
    }

    void erase(int i) {
        if (i < 0 || i >= size()) return;
        bits.erase(bits.begin() + i);
    }

    // set(first, count) and clear(first, count).
    void writeRange(int first, int count, bool value, const VDBoolArray& real) {
        if (first < 0) return;
        count = std::max(count, 1);
        if (first + count > size()) resize(first + count, false, real);
        for (int i = first; i < first + count; ++i)
            bits[i] = value;
    }

    // setAllModifiedIndices and clearAllModifiedIndices: whole bytes below the count.
    void markBytes(const std::vector<int>& indices, bool value) {
        for (int index : indices) {
            if (index < 0 || index >= size()) continue;
            const int byteStart = index / 8 * 8;
            for (int i = byteStart; i < std::min(byteStart + 8, size()); ++i)
                bits[i] = value;
        }
    }
};

} // namespace neq::test
