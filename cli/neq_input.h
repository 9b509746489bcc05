#pragma once

// Reading the NeQ input of the mesh commands, with the messages they share.

#include "meshfile/neq_bytes.h"

#include <cstdint>
#include <string>

namespace neq::cli {

// Loads the file; false after printing the host's "cannot open input file" (-1760).
bool loadNeqOrReport(const std::string& path, meshfile::NeqBytes& bytes);

// The readers take whatever block stands first for the one they expect; this warns
// when it is another. `where` follows "at offset 32" in the message (e.g. " of X").
void warnUnlessFirstBlockIs(const meshfile::NeqView& file, std::uint32_t expectedTag,
                            const std::string& where);

} // namespace neq::cli
