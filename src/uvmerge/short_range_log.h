#pragma once

// The entries that data lines left at zero. A range's data line that runs out before
// its range does reads every missing entry as 0. Writing those zeros at once would let
// a file of many short lines over one large range cost (lines x range) time, so each
// line's range is logged and the zeros are applied once, after the last line, in time
// proportional to the range plus the lines.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace neq::uvmerge {

class ShortRangeLog {
  public:
    void clear() {
        lines_.clear();
        anyShort_ = false;
    }

    // One data line: it read the entries [first, read) and left [read, last] at zero.
    void add(int first, int read, int last) {
        lines_.push_back({first, read, last});
        anyShort_ = anyShort_ || read <= last;
    }

    // Calls zero(i) for every entry i < count whose last data line left it at zero.
    template <class Zero> void applyZeros(std::size_t count, Zero zero) const {
        if (!anyShort_) return;
        // From the last line back, each entry is decided by the first line met; `next`
        // jumps over entries already decided (with path halving), so every entry is
        // visited once.
        std::vector<std::uint32_t> next(count + 1);
        for (std::size_t i = 0; i <= count; ++i)
            next[i] = static_cast<std::uint32_t>(i);
        const auto undecided = [&next](std::uint32_t i) {
            while (next[i] != i)
                i = next[i] = next[next[i]];
            return i;
        };
        for (auto line = lines_.rbegin(); line != lines_.rend(); ++line) {
            const auto last = static_cast<std::uint32_t>(line->last);
            for (std::uint32_t i = undecided(static_cast<std::uint32_t>(line->first)); i <= last;
                 i = undecided(i + 1)) {
                if (i >= static_cast<std::uint32_t>(line->read)) zero(i);
                next[i] = i + 1;
            }
        }
    }

  private:
    struct Line {
        int first, read, last; // 0 <= first <= read <= last + 1 <= count
    };
    std::vector<Line> lines_;
    bool anyShort_ = false;
};

} // namespace neq::uvmerge
