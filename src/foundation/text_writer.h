#pragma once

// Text written through one large buffer: numbers and lines are formatted straight into
// the buffer, and it reaches where the text goes (a file, a string) in few, large
// pieces. What the OBJ and colour exports, the UV tile files, the blend statements,
// the Maya rewrite and the tool write with.

#include "foundation/file_io.h"
#include "foundation/number_format.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace neq {

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

// Text to a file: a descriptor the caller owns and later flushes to disk, or a file
// this sink opens and closes itself.
class FileSink final : public TextSink {
  public:
    FileSink() = default;
    // When the caller flushes the file to disk after the last write, the system is
    // asked every few megabytes to start writing what it holds, so that the disk works
    // while the rest of the text is made and the flush has little left to wait for.
    FileSink(int fd, bool callerFlushes) : fd_(fd), writeback_(callerFlushes) {}

    // Creates or truncates `path`; a FIFO nobody reads is refused rather than waited on
    // (files::openFile). False, with the reason in words when `reason` is given, when
    // it cannot be opened. Nothing flushes such a file to disk afterwards, so no
    // writeback is asked for. A file opened before is closed.
    bool open(const char* path, std::string* reason = nullptr);
    // Closes the file open() opened; false when the close, or any write, failed.
    bool close();

    bool write(const char* data, std::size_t size) override;

  private:
    std::optional<files::OwnedDescriptor> owned_;
    int fd_ = -1;
    bool writeback_ = false;
    bool failed_ = false;
    std::uint64_t written_ = 0, writebackStart_ = 0;
};

// Call flush() at the end: what is still buffered then is written nowhere else.
class TextWriter {
  public:
    // Large enough that a file reaches the system in few writes.
    static constexpr std::size_t kDefaultBufferSize = 1 << 20;
    // For text made in many small pieces: a buffer that stays in the processor's cache.
    static constexpr std::size_t kCachedBufferSize = 1 << 18;

    explicit TextWriter(TextSink& sink, std::size_t bufferSize = kDefaultBufferSize)
        : sink_(sink), buffer_(new char[bufferSize]), size_(bufferSize) {}
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    // Room for at least `size` bytes (at most the buffer size); write into it, then
    // commit() the end of what was written.
    char* reserve(std::size_t size) {
        if (size_ - used_ < size) flush();
        return buffer_.get() + used_;
    }
    void commit(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.get()); }

    void append(const void* data, std::size_t size) {
        if (size > size_ - used_) {
            flush();
            if (size >= size_ / 2) { // large runs go to the sink as they are
                put(static_cast<const char*>(data), size);
                return;
            }
        }
        std::memcpy(buffer_.get() + used_, data, size);
        used_ += size;
    }
    void append(std::string_view text) { append(text.data(), text.size()); }
    void put(char c) { *reserve(1) = c, ++used_; }
    void number(long long value) { commit(formatInt(reserve(kMaxIntChars), value)); }

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
    std::size_t size_;
    std::size_t used_ = 0;
    bool ok_ = true;
};

} // namespace neq
