#pragma once

// Directory services whose system calls differ between macOS and Linux. The rest of
// the code reaches the operating system through plain POSIX or through this folder.

#include <string>

namespace neq::platform {

// Creates one directory (its parent must already exist; nothing above it is made).
// False when the directory cannot be created, including when it already exists.
bool makeDirectory(const char* path);

// The folder that holds the users' home folders: "/Users" on macOS, "/home" on Linux.
std::string usersFolder();

// The folder of the running executable (no trailing "/"), or "" when the system
// will not tell.
std::string executableDirectory();

} // namespace neq::platform
