#pragma once

// The UV rewrite of a Maya ASCII file on disk: read the scene, rewrite it, write the
// result back in place or to another file.

#include "uvmerge/maya_uv_rewrite.h"

#include <string>

namespace neq::uvmerge {

struct MayaFileWeld {
    enum class Failure { none, read, refused, write };
    Failure failure = Failure::none;
    std::string reason;    // in words, when failure != none
    MayaUvRewrite rewrite; // the counts of the weld; its text is released once written
};

// Welds the scene at `input` and writes the result to `output`, or back over `input`
// when `output` is null (see replaceFile in atomic_file.h for how files are replaced).
MayaFileWeld weldMayaFile(const char* input, const char* output = nullptr);

} // namespace neq::uvmerge
