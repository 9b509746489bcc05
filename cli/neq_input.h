#pragma once

// Reading the NeQ input of the mesh commands, with the messages they share.

#include "meshfile/neq_bytes.h"

#include <cstdint>
#include <string>

namespace neq::cli {

// The file's bytes as the library loads them; fails (throws Failure) with the reason
// in words when it cannot be read, the host's code -1760 as detail.
meshfile::NeqBytes loadNeqOrFail(const std::string& path);

// The readers take whatever block stands first for the one they expect; this warns
// when it is another. `where` follows "at offset 32" in the message (e.g. " of X").
void warnUnlessFirstBlockIs(const meshfile::NeqView& file, std::uint32_t expectedTag,
                            const std::string& where);

} // namespace neq::cli
