#include "api/name_registry.h"

namespace neq::api {
namespace {

constexpr char kCopyMarker[] = "_copy";
constexpr int kCopyMarkerLength = sizeof kCopyMarker - 1;

bool reserve(std::set<std::string>& issued, const VDString& name) {
    return issued.insert(name.c_str()).second;
}

// Spaces and dashes become "_"; a clash takes stem + the first free counter, the search
// starting at the stem's resume point.
VDString reserveWithHints(std::set<std::string>& issued,
                          std::unordered_map<std::string, int>& resumeAt, const char* proposed) {
    VDString name(proposed);
    name.replaceCharsOf(" ", '_');
    name.replaceCharsOf("-", '_');
    if (reserve(issued, name)) return name;

    // Every candidate is stem + counter, and its first "_copy" is the stem's own, so
    // the stem found once holds for the whole call.
    const int marker = name.findFirst(kCopyMarker);
    const VDString stem =
        marker < 0 ? name + VDString(kCopyMarker) : name.subString(0, marker + kCopyMarkerLength);
    int& resume = resumeAt.try_emplace(stem.c_str(), 1).first->second;
    if (resume > 1 && issued.count((stem + VDString::int2String(resume - 1)).c_str()) == 0)
        resume = 1;
    for (int counter = resume;; ++counter) {
        VDString candidate = stem + VDString::int2String(counter);
        if (reserve(issued, candidate)) {
            resume = counter + 1;
            return candidate;
        }
    }
}

} // namespace

VDString reserveUniqueName(std::set<std::string>& issued, CopyCounterHints& hints,
                           const char* proposed) {
    if (issued.size() < hints.issuedSeen) hints.resumeAt.clear();
    const VDString unique = reserveWithHints(issued, hints.resumeAt, proposed);
    hints.issuedSeen = issued.size();
    return unique;
}

} // namespace neq::api
