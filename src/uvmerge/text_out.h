#pragma once

// Text assembled in a small buffer and handed on in large pieces to where it goes (a
// file, a string), and walking entries in numbered blocks: what the statements of a
// scene are written with.

#include "foundation/file_io.h"
#include "foundation/number_format.h"
#include "platform/system_hints.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

namespace neq::uvmerge {

// Where written text goes.
class TextSink {
  public:
    virtual ~TextSink() = default;
    // False when the text could not be taken; nothing more is written then.
    virtual bool write(const char* data, std::size_t size) = 0;
};

class StringSink final : public TextSink {
  public:
    explicit StringSink(std::string& out) : out_(out) {}
    bool write(const char* data, std::size_t size) override {
        out_.append(data, size);
        return true;
    }

  private:
    std::string& out_;
};

// Text straight to a file descriptor. Every few megabytes the system is asked to start
// writing what it holds to disk, so that the disk works while the rest of the text is
// made and the flush that follows the last write has little left to wait for.
class FileSink final : public TextSink {
  public:
    explicit FileSink(int fd) : fd_(fd) {}
    bool write(const char* data, std::size_t size) override {
        if (!files::writeAll(fd_, data, size)) return false;
        written_ += size;
        constexpr std::uint64_t kWritebackStep = std::uint64_t{8} << 20;
        if (written_ - writebackStart_ >= kWritebackStep) {
            platform::startWriteback(fd_, writebackStart_, written_ - writebackStart_);
            writebackStart_ = written_;
        }
        return true;
    }

  private:
    int fd_;
    std::uint64_t written_ = 0, writebackStart_ = 0;
};

// Text written through a buffer that stays in the cache: numbers are formatted straight
// into it, and it reaches the sink when full. Call flush() at the end.
class TextOut {
  public:
    static constexpr std::size_t kBufferSize = 1 << 18;

    explicit TextOut(TextSink& sink) : sink_(sink), buffer_(new char[kBufferSize]) {}
    TextOut(const TextOut&) = delete;
    TextOut& operator=(const TextOut&) = delete;

    // Room for `size` bytes (at most kBufferSize); write into it, then advance() to the
    // end of what was written.
    char* room(std::size_t size) {
        if (kBufferSize - used_ < size) flush();
        return buffer_.get() + used_;
    }
    void advance(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.get()); }

    void append(const char* data, std::size_t size) {
        if (size > kBufferSize - used_) {
            flush();
            if (size >= kBufferSize / 2) { // large runs go to the sink as they are
                put(data, size);
                return;
            }
        }
        std::memcpy(buffer_.get() + used_, data, size);
        used_ += size;
    }
    void append(const std::string& text) { append(text.data(), text.size()); }
    template <std::size_t N> void text(const char (&literal)[N]) { append(literal, N - 1); }
    void number(long long value) { advance(formatInt(room(kMaxIntChars), value)); }

    // Hands the buffer to the sink; false once the sink has failed.
    bool flush() {
        put(buffer_.get(), used_);
        used_ = 0;
        return ok_;
    }

  private:
    void put(const char* data, std::size_t size) {
        if (ok_ && size != 0) ok_ = sink_.write(data, size);
    }

    TextSink& sink_;
    std::unique_ptr<char[]> buffer_;
    std::size_t used_ = 0;
    bool ok_ = true;
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
