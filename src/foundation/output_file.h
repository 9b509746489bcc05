#pragma once

// A file written through one large buffer: text is formatted straight into the
// buffer and reaches the file in few, large writes.

#include <cstddef>
#include <cstdio>
#include <string_view>
#include <vector>

namespace neq {

class OutputFile {
  public:
    static constexpr std::size_t kDefaultBufferSize = 1 << 20;

    explicit OutputFile(std::size_t bufferSize = kDefaultBufferSize);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    // fopen modes: "wb" creates or truncates, "ab" appends; a FIFO nobody reads is refused
    // rather than waited on (files::openStream). False when it cannot open.
    bool open(const char* path, const char* mode);
    bool isOpen() const { return file_ != nullptr; }

    // Room for at least `size` bytes (size <= the buffer size); write, then commit.
    char* reserve(std::size_t size) {
        if (buffer_.size() - used_ < size) flush();
        return buffer_.data() + used_;
    }
    void commit(char* end) { used_ = static_cast<std::size_t>(end - buffer_.data()); }

    void append(const void* data, std::size_t size);
    void append(std::string_view text) { append(text.data(), text.size()); }
    void put(char c) { *reserve(1) = c, ++used_; }

    // Writes what is buffered. False once any write has failed.
    bool flush();
    // Flushes and closes; false when anything failed. Safe to call twice.
    bool close();

  private:
    std::FILE* file_ = nullptr;
    std::vector<char> buffer_;
    std::size_t used_ = 0;
    bool failed_ = false;
};

} // namespace neq
