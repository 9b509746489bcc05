#pragma once

// Checks on the files a command reads and writes, each failing with a message that
// names the file and the reason in words (throws Failure, command.h).

#include "foundation/file_io.h"

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

// The path to hand the library's file layer: absolute, made from the working folder.
// That layer reads every path as the host writes it, from the text after the first ":"
// and then from the first "/", so a relative path would name a file under "/" and a
// name holding ":" another file altogether: such a name is refused (throws Failure).
std::string libraryPath(const std::string& path);

// Whether `path` is a folder (links followed).
bool isFolder(const std::string& path);

// Creates the folder `path` and its missing parents; an existing folder is fine.
// Fails with the folder that could not be made and the reason in words.
void makeFolders(const std::string& path);

// What a command writes, for the check below.
enum class OutputKind { objText, colourText, neqMesh, mayaScene, glbMesh, gltfText, svgPicture };

// Fails when `output` is an existing file of another kind than the command writes (a
// mesh where OBJ text would go, notes where a scene would go), unless `force`: such a
// file was most likely named by mistake. An empty file, a device or no file is fine.
void refuseOutputOfAnotherKind(const std::string& output, OutputKind kind, bool force);

// Follows symbolic links at the end of `path` (also one that points nowhere yet) to the
// name of the file they lead to (files::followLinks); `path` itself when they loop.
std::string followLinks(const std::string& path);

// The folder part of a path ("." when it has none) and the last name in it.
using files::folderOf;
std::string lastNameOf(const std::string& path);

} // namespace neq::cli
