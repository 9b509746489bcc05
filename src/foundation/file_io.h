#pragma once

// The file layer: every file the library and the tool read or write goes through it.
// An owned descriptor, transfers that finish what the system leaves half done, folder
// listings, opening without waiting (so a FIFO, a device or a folder given as input is
// refused in one place, with its reason), whole-file reads, and whole-file replacements
// that never leave a damaged file.

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace neq::files {

// --- descriptors and folders -------------------------------------------------------------

// Closes the descriptor it holds when it goes.
class OwnedDescriptor {
  public:
    explicit OwnedDescriptor(int fd) : fd_(fd) {}
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;
    ~OwnedDescriptor() { close(); }
    int get() const { return fd_; }
    bool isOpen() const { return fd_ >= 0; }
    // Hands the descriptor over, no longer to be closed here.
    int release() {
        const int fd = fd_;
        fd_ = -1;
        return fd;
    }
    // Closes now; false when the system reports that the data could not be saved.
    bool close();

  private:
    int fd_;
};

// Writes all of size bytes, retrying after partial writes and interruptions; false
// when the system refuses part of them.
bool writeAll(int fd, const char* bytes, std::size_t size);

// Calls visit(name, isFolder) for every entry of folder, "." and ".." included, in the
// order the file system lists them. A symbolic link is not a folder, so nothing here
// follows one. False when the folder cannot be listed.
bool forEachEntry(const char* folder,
                  const std::function<void(const char* name, bool isFolder)>& visit);

// "." or "..": the entries every folder lists that are not its contents.
bool isDotEntry(const char* name);

// folder + "/" + name.
std::string joinPath(const char* folder, const char* name);

// --- opening and reading -----------------------------------------------------------------

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

// --- replacing ---------------------------------------------------------------------------

// The permission bits a new file gets from fopen: 0666 less the process's umask.
mode_t newFileMode();

// The folder part of a path: "." when it has none, "/" for a file at the root.
std::string folderOf(const std::string& path);

// The path where a write to `path` lands: the end of its chain of symbolic links, which
// need not exist yet (a dangling link). False with the reason ("Too many levels of
// symbolic links" for a chain that loops).
bool followLinks(const char* path, std::string& target, std::string& reason);

// The name pattern, for mkstemp or mkdtemp, of a temporary file (or private folder) beside
// `target`, which has its links followed already: FOLDER/.NAME.tmp-PID-XXXXXX, with NAME
// shortened so that the whole stays within NAME_MAX, and PID this process's id, so that
// the temporaries of a killed writer can be told apart. Those of the same target whose
// writer no longer runs are removed first (a private folder with what it holds).
std::string temporaryPattern(const std::string& target);

// Makes `bytes` the content of the file at `path`. A symbolic link is followed and stays
// as it was: the file it ends at is replaced, or created when it does not exist (a
// dangling link); a chain of links that never ends is refused. An existing target must
// be a regular file that can be opened for writing (tried without truncating it).
//
// The bytes go to a temporary file beside the target, named ".NAME.tmp-PID-XXXXXX"
// (NAME shortened so that the whole stays within NAME_MAX), which is flushed to disk,
// given the target's permission bits (or those of a new file under the umask), and
// renamed over the target. Temporary files of the same target left by processes that
// no longer run (killed while writing) are removed first. When no file can be made
// beside the target, nothing is written: the target is never truncated in place.
// On any failure the target is left as it was and the temporary file is removed.
// False with the reason in words, as readRegularFile gives it. Without `flushToDisk`
// the rename does not wait for the disk: a crash of the writing process still leaves the
// old file or the new one, whole, but a power cut soon after may lose the new content.
bool replaceFile(const char* path, std::string_view bytes, std::string& reason,
                 bool flushToDisk = true);

// The same, with the content written by `write` to the open file descriptor it is given
// (positioned at the start of an empty file). `write` returns false, with errno set,
// when it cannot write.
bool replaceFile(const char* path, const std::function<bool(int fd)>& write, std::string& reason,
                 bool flushToDisk = true);

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
