// The unique-name registry on arbitrary names: its answers, found from each stem's
// resume point, must be those of the plain search from counter 1.

#include "api/name_registry.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>

namespace {

// The registry's rule the plain way: every counter tried from 1.
std::string plainSearch(std::set<std::string>& issued, std::string name) {
    for (char& c : name)
        if (c == ' ' || c == '-') c = '_';
    if (issued.insert(name).second) return name;
    const std::size_t marker = name.find("_copy");
    const std::string stem =
        marker == std::string::npos ? name + "_copy" : name.substr(0, marker + 5);
    for (int counter = 1;; ++counter) {
        std::string candidate = stem + std::to_string(counter);
        if (issued.insert(candidate).second) return candidate;
    }
}

} // namespace

// Input: names separated by newlines. A line "\x01" empties both registries the way
// ClearNameSet does; a line "\x02" empties only the set, behind the hints' back. The
// plain search is quadratic in the copies of a name, so at most 2,000 names are used.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::set<std::string> issued, plainIssued;
    neq::api::CopyCounterHints hints;
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::size_t names = 0;
    for (std::size_t at = 0; at <= text.size() && names < 2000; ++names) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string line = text.substr(at, end - at);
        at = end + 1;
        if (line == "\x01" || line == "\x02") {
            issued.clear();
            plainIssued.clear();
            if (line == "\x01") hints = {};
            continue;
        }
        // Names end at their first NUL, as the host's C strings do.
        const std::string answer = neq::api::reserveUniqueName(issued, hints, line.c_str()).c_str();
        if (answer != plainSearch(plainIssued, line.c_str())) std::abort();
    }
    if (issued != plainIssued) std::abort();
    return 0;
}
