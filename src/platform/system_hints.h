#pragma once

// Hints to the operating system about memory the program is about to fill and file data
// it has just written. Only hints: systems without the feature, and refusals, change
// nothing but the speed.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace neq::platform {

// Asks for large pages (2 MB on Linux) behind [data, data + bytes), before the memory is
// first written: filling hundreds of megabytes then takes a few hundred page faults
// instead of tens of thousands. Only whole aligned large pages inside the range are
// affected; small ranges and systems without the feature are left alone.
void preferLargePages(const void* data, std::size_t bytes);

// Reserves room for `count` elements and asks for large pages behind it.
template <class Vector> void reserveLarge(Vector& vector, std::size_t count) {
    vector.reserve(count);
    preferLargePages(vector.data(), vector.capacity() * sizeof(*vector.data()));
}

// Asks the system to start writing [offset, offset + length) of the open file `fd` to
// disk now, without waiting, so that a later flush has less to wait for.
void startWriteback(int fd, std::uint64_t offset, std::uint64_t length);

} // namespace neq::platform
