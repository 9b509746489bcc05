#pragma once

// A hint to the operating system about file data the program has just written.

#include <cstdint>

namespace neq::platform {

// Asks the system to start writing [offset, offset + length) of the open file `fd` to
// disk now, without waiting, so that a later flush has less to wait for. Only a hint:
// systems without the feature, and refusals, change nothing.
void startWriteback(int fd, std::uint64_t offset, std::uint64_t length);

} // namespace neq::platform
