#pragma once

// What the disk server's operations share: folder listing, path joining and an owned
// file descriptor. Internal to the library.

#include "foundation/vd_string.h"

#include <functional>

namespace neq::diskserver {

// Calls visit(name, isFolder) for every entry of folder, "." and ".." included, in the
// order the file system lists them. A symbolic link is not a folder, so nothing here
// follows one. False when the folder cannot be listed.
bool forEachEntry(const char* folder,
                  const std::function<void(const char* name, bool isFolder)>& visit);

// "." or "..": the entries every folder lists that are not its contents.
bool isDotEntry(const char* name);

// folder + "/" + name.
VDString joinPath(const char* folder, const char* name);

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

} // namespace neq::diskserver
