#pragma once

// Helpers shared by the disk server's tests.

#include "foundation/vd_array.h"
#include "foundation/vd_string.h"
#include "support/child_process.h"

#include <string>
#include <vector>

namespace neq::test {

// The path as the host writes it, with a volume prefix the disk server must drop.
inline VDString onVolume(const std::string& path) {
    return VDString(("Macintosh HD:" + path).c_str());
}

inline VDString vd(const std::string& text) {
    return VDString(text.c_str());
}

inline std::vector<std::string> strings(const VDArray<VDString>& found) {
    std::vector<std::string> result;
    for (const VDString& path : found)
        result.emplace_back(path.c_str());
    return result;
}

} // namespace neq::test
