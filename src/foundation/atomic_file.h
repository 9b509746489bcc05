#pragma once

// Whole-file replacements that never leave a damaged file: what the UV rewrite, the
// configuration writer and the tool's outputs stand on.

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>

namespace neq::files {

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
