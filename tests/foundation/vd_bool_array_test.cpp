// What the differential test against the model (at the end of this file) cannot
// see: the empty state, the storage bytes beyond the bit count, aliasing, and the
// accessors without a size test.

#include "foundation/vd_bool_array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

// The storage bytes, also those beyond the bit count.
std::vector<int> storage(const VDBoolArray& a) {
    return std::vector<int>(a.getData(), a.getData() + a.getCapacityInBytes());
}

std::string bitsOf(const VDBoolArray& a) {
    std::string text;
    for (int i = 0; i < a.getSize(); ++i)
        text += a.get(i) ? '1' : '0';
    return text;
}

TEST(VDBoolArray, EmptyArraysShareOneStaticByte) {
    VDBoolArray a, b;
    EXPECT_EQ(a.getCapacityInBytes(), 0);
    EXPECT_EQ(a.getData(), b.getData());
    EXPECT_EQ(a.getDynMemoryUsed(), 1u);
    EXPECT_EQ(a.getLeadingGuard(), 1);
    EXPECT_EQ(a.findFirst(true), -1);
    EXPECT_EQ(a.findLast(true, 10), -1);
    EXPECT_FALSE(a.get(0));

    // Nothing allocates for zero bits, and releasing returns to the shared byte.
    EXPECT_EQ(VDBoolArray(0, true).getData(), a.getData());
    EXPECT_EQ(VDBoolArray(a).getData(), a.getData());
    a.resize(0, true);
    a.inter(b);
    a.clear(b);
    a.merge(b);
    EXPECT_EQ(a.getData(), b.getData());
    VDBoolArray grown(30, true);
    grown.clearArray();
    EXPECT_EQ(grown.getData(), b.getData());
    EXPECT_EQ(grown.getSize(), 0);
    VDBoolArray freed(9, false);
    freed.freeData();
    EXPECT_EQ(freed.getData(), b.getData());
    VDBoolArray negative(-5, true);
    EXPECT_EQ(negative.getSize(), 0);
    EXPECT_EQ(negative.getCapacityInBytes(), 0);
}

TEST(VDBoolArray, FillsAndAccessorsSeeWholeBytes) {
    // Every allocated byte takes the value, also the bits beyond the count.
    EXPECT_EQ(storage(VDBoolArray(10, true)), (std::vector<int>{0xFF, 0xFF}));
    VDBoolArray a(13, false);
    a.assign(10, true);
    EXPECT_EQ(storage(a), (std::vector<int>{0xFF, 0xFF}));
    EXPECT_FALSE(a.get(10));
    EXPECT_FALSE(a.get(-1));
    EXPECT_TRUE(a[9]);
    a.clear(4);
    EXPECT_EQ(a.getAsMask(4), 0);
    EXPECT_EQ(a.getAsMask(5), 0x20);
    EXPECT_EQ(a.getAsMask(12), 0x10) << "no size test";
}

TEST(VDBoolArray, CoarseMarkingKeepsTheBitsBeyondTheCount) {
    VDBoolArray a(13, false);
    a.setAllModifiedIndices(VDArray<int>{9, 40, -1});
    EXPECT_EQ(storage(a), (std::vector<int>{0x00, 0x1F}));

    VDBoolArray b(13, true);
    b.clearAllModifiedIndices(VDArray<int>{2, 12});
    EXPECT_EQ(storage(b), (std::vector<int>{0x00, 0xE0}));
}

TEST(VDBoolArray, InPlaceResizeIsDeliberatelyNarrow) {
    VDBoolArray clean(40, true);
    clean.resize(4, false);
    // The old count's byte is the trailing guard here: it is left alone, and so are the
    // bits of byte 0 above the new count.
    EXPECT_EQ(storage(clean), (std::vector<int>{0xFF, 0, 0, 0, 0}));
    clean.resize(30, false);
    EXPECT_EQ(bitsOf(clean), "1111" + std::string(26, '0'));

    // A shrink with true leaves set bytes; growing with false keeps the whole bytes
    // between the old count's byte and the new end byte as they were.
    VDBoolArray dirty(40, false);
    dirty.resize(4, true);
    EXPECT_EQ(storage(dirty), (std::vector<int>{0x00, 0xFF, 0xFF, 0xFF, 0xFF}));
    dirty.resize(30, false);
    EXPECT_EQ(storage(dirty), (std::vector<int>{0x00, 0xFF, 0xFF, 0xFF, 0x00}));

    // Shrinking keeps the bits between the new and the old count in that byte.
    VDBoolArray partial(16, true);
    partial.resize(3, true);
    partial.resize(12, false);
    partial.resize(9, false);
    EXPECT_EQ(storage(partial), (std::vector<int>{0x07, 0x0F}));
}

