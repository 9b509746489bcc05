// Random sequences checked after every step against a std::vector<bool> model, plus what
// it cannot see: the empty state, storage beyond the count, aliasing, unchecked access.

#include "foundation/vd_bool_array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

// The storage bytes, also those beyond the bit count.
std::vector<int> storage(const VDBoolArray& a) {
    return std::vector<int>(a.getData(), a.getData() + a.getCapacityInBytes());
}

TEST(VDBoolArray, EmptyArraysShareOneStaticByteAndAliasing) {
    VDBoolArray a, b;
    EXPECT_EQ(a.getCapacityInBytes(), 0);
    EXPECT_EQ(a.getDynMemoryUsed(), 1u);
    EXPECT_EQ(a.findLast(true, 10), -1);
    EXPECT_FALSE(a.get(0));
    // Nothing allocates for zero bits, and releasing returns to the shared byte.
    VDBoolArray grown(30, true), freed(9, false), negative(-5, true);
    grown.clearArray();
    freed.freeData();
    a.resize(0, true);
    a.inter(b);
    for (const VDBoolArray& empty : {a, VDBoolArray(0, true), VDBoolArray(a), grown, freed})
        EXPECT_EQ(empty.getData(), b.getData());
    EXPECT_EQ(negative.getCapacityInBytes(), 0);
}

TEST(VDBoolArray, StorageBeyondTheCount) {
    // Every allocated byte takes a fill, also the bits beyond the count.
    VDBoolArray a(13, false);
    a.assign(10, true);
    EXPECT_EQ(storage(a), (std::vector<int>{0xFF, 0xFF}));
    EXPECT_FALSE(a.get(10));
    EXPECT_FALSE(a.get(-1));
    a.clear(4);
    EXPECT_EQ(a.getAsMask(5), 0x20);
    EXPECT_EQ(a.getAsMask(12), 0x10) << "no size test";
    // Coarse marking stops at the count.
    VDBoolArray marked(13, false), unmarked(13, true);
    marked.setAllModifiedIndices(VDArray<int>{9, 40, -1});
    unmarked.clearAllModifiedIndices(VDArray<int>{2, 12});
    EXPECT_EQ(storage(marked), (std::vector<int>{0x00, 0x1F}));
    EXPECT_EQ(storage(unmarked), (std::vector<int>{0x00, 0xE0}));
    // The in-place resize is deliberately narrow: the old count's byte is the trailing
    // guard and stays, so do the bits of byte 0 above the new count; growing with false
    // keeps the whole bytes between.
    VDBoolArray clean(40, true), partial(16, true), dirty(40, false);
    clean.resize(4, false);
    EXPECT_EQ(storage(clean), (std::vector<int>{0xFF, 0, 0, 0, 0}));
    partial.resize(3, true);
    partial.resize(12, false);
    partial.resize(9, false);
    EXPECT_EQ(storage(partial), (std::vector<int>{0x07, 0x0F}));
    dirty.resize(4, true);
    EXPECT_EQ(storage(dirty), (std::vector<int>{0x00, 0xFF, 0xFF, 0xFF, 0xFF}));
    dirty.resize(30, false);
    EXPECT_EQ(storage(dirty), (std::vector<int>{0x00, 0xFF, 0xFF, 0xFF, 0x00}));
    // inter writes a guard after the shortened data.
    VDBoolArray i(24, true), other(10, true);
    other.clear(1);
    i.inter(other);
    EXPECT_EQ(storage(i), (std::vector<int>{0xFD, 0x03, 0x01}));
    VDBoolArray toEmpty(12, true);
    toEmpty.inter(VDBoolArray());
    EXPECT_EQ(storage(toEmpty), (std::vector<int>{0x01, 0xFF}));
}

TEST(VDBoolArray, AliasingAndMoves) {
    VDBoolArray a(43, true);
    a.clear(3);
    const VDBoolArray& alias = a;
    a = alias;
    a.merge(a);
    EXPECT_EQ(a.findFirst(false), 3);
    a.toggle(a);
    EXPECT_EQ(a.getNumberOfBitSet(), 0);
    EXPECT_EQ(a.getSize(), 43);
    a.set(5);
    VDBoolArray moved(std::move(a));
    EXPECT_EQ(moved.findFirst(true), 5);
    EXPECT_EQ(a.getSize(), 0);
    EXPECT_EQ(a.getTrailingGuard(), 1);
}

