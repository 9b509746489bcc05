#pragma once

// Reading the NeQ input of the mesh commands, with the messages they share.

#include "meshfile/neq_file.h"

#include <cstdint>
#include <string>

namespace neq::cli {

// The file's bytes as the library loads them; fails (throws Failure) with the reason
// in words when it cannot be read, the host's code -1760 as detail.
meshfile::NeqBytes loadNeqOrFail(const std::string& path);

// The host's readers take whatever block stands first for the one they expect. These
// hand them the layout they read, found by tag in a file of any block order; a file
// already in that layout is returned as it is. Each fails (throws Failure) naming the
// file and the block it lacks.

// The file with the block of `tag` first: its 32-byte header, then the bytes from that
// block on. `role` names the file in messages ("input", "BASE").
meshfile::NeqBytes loadWithBlockFirst(const std::string& path, std::uint32_t tag,
                                      const std::string& role);

// The file as the OBJ export reads it: the vertex block at 32, one block it skips, the
// colour block 4 bytes after that block's end, the face block right after the colours.
meshfile::NeqBytes loadInExportLayout(const std::string& path, const std::string& role);

} // namespace neq::cli