TEST(VDBoolArray, InterWritesAGuardAfterTheShortenedData) {
    VDBoolArray i(24, true);
    VDBoolArray other(10, true);
    other.clear(1);
    i.inter(other);
    EXPECT_EQ(storage(i), (std::vector<int>{0xFD, 0x03, 0x01}));
    EXPECT_EQ(i.findFirst(false, 9), -1);

    VDBoolArray toEmpty(12, true);
    toEmpty.inter(VDBoolArray());
    EXPECT_EQ(toEmpty.getSize(), 0);
    EXPECT_EQ(storage(toEmpty), (std::vector<int>{0x01, 0xFF}));
}

TEST(VDBoolArray, AliasingAndMoves) {
    VDBoolArray a(43, true);
    a.clear(3);
    const VDBoolArray& alias = a;
    a = alias;
    EXPECT_EQ(a.getSize(), 43);
    EXPECT_EQ(a.findFirst(false), 3);
    a.merge(a);
    a.set(a);
    EXPECT_EQ(a.findFirst(false), 3);
    a.toggle(a);
    EXPECT_EQ(a.getNumberOfBitSet(), 0);
    EXPECT_EQ(a.getSize(), 43);

    a.set(5);
    VDBoolArray moved(std::move(a));
    EXPECT_EQ(moved.findFirst(true), 5);
    EXPECT_EQ(a.getSize(), 0);
    EXPECT_EQ(a.getLeadingGuard(), 1);
    EXPECT_EQ(a.getTrailingGuard(), 1);
}

} // namespace

// Long random operation sequences on VDBoolArray, checked after every step against a
// plain std::vector<bool> model.

namespace {

int bytesForBits(int n) {
    return (n + 7) / 8;
}

// Bit i of the array's storage, also beyond the bit count (i < 8 x capacity).
bool storedBit(const VDBoolArray& a, int i) {
    return (a.getData()[i / 8] >> (i % 8)) & 1;
}

// The bits below the count, and the capacity in bytes, which follows exact allocation.
// It encodes the length rules of the operations between two arrays.
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

// A fixed sequence on every platform (the standard distributions are not).
class Dice {
  public:
    explicit Dice(std::uint32_t seed) : engine_(seed) {}
    // lo .. hi inclusive.
    int between(int lo, int hi) {
        return lo + static_cast<int>(engine_() % static_cast<std::uint32_t>(hi - lo + 1));
    }
    bool coin() { return (engine_() & 1u) != 0; }
    std::vector<bool> bits(int n) {
        std::vector<bool> out(static_cast<std::size_t>(n));
        const int density = between(0, 4); // all clear .. all set
        for (int i = 0; i < n; ++i)
            out[i] = between(0, 3) < density;
        return out;
    }

