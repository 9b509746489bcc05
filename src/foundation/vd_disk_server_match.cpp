// Wildcard matching of file names.

#include "foundation/vd_disk_server.h"

bool fileNameMatchFilter(const VDString& name, const VDString& filter) {
    if (name.isEmpty() || filter.isEmpty()) return false;
    VDString upperName(name);
    VDString upperFilter(filter);
    return fileNameMatchFilterRec(upperName.toUpper().getString(),
                                  upperFilter.toUpper().getString());
}

bool fileNameMatchFilterRec(const char* name, const char* filter) {
    if (name == nullptr) name = "";
    if (filter == nullptr) filter = "";
    // The answers of the plain recursion ("*" first takes one more character, then
    // none), found in one pass: after a mismatch only the latest "*" needs to take one
    // more character, because whatever an earlier "*" could take, the latest can too.
    // Hostile filters such as "*a*a*a*a*b" cannot make it slow.
    const char* starFilter = nullptr; // just after the latest "*"
    const char* starName = nullptr;   // where the name resumes when that "*" takes more
    while (*name != '\0') {
        if (*filter == '*') {
            starFilter = ++filter;
            starName = name;
        } else if (*filter != '\0' && (*filter == '?' || *filter == *name)) {
            ++filter;
            ++name;
        } else if (starFilter != nullptr) {
            filter = starFilter;
            name = ++starName;
        } else {
            return false;
        }
    }
    while (*filter == '*')
        ++filter;
    return *filter == '\0';
}
