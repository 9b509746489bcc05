#pragma once

// Opening files without waiting, and whole-file reads: every reader of a file in the
// library and the tool stands on these, so a FIFO, a device or a folder given as input
// is refused in one place, with its reason.

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace neq::files {

// What a path may name to be opened.
enum class Kind {
    regularFile, // read whole: anything else has no end to reach, or none worth waiting for
    anyFile,     // written to: a device such as /dev/null is fine; a folder is not
};

// Opens path with `flags` (O_CLOEXEC added) without waiting for the other end of a
// FIFO, then makes the descriptor blocking again for the transfers. A folder, and under
// Kind::regularFile anything that is not a regular file, is refused. The descriptor,
// or -1 with errno set and the reason in words: the system's ("No such file or
// directory"), "it is a folder, not a file" (errno EISDIR), "it is not a regular file",
// or, for writing, "it is a FIFO or socket that nobody reads".
int openFile(const char* path, int flags, Kind kind, std::string& reason, mode_t mode = 0666);

// A C stream opened as fopen(path, mode) opens it, but through openFile: a mode that
// reads ("r", "r+", "w+", "a+") takes regular files only, one that only writes any file.
// Null, with the reason, when it cannot be opened or the mode is not one of fopen's.
std::FILE* openStream(const char* path, const char* mode, std::string& reason);

// Reads a regular file whole, refusing at once what openFile refuses under
// Kind::regularFile, and a file of more than `largest` bytes ("File too large"). False
// with the reason in words.
bool readRegularFile(const char* path, std::string& bytes, std::string& reason,
                     std::size_t largest = SIZE_MAX);
bool readRegularFile(const char* path, std::vector<std::uint8_t>& bytes, std::string& reason);

// A file's bytes read whole into memory that is not cleared first: for large files
// that are only read, where zeroing the memory before the read would cost another pass.
class FileBytes {
  public:
    std::string_view view() const { return {data_.get(), size_}; }

  private:
    friend bool readRegularFile(const char* path, FileBytes& bytes, std::string& reason);
    std::unique_ptr<char[]> data_;
    std::size_t size_ = 0;
};

// The same, into FileBytes.
bool readRegularFile(const char* path, FileBytes& bytes, std::string& reason);

// A regular file opened to be read in pieces at their offsets: for readers that fill
// their own arrays straight from the file instead of reading it whole first.
class RegularFile {
  public:
    RegularFile() = default;
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    ~RegularFile();

    // Opens it, refusing what readRegularFile refuses. False with the reason.
    bool open(const char* path, std::string& reason);
    // The size it had when it was opened.
    std::uint64_t size() const { return size_; }
    // Exactly `size` bytes at `offset`. False with errno set when they cannot be read
    // (EIO when the file has become shorter meanwhile).
    bool readAt(std::uint64_t offset, void* out, std::size_t size) const;

  private:
    int fd_ = -1;
    std::uint64_t size_ = 0;
};

} // namespace neq::files

namespace neq {

// Reads the whole regular file at `path`; false when it cannot be opened for reading
// or is not a regular file (a folder, FIFO or device counts as a file that cannot be
// opened), with bytes empty.
bool readWholeFile(const char* path, std::vector<std::uint8_t>& bytes);

// The host's byte-wise readers append their one-byte holder once more on the failing
// read at end of file. This appends that byte: the last byte read, or `holder` (what
// the holder carried before) when nothing was read.
inline void appendRepeatedLastByte(std::vector<std::uint8_t>& bytes, std::uint8_t holder = 0) {
    bytes.push_back(bytes.empty() ? holder : bytes.back());
}

} // namespace neq