  private:
    std::mt19937 engine_;
};

// The bits and storage the array must have, plus the invariants of every state.
void expectMatches(const VDBoolArray& a, const BoolArrayModel& m, const std::string& step) {
    ASSERT_EQ(a.getSize(), m.size()) << step;
    ASSERT_EQ(a.getCapacityInBytes(), m.capacity) << step;
    ASSERT_EQ(a.getLeadingGuard(), 1) << step;
    ASSERT_EQ(a.getTrailingGuard(), 1) << step;
    ASSERT_EQ(a.getMemoryUsed(), static_cast<std::size_t>(bytesForBits(m.size()) + 1)) << step;
    for (int i = 0; i < m.size(); ++i)
        ASSERT_EQ(a.getNoSizeTest(i), m.bits[i]) << step << " bit " << i;
}

// Another array holding `bits`, built along one of several paths so that the unused
// bits of its storage differ (clean, all set, left over from a longer array).
VDBoolArray buildArray(const std::vector<bool>& bits, Dice& dice) {
    const int n = static_cast<int>(bits.size());
    VDBoolArray a;
    switch (dice.between(0, 3)) {
    case 0:
        a = VDBoolArray(n, false);
        break;
    case 1:
        a = VDBoolArray(n, true);
        break;
    case 2:
        a = VDBoolArray(n + dice.between(1, 20), dice.coin());
        break;
    default: {
        std::vector<char> bytes(static_cast<std::size_t>(bytesForBits(n)) + 1);
        for (char& b : bytes)
            b = static_cast<char>(dice.between(0, 255));
        a.assign(n, bytes.data());
    }
    }
    for (int i = 0; i < n; ++i)
        a.set(i, bits[i]);
    if (a.getSize() != n) a.resize(n, dice.coin());
    return a;
}

BoolArrayModel modelOf(const std::vector<bool>& bits, const VDBoolArray& a) {
    BoolArrayModel m;
    m.bits = bits;
    m.capacity = a.getCapacityInBytes();
    return m;
}

std::vector<int> toVector(const VDArray<int>& a) {
    return std::vector<int>(a.begin(), a.end());
}

// One random step on (a, m); returns its description for failure messages.
std::string randomStep(VDBoolArray& a, BoolArrayModel& m, VDBoolArray& spare,
                       BoolArrayModel& spareModel, Dice& dice) {
    const int n = m.size();
    const bool v = dice.coin();
    const std::string vs = v ? "true" : "false";
    switch (dice.between(0, 27)) {
    case 0:
    case 1: {
        const int to = dice.coin() ? dice.between(0, n + 40) : dice.between(0, n);
        m.resize(to, v, a);
        a.resize(to, v);
        return "resize(" + std::to_string(to) + ", " + vs + ")";
    }
    case 2: {
        if (n == 0) return "nothing";
        const int i = dice.between(0, n - 1);
        switch (dice.between(0, 3)) {
        case 0:
            a.set(i, v), m.bits[i] = v;
            return "set(i, v)";
        case 1:
            a.set(i), m.bits[i] = true;
            return "set(i)";
        case 2:
            a.clear(i), m.bits[i] = false;
            return "clear(i)";
        default:
            a.toggle(i), m.bits[i] = !m.bits[i];
            return "toggle(i)";
        }
    }
    case 3:
    case 4: {
        const int first = dice.between(-3, n + 20);
        const int count = dice.between(-2, 30);
        m.writeRange(first, count, v, a);
        v ? a.set(first, count) : a.clear(first, count);
        return std::string(v ? "set(" : "clear(") + std::to_string(first) + ", " +
               std::to_string(count) + ")";
    }
    case 5: {
        const int i = dice.between(0, n + 20);
        if (i >= n) m.resize(i + 1, false, a);
        switch (dice.between(0, 2)) {
        case 0:
            a.setAutoResize(i), m.bits[i] = true;
            return "setAutoResize(" + std::to_string(i) + ")";
        case 1:
            a.clearAutoResize(i), m.bits[i] = false;
            return "clearAutoResize(" + std::to_string(i) + ")";
        default:
            a.toggleAutoResize(i), m.bits[i] = !m.bits[i];
            return "toggleAutoResize(" + std::to_string(i) + ")";
        }
    }
    case 6: {
        const int i = dice.between(-1, n);
        m.insert(i, v, a);
        a.insert(i, v);
        return "insert(" + std::to_string(i) + ", " + vs + ")";
    }
    case 7: {
        const int i = dice.between(-1, n);
        m.erase(i);
        a.erase(i);
        return "erase(" + std::to_string(i) + ")";
    }
    case 8: {
        const int from = dice.between(-5, n + 5);
        EXPECT_EQ(a.findFirst(v, from), m.findFirst(v, from)) << "from " << from;
        EXPECT_EQ(a.findFirst(v), m.findFirst(v, 0));
        return "findFirst";
    }
    case 9: {
        const int from = dice.between(-5, n + 5);
        EXPECT_EQ(a.findLast(v, from), m.findLast(v, from)) << "from " << from;
        EXPECT_EQ(a.findLast(v), m.findLast(v, n - 1));
        return "findLast";
    }
    case 10: {
        const int from = dice.between(0, n);
        const int to = dice.between(0, n);
        EXPECT_EQ(a.getNumberOfBitSetWithin(from, to), m.countWithin(true, from, to));
        EXPECT_EQ(a.getNumberOfBitClearedWithin(from, to), m.countWithin(false, from, to));
        EXPECT_EQ(a.getNumberOfBitSet(), m.countWithin(true, 0, n));
        EXPECT_EQ(a.getNumberOfBitCleared(), m.countWithin(false, 0, n));
        return "counts " + std::to_string(from) + ".." + std::to_string(to);
    }
    case 11: {
        VDArray<int> out(3, 99);
        v ? a.getIndexesSet(out) : a.getIndexesCleared(out);
        EXPECT_EQ(toVector(out), m.indexes(v));
        return "getIndexes";
    }
    case 12:
    case 13:
    case 14:
    case 15:
    case 16:
    case 17: {
        // Against another array, either unrelated or a near copy of this one.
        std::vector<bool> bits = dice.bits(dice.between(0, 90));
        if (dice.between(0, 3) == 0) {
            bits = m.bits;
            if (!bits.empty() && dice.coin()) bits[dice.between(0, n - 1)].flip();
            if (dice.coin()) bits.resize(bits.size() + dice.between(0, 12), false);
        }
        const VDBoolArray other = buildArray(bits, dice);
        const BoolArrayModel om = modelOf(bits, other);
        EXPECT_EQ(a.hasInter(other), m.hasInter(om));
        EXPECT_EQ(a.bitTest(other), m.bitTest(om));
        EXPECT_EQ(a == other, m.bits == om.bits);
        EXPECT_EQ(a != other, m.bits != om.bits);
        const std::string with = " with " + std::to_string(om.size()) + " bits";
        switch (dice.between(0, 4)) {
        case 0:
            a.merge(other), m.combineLonger(om, [](bool x, bool y) { return x || y; });
            return "merge" + with;
        case 1:
            a.set(other), m.combineLonger(om, [](bool x, bool y) { return x || y; });
            return "set(other)" + with;
        case 2:
            a.toggle(other), m.combineLonger(om, [](bool x, bool y) { return x != y; });
            return "toggle(other)" + with;
        case 3:
            a.clear(other), m.clearWith(om);
            return "clear(other)" + with;
        default:
            a.inter(other), m.inter(om);
            return "inter" + with;
        }
    }
    case 18: {
        const int to = dice.between(0, 120);
        a.reinit(to, v), m.reinit(to, v);
        return "reinit(" + std::to_string(to) + ", " + vs + ")";
    }
    case 19: {
        const int to = dice.between(0, 120);
        a.assign(to, v), m.assign(to, v);
        return "assign(" + std::to_string(to) + ", " + vs + ")";
    }
    case 20: {
        switch (dice.between(0, 2)) {
        case 0:
            a.setAll(), m.bits.assign(m.bits.size(), true);
            return "setAll";
        case 1:
            a.clearAll(), m.bits.assign(m.bits.size(), false);
            return "clearAll";
        default:
            (dice.coin() ? a.toggleAll() : a.inverse()), m.bits.flip();
            return "toggleAll";
        }
    }
    case 21: {
        VDArray<int> list;
        for (int k = dice.between(0, 5); k > 0; --k)
            list.push_back(dice.between(0, n + 3));
        m.markBytes(toVector(list), v);
        v ? a.setAllModifiedIndices(list) : a.clearAllModifiedIndices(list);
        return "markBytes";
    }
    case 22: {
        if (n == 0) return "nothing";
        VDArray<int> list;
        for (int k = dice.between(0, 6); k > 0; --k)
            list.push_back(dice.between(0, n - 1));
        for (int i : list)
            m.bits[i] = v;
        if (dice.coin())
            v ? a.set(list) : a.clear(list);
        else
            v ? a.set(list.getSize(), list.data()) : a.clear(list.getSize(), list.data());
        return "index list";
    }
    case 23: {
        const bool reuse = dice.coin();
        a.copy(spare, reuse), m.copyFrom(spareModel, reuse);
        return reuse ? "copy(spare, true)" : "copy(spare, false)";
    }
    case 24: {
        if (dice.coin()) {
            a = spare, m.copyFrom(spareModel, true);
            return "operator=";
        }
        VDBoolArray copied(spare);
        a.swap(copied), m.copyFrom(spareModel, false);
        return "copy constructor";
    }
    case 25:
        a.swap(spare), std::swap(m, spareModel);
        return "swap";
    case 26: {
        const std::vector<bool> bits = dice.bits(dice.between(0, 70));
        spare = buildArray(bits, dice);
        spareModel = modelOf(bits, spare);
        return "new spare";
    }
    default: {
        const int to = dice.between(0, 100);
        std::vector<char> bytes(static_cast<std::size_t>(bytesForBits(to)));
        std::vector<bool> bits(static_cast<std::size_t>(to));
        for (int i = 0; i < to; ++i) {
            bits[i] = dice.coin();
            if (bits[i]) bytes[i / 8] = static_cast<char>(bytes[i / 8] | (1 << (i % 8)));
        }
        a.assign(to, bytes.data());
        m.bits = bits;
        m.capacity = std::max(m.capacity, bytesForBits(to));
        return "assign(" + std::to_string(to) + ", bytes)";
    }
    }
}

TEST(VDBoolArrayModel, LongRandomSequencesMatchTheModel) {
    for (std::uint32_t seed : {1u, 7u, 2026u, 424242u, 99991u}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Dice dice(seed);
        VDBoolArray a, spare;
        BoolArrayModel m, spareModel;
        for (int step = 0; step < 6000; ++step) {
            const std::string what = randomStep(a, m, spare, spareModel, dice);
            expectMatches(a, m, "step " + std::to_string(step) + ": " + what);
            expectMatches(spare, spareModel, "spare after step " + std::to_string(step));
            if (HasFailure()) return;
        }
    }
}

} // namespace
