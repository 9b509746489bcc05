#pragma once

// The shape shared by the fifteen host entries: a text in, a number no entry reads,
// a host-owned output buffer, and a float status back. Including this header brings in
// the public interface, the one declaration of every entry, typed export and module
// global.

#include "api/result_codes.h"
#include "foundation/export.h"

// The standard and system headers the public interface needs come first, so that only
// the interface's own declarations are marked as exported below.
#include <dirent.h>
#include <sys/time.h>

#include <cstdint>
#include <cstring>
#include <exception>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// The public headers carry no visibility marks (their consumers have no use for them);
// everything they declare is what the library exports.
#pragma GCC visibility push(default)
#include "neqbridge/neqbridge.hpp"
#pragma GCC visibility pop

#define NEQBRIDGE_HOST_ENTRY extern "C" NEQBRIDGE_API float

namespace neq::api {

// Work that throws (in practice only an allocation failure) returns the host's generic
// failure code: no exception may unwind into the host.
template <class Operation> float guardedEntry(Operation&& operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return kFailed;
    }
}

// Output buffers are sized by the host; the interface gives no length to check.
inline void copyToHost(char* out, const char* text) {
    std::strcpy(out, text);
}

// Text a typed export hands to host-side code: a NUL-terminated new[] copy that the
// caller releases with delete[].
inline char* newHostText(std::string_view text) {
    char* copy = new char[text.size() + 1];
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

} // namespace neq::api
