#pragma once

// Whole-file reads that never block and whole-file replacements that never leave a
// damaged file: what the UV rewrite and the configuration writer stand on.

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace neq::files {

// The permission bits a new file gets from fopen: 0666 less the process's umask.
mode_t newFileMode();

// The folder part of a path: "." when it has none, "/" for a file at the root.
std::string folderOf(const std::string& path);

// Reads a regular file whole. A folder, FIFO or device is refused at once (the open
// does not wait for a writer). False with the reason in words: the system's ("No such
// file or directory"), "it is a folder, not a file" or "it is not a regular file".
bool readRegularFile(const char* path, std::string& bytes, std::string& reason);

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

// A regular file opened for reading: what the whole-file reads and maps stand on.
class RegularFile {
  public:
    RegularFile() = default;
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    ~RegularFile();

    // The size the file had when it was opened.
    std::uint64_t size() const { return size_; }
    int descriptor() const { return fd_; }

  private:
    friend bool openRegularFile(const char* path, RegularFile& file, std::string& reason);
    int fd_ = -1;
    std::uint64_t size_ = 0;
};

// Opens a regular file for reading, refusing anything else as readRegularFile does.
bool openRegularFile(const char* path, RegularFile& file, std::string& reason);

// A regular file's bytes mapped into memory, read only: for large files that are
// scanned once, where reading them would first clear and then fill as much memory.
// Another process that shortens the file meanwhile makes reading past its new end fail,
// so only files the program itself is not changing belong here.
class MappedFile {
  public:
    MappedFile() = default;
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile();
    std::string_view view() const { return {data_, size_}; }

  private:
    friend bool mapRegularFile(const char* path, MappedFile& file, std::string& reason);
    char* data_ = nullptr;
    std::size_t size_ = 0;
};

// Maps a regular file whole, refusing anything else as readRegularFile does.
bool mapRegularFile(const char* path, MappedFile& file, std::string& reason);

// Makes `bytes` the content of the file at `path`. A symbolic link keeps pointing where
// it did; its target is what is replaced. An existing target must be a regular file
// that can be opened for writing (tried without truncating it). The bytes go to a
// temporary file in the target's folder, which is flushed to disk, given the target's
// permission bits (or those of a new file under the umask), and renamed over the
// target. Only when that folder takes no new file is the target overwritten in place.
// On any failure before the rename the target is left as it was and the temporary
// file is removed. False with the reason in words, as readRegularFile gives it.
bool replaceFile(const char* path, std::string_view bytes, std::string& reason);

// The same, with the content written by `write` to the open file descriptor it is given
// (positioned at the start of an empty file). `write` returns false, with errno set,
// when it cannot write.
bool replaceFile(const char* path, const std::function<bool(int fd)>& write, std::string& reason);

} // namespace neq::files
