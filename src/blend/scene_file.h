#pragma once

// The two file operations a blend scene is built from. The scene only ever grows at
// its end, so neither operation reads or rewrites what the scene already holds.

#include <initializer_list>
#include <string_view>

namespace neq::blend {

// The host's scene readers take one byte at a time into a holder and append the
// holder once more after the failing read at end of file. This gives the holder's
// value after reading the scene at `path`: its last byte, or `holder` unchanged when
// the scene is empty. Reads only that byte.
// False when the scene cannot be opened for reading. Only regular files count as
// scenes: a folder, pipe or device is refused rather than read or waited on.
bool readSceneTail(const char* path, char& holder);

// Appends the pieces, in order, to the existing scene at `path`. False when the scene
// cannot be opened for writing or the write fails; a failed write is cut back, so the
// scene is never left shorter or longer than it was.
bool appendToScene(const char* path, std::initializer_list<std::string_view> pieces);

} // namespace neq::blend
