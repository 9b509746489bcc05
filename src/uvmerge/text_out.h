#pragma once

// Appending text to a string through a cursor, and walking entries in numbered blocks:
// what the generated statements of a scene are written with. Internal to uvmerge.

#include "foundation/number_format.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

namespace neq::uvmerge {

// Text appended to a string, which grows when a piece would not fit. The string holds
// exactly the text once the TextOut is gone.
class TextOut {
  public:
    TextOut(std::string& out, std::size_t expectedSize) : out_(out), used_(out.size()) {
        out_.resize(used_ + expectedSize);
    }
    TextOut(const TextOut&) = delete;
    TextOut& operator=(const TextOut&) = delete;
    ~TextOut() { out_.resize(used_); }

    // Room for `size` bytes; write into it, then advance() to the end of what was written.
    char* room(std::size_t size) {
        if (out_.size() - used_ < size) out_.resize(std::max(2 * out_.size(), used_ + size));
        return &out_[used_];
    }
    void advance(const char* end) { used_ = static_cast<std::size_t>(end - out_.data()); }

    void append(const char* data, std::size_t size) {
        std::memcpy(room(size), data, size);
        used_ += size;
    }
    void append(const std::string& text) { append(text.data(), text.size()); }
    template <std::size_t N> void text(const char (&literal)[N]) { append(literal, N - 1); }
    void number(long long value) { advance(formatInt(room(kMaxIntChars), value)); }

  private:
    std::string& out_;
    std::size_t used_;
};

// Calls block(start, last) for each block of at most `perBlock` entries out of `count`.
template <class Block> void forEachBlock(std::size_t count, std::size_t perBlock, Block block) {
    for (std::size_t start = 0; start < count; start += perBlock)
        block(start, std::min(start + perBlock, count) - 1);
}

// "\tsetAttr \"NAME[start:last]\"" and the rest of a block's header line.
inline void blockHeader(TextOut& out, const char* name, std::size_t start, std::size_t last,
                        const char* rest) {
    out.text("\tsetAttr \"");
    out.append(name, std::strlen(name));
    out.text("[");
    out.number(static_cast<long long>(start));
    out.text(":");
    out.number(static_cast<long long>(last));
    out.text("]\"");
    out.append(rest, std::strlen(rest));
}

} // namespace neq::uvmerge
