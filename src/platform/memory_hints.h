#pragma once

// Hints to the operating system about memory the program is about to fill.

#include <cstddef>
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

} // namespace neq::platform
