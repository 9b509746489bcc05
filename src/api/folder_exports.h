#pragma once

// Typed exports behind the host's folder and file services. Host-side code calls them
// under their C++ names; text they return is allocated with new[] and owned by the
// caller (release it with delete[]).

#include "foundation/export.h"

#include <string>

// True when the last component of the path has no "." in it. Only the name is looked
// at, never the file system: "a/b" and "" are directories, "a/b.txt" and "z." are not.
// A null path reads as "".
NEQBRIDGE_API bool IsDirectory(char* path);

// Empties a folder of files, by names only. A "\" is appended to the path unless it
// already ends in one, so the folder opened is one whose name ends in a backslash.
// For every entry but "." and "..", the path followed by the entry's name is removed
// when IsDirectory takes it for a file. The two are joined without a "/", so with "/"
// as the separator the files removed are those named "folder\NAME" beside
// "folder\". False when the folder cannot be opened.
NEQBRIDGE_API bool ClearFolder(std::string path);

// Creates one directory whose parent exists. False on failure or for a null path.
NEQBRIDGE_API bool createFolder(const char* path);

// The machine's users folder ("/Users" on macOS, "/home" on Linux), or null.
NEQBRIDGE_API char* getSharedFolder();

// Shows the modal chooser for one .vws file with this title (null reads as "").
// The chosen path, or null when the user cancels or no chooser is available.
NEQBRIDGE_API char* runCocoaOpenFileBrowser(const char* title);