int bytesFor(int n) {
    return (n + 7) / 8;
}

// The bits below the count, and the capacity in bytes (exact allocation).
struct Model {
    std::vector<bool> bits;
    int capacity = 0;

    int size() const { return static_cast<int>(bits.size()); }
    bool at(int i) const { return i < size() && bits[i]; }

    // Where the in-place path keeps whole bytes, the new bits are what `real` holds.
    void resize(int n, bool value, const VDBoolArray& real) {
        n = std::max(n, 0);
        const int old = size();
        bits.resize(static_cast<std::size_t>(n), value);
        if (n > 8 * capacity)
            capacity = bytesFor(n);
        else
            for (int i = old; i < n; ++i)
                if (i / 8 != old / 8) bits[i] = (real.getData()[i / 8] >> (i % 8)) & 1;
    }
    void fill(int n, bool value, bool exact) {
        bits.assign(static_cast<std::size_t>(std::max(n, 0)), value);
        capacity = exact ? bytesFor(size()) : std::max(capacity, bytesFor(size()));
    }
    // merge, set(other), toggle(other): the larger count, missing bits read as 0.
    void combine(const Model& o, const std::function<bool(bool, bool)>& op) {
        if (o.size() == 0) return;
        const int n = std::max(size(), o.size());
        capacity = std::max(capacity, bytesFor(n));
        std::vector<bool> result(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i)
            result[i] = op(at(i), o.at(i));
        bits = result;
    }
    void inter(const Model& o) {
        if (size() == 0) return;
        for (int i = 0; i < size(); ++i)
            bits[i] = bits[i] && o.at(i);
        bits.resize(static_cast<std::size_t>(std::min(size(), o.size())));
    }
    bool covers(const Model& o) const { // bitTest
        for (int i = 0; i < o.size(); ++i)
            if (o.bits[i] && !at(i)) return false;
        return true;
    }
    int find(bool value, int from, int step) const {
        for (int i = from; i >= 0 && i < size(); i += step)
            if (bits[i] == value) return i;
        return -1;
    }
    int count(bool value, int from, int to) const {
        int n = 0;
        for (int i = std::max(from, 0); i < std::min(to, size()); ++i)
            n += bits[i] == value;
        return n;
    }
    // set(first, count) and clear(first, count).
    void writeRange(int first, int count, bool value, const VDBoolArray& real) {
        if (first < 0) return;
        count = std::max(count, 1);
        if (first + count > size()) resize(first + count, false, real);
        std::fill(bits.begin() + first, bits.begin() + first + count, value);
    }
};

// A fixed sequence on every platform (the standard distributions are not).
struct Dice {
    std::mt19937 engine;
    int between(int lo, int hi) { return lo + static_cast<int>(engine() % (hi - lo + 1)); }
    bool coin() { return engine() & 1u; }
};

// Another array holding `bits`, along one of several paths so that the unused storage
// bits differ (clean, all set, left over from a longer array, random bytes).
VDBoolArray build(const std::vector<bool>& bits, Dice& dice) {
    const int n = static_cast<int>(bits.size());
    VDBoolArray a;
    const int path = dice.between(0, 3);
    if (path < 3) a = VDBoolArray(n + (path == 2 ? dice.between(1, 20) : 0), path != 0);
    std::vector<char> bytes(static_cast<std::size_t>(bytesFor(n)) + 1);
    for (char& b : bytes)
        b = static_cast<char>(dice.between(0, 255));
    if (path == 3) a.assign(n, bytes.data());
    for (int i = 0; i < n; ++i)
        a.set(i, bits[i]);
    if (a.getSize() != n) a.resize(n, dice.coin());
    return a;
}

std::vector<bool> randomBits(Dice& dice, int n) {
    std::vector<bool> out(static_cast<std::size_t>(n));
    const int density = dice.between(0, 4);
    for (int i = 0; i < n; ++i)
        out[i] = dice.between(0, 3) < density;
    return out;
}

