#pragma once

// Checks on the files a command reads and writes, each failing with a message that
// names the file and the reason in words (throws Failure, command.h).

#include "foundation/atomic_file.h"

#include <string>
#include <vector>

namespace neq::cli {

// The operating system's reason for `error` (an errno value), in words.
std::string reasonOf(int error);

// Fails unless `path` is a file that can be opened for reading: "cannot open input
// 'x': No such file or directory", "input 'x' is a folder, not a file".
void requireInputFile(const std::string& path);

// Fails when `output` names the same file as one of `inputs`: by another path, a hard
// link or a symbolic link too. Existing files are compared by device and inode; a file
// that does not exist yet by its resolved folder and name.
void refuseOutputNamingAnInput(const std::string& output, const std::vector<std::string>& inputs);

// Follows symbolic links at the end of `path` (also one that points nowhere yet) to the
// name of the file they lead to.
std::string followLinks(const std::string& path);

// The folder part of a path ("." when it has none) and the last name in it.
using files::folderOf;
std::string lastNameOf(const std::string& path);

} // namespace neq::cli
