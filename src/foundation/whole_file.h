#pragma once

#include <cstdint>
#include <vector>

namespace neq {

// Reads the whole file at `path` with bulk reads. False when it cannot be opened for
// reading; a directory counts as a file that cannot be opened. A read error ends the
// file where it happened, as it would end a byte-wise reader.
bool readWholeFile(const char* path, std::vector<std::uint8_t>& bytes);

// The host's byte-wise readers append their one-byte holder once more on the failing
// read at end of file. This appends that byte: the last byte read, or `holder` (what
// the holder carried before) when nothing was read.
inline void appendRepeatedLastByte(std::vector<std::uint8_t>& bytes, std::uint8_t holder = 0) {
    bytes.push_back(bytes.empty() ? holder : bytes.back());
}

} // namespace neq
