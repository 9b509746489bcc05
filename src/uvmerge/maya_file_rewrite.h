#pragma once

// The UV rewrite of a Maya ASCII file on disk: read the scene, rewrite it, write the
// result back in place or to another file.

#include "uvmerge/maya_uv_rewrite.h"

#include <string>

namespace neq::uvmerge {

struct MayaFileWeld {
    // nothingToWeld: the scene holds no UV or face statements and was left as it was
    // (only when asked for, see weldMayaFile).
    enum class Failure { none, read, refused, write, nothingToWeld };
    Failure failure = Failure::none;
    std::string reason;    // in words, when failure != none
    MayaUvRewrite rewrite; // the weld's counts (and, from rewriteMayaFile, its text)
};

// Reads the scene at `input` (a regular file; see readRegularFile in file_io.h) and
// rewrites it in memory: the text is in rewrite.text. Fails with `read` or `refused`.
MayaFileWeld rewriteMayaFile(const char* input);

// Welds the scene at `input` and writes the result to `output`, or back over `input`
// when `output` is null (see replaceFile in file_io.h for how files are replaced).
// The host's entry rewrites a scene with nothing to weld too (its transform lines and
// the text after "// End of" go); with `keepUnwelded` such a scene is not written and
// the result is `nothingToWeld`.
MayaFileWeld weldMayaFile(const char* input, const char* output = nullptr,
                          bool keepUnwelded = false);

} // namespace neq::uvmerge