void expectMatches(const VDBoolArray& a, const Model& m, const std::string& step) {
    ASSERT_EQ(a.getSize(), m.size()) << step;
    ASSERT_EQ(a.getCapacityInBytes(), m.capacity) << step;
    ASSERT_EQ(a.getLeadingGuard() + a.getTrailingGuard(), 2) << step;
    ASSERT_EQ(a.getMemoryUsed(), static_cast<std::size_t>(bytesFor(m.size()) + 1)) << step;
    for (int i = 0; i < m.size(); ++i)
        ASSERT_EQ(a.getNoSizeTest(i), m.bits[i]) << step << " bit " << i;
}

// Random operation op on (a, m).
void randomStep(int op, VDBoolArray& a, Model& m, VDBoolArray& spare, Model& sm, Dice& dice) {
    const int n = m.size();
    const bool v = dice.coin();
    const int i = dice.between(-3, n + 20);
    switch (op) {
    case 0:
        return m.resize(i, v, a), a.resize(i, v);
    case 1: {
        if (n == 0) return;
        const int j = dice.between(0, n - 1), how = dice.between(0, 3);
        how == 0 ? a.set(j, v) : how == 1 ? a.set(j) : how == 2 ? a.clear(j) : a.toggle(j);
        m.bits[j] = how == 0 ? v : how == 1 ? true : how == 2 ? false : !m.bits[j];
        return;
    }
    case 2: {
        const int count = dice.between(-2, 30);
        m.writeRange(i, count, v, a);
        return v ? a.set(i, count) : a.clear(i, count);
    }
    case 3: {
        if (i < 0) return;
        if (i >= n) m.resize(i + 1, false, a);
        const int how = dice.between(0, 2);
        how == 0 ? a.setAutoResize(i) : how == 1 ? a.clearAutoResize(i) : a.toggleAutoResize(i);
        m.bits[i] = how == 0 ? true : how == 1 ? false : !m.bits[i];
        return;
    }
    case 4:
        if (i >= 0 && i < n) {
            m.resize(n + 1, false, a);
            m.bits.pop_back();
            m.bits.insert(m.bits.begin() + i, v);
        }
        return a.insert(i, v);
    case 5:
        if (i >= 0 && i < n) m.bits.erase(m.bits.begin() + i);
        return a.erase(i);
    case 6:
        EXPECT_EQ(a.findFirst(v, i), m.find(v, std::max(i, 0), 1)) << "from " << i;
        EXPECT_EQ(a.findLast(v, i), i < 0 ? -1 : m.find(v, std::min(i, n - 1), -1)) << i;
        EXPECT_EQ(a.findFirst(v), m.find(v, 0, 1));
        EXPECT_EQ(a.findLast(v), m.find(v, n - 1, -1));
        return;
    case 7: {
        const int from = dice.between(0, n), to = dice.between(0, n);
        EXPECT_EQ(a.getNumberOfBitSetWithin(from, to), m.count(true, from, to));
        EXPECT_EQ(a.getNumberOfBitClearedWithin(from, to), m.count(false, from, to));
        EXPECT_EQ(a.getNumberOfBitSet(), m.count(true, 0, n));
        EXPECT_EQ(a.getNumberOfBitCleared(), m.count(false, 0, n));
        VDArray<int> out(3, 99), expected;
        v ? a.getIndexesSet(out) : a.getIndexesCleared(out);
        for (int k = 0; k < n; ++k)
            if (m.bits[k] == v) expected.push_back(k);
        EXPECT_EQ(out, expected);
        return;
    }
    case 8:
    case 9:
    case 10:
    case 11: {
        // Against another array, either unrelated or a near copy of this one.
        std::vector<bool> bits = randomBits(dice, dice.between(0, 90));
        if (dice.between(0, 3) == 0) {
            bits = m.bits;
            if (n > 0 && dice.coin()) bits[dice.between(0, n - 1)].flip();
            if (dice.coin()) bits.resize(bits.size() + dice.between(0, 12), false);
        }
        const VDBoolArray other = build(bits, dice);
        const Model om{bits, other.getCapacityInBytes()};
        Model common = m;
        common.inter(om);
        EXPECT_EQ(a.hasInter(other), common.find(true, 0, 1) >= 0);
        EXPECT_EQ(a.bitTest(other), m.covers(om));
        EXPECT_EQ(a == other, m.bits == om.bits);
        EXPECT_EQ(a != other, m.bits != om.bits);
        const auto either = [](bool x, bool y) { return x || y; };
        switch (dice.between(0, 4)) {
        case 0:
            return a.merge(other), m.combine(om, either);
        case 1:
            return a.set(other), m.combine(om, either);
        case 2:
            return a.toggle(other), m.combine(om, [](bool x, bool y) { return x != y; });
        case 3:
            for (int k = 0; k < std::min(n, om.size()); ++k)
                m.bits[k] = m.bits[k] && !om.bits[k];
            return a.clear(other);
        default:
            return a.inter(other), m.inter(om);
        }
    }
    case 12:
        return a.reinit(i, v), m.fill(i, v, true);
    case 13:
        return a.assign(i, v), m.fill(i, v, false);
    case 14:
        if (dice.coin()) return a.setAll(), m.bits.assign(m.bits.size(), true);
        return (v ? a.toggleAll() : a.inverse()), m.bits.flip();
    case 15: {
        VDArray<int> list;
        for (int k = dice.between(0, 5); k > 0; --k)
            list.push_back(dice.between(0, n + 3));
        for (int index : list)
            for (int k = index / 8 * 8; index < n && k < std::min(index / 8 * 8 + 8, n); ++k)
                m.bits[k] = v;
        return v ? a.setAllModifiedIndices(list) : a.clearAllModifiedIndices(list);
    }
    case 16: {
        if (n == 0) return;
        VDArray<int> list;
        for (int k = dice.between(0, 6); k > 0; --k)
            list.push_back(dice.between(0, n - 1));
        for (int k : list)
            m.bits[k] = v;
        if (dice.coin()) return v ? a.set(list) : a.clear(list);
        return v ? a.set(list.getSize(), list.data()) : a.clear(list.getSize(), list.data());
    }
    case 17: {
        const bool reuse = dice.coin();
        a.copy(spare, reuse);
        m.bits = sm.bits;
        if (!reuse || bytesFor(sm.size()) > m.capacity) m.capacity = bytesFor(sm.size());
        return;
    }
    case 18:
        if (dice.coin()) {
            a = spare, m.bits = sm.bits, m.capacity = std::max(m.capacity, bytesFor(sm.size()));
            return;
        } else {
            VDBoolArray copied(spare);
            a.swap(copied), m.bits = sm.bits, m.capacity = bytesFor(sm.size());
            return;
        }
    case 19:
        return a.swap(spare), std::swap(m, sm);
    case 20: {
        const std::vector<bool> bits = randomBits(dice, dice.between(0, 70));
        spare = build(bits, dice);
        sm = {bits, spare.getCapacityInBytes()};
        return;
    }
    case 21:
        return a.clearAll(), m.bits.assign(m.bits.size(), false);
    default: {
        const int to = dice.between(0, 100);
        std::vector<char> bytes(static_cast<std::size_t>(bytesFor(to)));
        m.bits.assign(static_cast<std::size_t>(to), false);
        for (int k = 0; k < to; ++k)
            if ((m.bits[k] = dice.coin()))
                bytes[k / 8] = static_cast<char>(bytes[k / 8] | (1 << (k % 8)));
        a.assign(to, bytes.data());
        m.capacity = std::max(m.capacity, bytesFor(to));
        return;
    }
    }
}

TEST(VDBoolArrayModel, LongRandomSequencesMatchTheModel) {
    for (std::uint32_t seed : {1u, 7u, 2026u, 424242u, 99991u}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Dice dice{std::mt19937(seed)};
        VDBoolArray a, spare;
        Model m, sm;
        for (int step = 0; step < 6000 && !HasFailure(); ++step) {
            const int op = dice.between(0, 22);
            randomStep(op, a, m, spare, sm, dice);
            expectMatches(a, m,
                          "step " + std::to_string(step) + ", operation " + std::to_string(op));
            expectMatches(spare, sm, "spare after step " + std::to_string(step));
        }
    }
}

} // namespace
