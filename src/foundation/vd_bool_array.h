#pragma once

// VDBoolArray: a packed array of bits. Bit i lives in byte i / 8 under the mask
// 1 << (i % 8). The data bytes sit between two guard bytes of value 1: a guard is
// neither 0 nor 0xFF, so the byte scans of the find operations stop on it without a
// bounds test. Storage grows to exactly the bytes needed and never shrinks; the empty
// array points at one shared static byte and owns nothing.
//
// Bits of the allocated bytes beyond the bit count are not kept clean: operations
// that read the array mask them off. Index arguments of the operations without a size
// test must satisfy 0 <= i < getSize().
//
// Operations combining two arrays of different lengths: merge, set(other) and
// toggle(other) give the larger of the two bit counts (the missing bits of the shorter
// array count as 0); inter gives the smaller; clear(other) keeps this array's count.

#include "foundation/export.h"
#include "foundation/vd_array.h"
#include "foundation/vd_bit_mgr.h"

#include <cstddef>

class NEQBRIDGE_API VDBoolArray {
  public:
    VDBoolArray();
    // n bits; every allocated byte is filled with value, so the unused bits of the
    // last byte take it too. A negative n counts as 0 in every operation.
    VDBoolArray(int n, bool value);
    VDBoolArray(const VDBoolArray& other);
    VDBoolArray(VDBoolArray&& other) noexcept;
    VDBoolArray& operator=(const VDBoolArray& other);
    VDBoolArray& operator=(VDBoolArray&& other) noexcept;
    ~VDBoolArray();

    // --- storage ---------------------------------------------------------------------
    // The current storage is reused when it is large enough, otherwise replaced by an
    // exact block; every allocated byte is filled with value.
    void assign(int n, bool value);
    // n bits taken from the (n + 7) / 8 bytes at bytes (null reads as zeros).
    void assign(int n, const char* bytes);
    // Grows into a new exact block when the capacity is too small. Otherwise works in
    // place and deliberately narrowly: the bytes from the new end byte to the end of the
    // capacity are filled, and the bits of the old count's byte from the old count
    // upward, but whole bytes between those two keep their contents. Callers grow with
    // false into tails that earlier shrinks cleared.
    void resize(int n, bool value);
    // A fresh array: the storage is released first, then resize(n, value).
    void reinit(int n, bool value);
    // This array becomes a copy of other's bits and count. With reuseStorage the
    // current block is kept when it is large enough; without it the storage becomes an
    // exact fit for other (none at all when other is empty).
    void copy(const VDBoolArray& other, bool reuseStorage = true);
    void swap(VDBoolArray& other) noexcept;
    // Releases the storage and returns to the empty state.
    void clearArray();
    void freeData() { clearArray(); }

    int getSize() const { return count_; }
    bool isEmpty() const { return count_ == 0; }
    // Both are (bit count + 7) / 8 + 1.
    std::size_t getMemoryUsed() const;
    std::size_t getDynMemoryUsed() const { return getMemoryUsed(); }

    // Read-only view of the storage, for diagnostics and tests.
    int getCapacityInBytes() const { return static_cast<int>(end_ - data_); }
    const unsigned char* getData() const { return data_; }
    unsigned char getLeadingGuard() const { return data_[-1]; }
    unsigned char getTrailingGuard() const { return *end_; }

    // --- single bits -----------------------------------------------------------------
    // 0 when i is not a valid index.
    bool get(int i) const {
        return static_cast<unsigned>(i) < static_cast<unsigned>(count_) && getNoSizeTest(i);
    }
    bool getNoSizeTest(int i) const { return (data_[i >> 3] >> (i & 7)) & 1u; }
    bool operator[](int i) const { return getNoSizeTest(i); }
    // The bit under its mask within its byte: zero or non-zero.
    unsigned char getAsMask(int i) const { return data_[i >> 3] & maskOf(i); }

    void set(int i, bool value) { value ? set(i) : clear(i); }
    void set(int i) { data_[i >> 3] |= maskOf(i); }
    void clear(int i) { data_[i >> 3] &= static_cast<unsigned char>(~maskOf(i)); }
    void toggle(int i) { data_[i >> 3] ^= maskOf(i); }
    // Grow with false to i + 1 bits first when i is beyond the end (negative i: nothing).
    void setAutoResize(int i);
    void clearAutoResize(int i);
    void toggleAutoResize(int i);

    // --- ranges and lists ------------------------------------------------------------
    // Bits first .. first + count - 1, growing with false first when the array is
    // shorter. Nothing when first is negative; a count below 1 counts as 1.
    void set(int first, int count) { writeRange(first, count, true); }
    void clear(int first, int count) { writeRange(first, count, false); }
    void set(int n, const int* indices);
    void clear(int n, const int* indices);
    void set(const VDArray<int>& indices);
    void clear(const VDArray<int>& indices);
    // Coarse marking: every whole byte holding a listed index is filled; the bits of
    // the last byte beyond the bit count are then put back. Indices outside the array
    // are skipped.
    void setAllModifiedIndices(const VDArray<int>& indices) { markBytes(indices, 0xFF); }
    void clearAllModifiedIndices(const VDArray<int>& indices) { markBytes(indices, 0x00); }

