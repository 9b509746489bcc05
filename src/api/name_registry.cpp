#include "api/name_registry.h"

namespace neq::api {
namespace {

constexpr char kCopyMarker[] = "_copy";
constexpr int kCopyMarkerLength = sizeof kCopyMarker - 1;

bool reserve(std::set<std::string>& issued, const VDString& name) {
    return issued.insert(name.c_str()).second;
}

} // namespace

VDString reserveUniqueName(std::set<std::string>& issued, const char* proposed) {
    VDString name(proposed);
    name.replaceCharsOf(" ", '_');
    name.replaceCharsOf("-", '_');
    if (reserve(issued, name)) return name;

    // Every candidate is stem + counter, and its first "_copy" is the stem's own, so
    // the stem found once holds for the whole call.
    const int marker = name.findFirst(kCopyMarker);
    const VDString stem =
        marker < 0 ? name + VDString(kCopyMarker) : name.subString(0, marker + kCopyMarkerLength);
    for (int counter = 1;; ++counter) {
        VDString candidate = stem + VDString::int2String(counter);
        if (reserve(issued, candidate)) return candidate;
    }
}

} // namespace neq::api
