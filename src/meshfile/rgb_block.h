#pragma once

// The "RGB block": vertex colours as comment lines of up to 32 " rrggbb" entries,
// carried by OBJ files and written on its own by the colour export.

#include "foundation/text_writer.h"
#include "meshfile/neq_file.h"
#include "meshfile/obj_export.h"

#include <cstddef>
#include <cstdint>

namespace neq::meshfile {

// An output buffer in proportion to the input (the text is a few times the size of its
// binary source), so that small files do not pay for the full megabyte buffer.
std::size_t textBufferSizeFor(const NeqView& input);

// Writes the block for `count` colour records starting at `recordsOffset`, stopping
// at the last record that lies wholly in the file. Returns the records written.
std::uint64_t writeRgbBlock(TextWriter& out, const NeqView& file, std::uint64_t recordsOffset,
                            std::uint64_t count);

// Writes the RGB block of the block at offset 32 (read as a colour block whatever its
// tag) to `outPath`: Written, CannotOpenOutput or WriteFailed.
ExportOutcome exportColours(const NeqView& file, const char* outPath);

// Loads `inPath` first (CannotOpenInput), then as above.
ExportOutcome exportColours(const char* inPath, const char* outPath);

} // namespace neq::meshfile