    void setAll();
    void clearAll();
    void toggleAll();
    void inverse() { toggleAll(); }

    // Only for 0 <= i < getSize(); appending at i == getSize() is refused on purpose.
    void insert(int i, bool value);
    // Only for 0 <= i < getSize(): the bits above move down one at a time.
    void erase(int i);

    // --- searches and counts ---------------------------------------------------------
    // Lowest index >= from (highest index <= from) whose bit equals value; -1 when none.
    int findFirst(bool value, int from) const;
    int findFirst(bool value) const { return findFirst(value, 0); }
    int findLast(bool value, int from) const;
    int findLast(bool value) const { return findLast(value, count_ - 1); }

    int getNumberOfBitSet() const { return getNumberOfBitSetWithin(0, count_); }
    int getNumberOfBitCleared() const { return count_ - getNumberOfBitSet(); }
    // Over from .. to - 1, clipped to the array; 0 when from is not below to.
    int getNumberOfBitSetWithin(int from, int to) const;
    int getNumberOfBitClearedWithin(int from, int to) const;
    // The indices of the set (cleared) bits, ascending; out is replaced.
    void getIndexesSet(VDArray<int>& out) const { collectIndexes(out, 0x00); }
    void getIndexesCleared(VDArray<int>& out) const { collectIndexes(out, 0xFF); }

    // --- with another array ----------------------------------------------------------
    // this | other; nothing when other is empty.
    void merge(const VDBoolArray& other);
    // this ^ other, with merge's length rule.
    void toggle(const VDBoolArray& other);
    // this | other: the same as merge.
    void set(const VDBoolArray& other) { merge(other); }
    // this & ~other over the shorter length; the count and the bits beyond stay.
    // Nothing when other is empty.
    void clear(const VDBoolArray& other);
    // this & other over the shorter length, which becomes the bit count. Nothing when
    // this array is empty; an empty other empties it.
    void inter(const VDBoolArray& other);
    // Some index is set in both.
    bool hasInter(const VDBoolArray& other) const;
    // Every bit set in other is set here (other's bits beyond its highest set bit are
    // not looked at, so a longer other with a cleared tail can pass).
    bool bitTest(const VDBoolArray& other) const;
    // Equal counts and equal bits below the count.
    bool operator==(const VDBoolArray& other) const;
    bool operator!=(const VDBoolArray& other) const { return !(*this == other); }

    // --- byte helpers ----------------------------------------------------------------
    static int getNumBitsAt1(unsigned char b) { return VDBitMgr::getNumBits1(b); }
    static int getNumBitsAt0(unsigned char b) { return VDBitMgr::getNumBits0(b); }
    static int getFirstBitAt1(unsigned char b) { return VDBitMgr::getFirstBit1(b); }
    static int getFirstBitAt0(unsigned char b) { return VDBitMgr::getFirstBit0(b); }
    static int getLastBitAt1(unsigned char b) { return VDBitMgr::getLastBit1(b); }
    static int getLastBitAt0(unsigned char b) { return VDBitMgr::getLastBit0(b); }

  private:
    static unsigned char maskOf(int i) { return static_cast<unsigned char>(1u << (i & 7)); }
    long long capacityInBits() const { return 8LL * (end_ - data_); }
    // Bytes holding n >= 0 bits, without overflow near INT_MAX.
    static int bytesFor(int n) { return n / 8 + (n % 8 != 0); }
    // The bits 0 .. n - 1 of a byte (n from 0 to 8).
    static unsigned char lowBits(int n) { return static_cast<unsigned char>((1u << n) - 1); }
    // Within the byte of bit i: its bits from i upward, and from bit 0 through i.
    static unsigned char fromBit(int i) { return static_cast<unsigned char>(0xFFu << (i & 7)); }
    static unsigned char throughBit(int i) { return lowBits((i & 7) + 1); }

    // A block of bytes + 2 with both guards set; returns the first data byte.
    static unsigned char* allocate(int bytes);
    // Takes a block from allocate() as the storage, releasing the old one.
    void adopt(unsigned char* data, int bytes);
    void release();
    // An exact block for n bits holding the current bytes; the rest is zero.
    void growStorage(int n);
    // Sets (clears) the bits of bit's byte from bit % 8 upward.
    void fillUpward(int bit, bool value);
    // Sets (clears) the bits begin .. end - 1, whole bytes at once.
    void fillBits(int begin, int end, bool value);
    void writeRange(int first, int count, bool value);
    // Grows with false so that bit i exists; false for a negative i.
    bool reach(int i);
    void markBytes(const VDArray<int>& indices, unsigned char fill);
    // Pushes the indices whose bit differs from the bits of flip.
    void collectIndexes(VDArray<int>& out, unsigned char flip) const;
    // The bytes of other combined into this one under merge's length rule.
    template <class Op> void combineLonger(const VDBoolArray& other, Op op);

    unsigned char* data_; // first data byte
    unsigned char* end_;  // one past the last allocated data byte (the trailing guard)
    int count_;           // bits in use
};
