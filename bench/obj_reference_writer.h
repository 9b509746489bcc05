#pragma once

// The OBJ export written the plain way, as a yardstick: the whole input read with one
// fread, every line through stdio with fprintf("%g") / ("%d") / ("%02x"). It makes the
// same bytes as writeOBJfromNeq for a well-formed file and checks nothing else.

#include <cstdint>
#include <string>
#include <vector>

namespace neq::bench {

// False when a file cannot be opened or a block is not where the export expects it.
bool writeReferenceObj(const std::string& inPath, const std::string& outPath,
                       const std::vector<std::uint32_t>& faceIds);

} // namespace neq::bench
