// Removing a folder with its entries, or the entries that match a wildcard.

#include "foundation/file_io.h"
#include "foundation/vd_disk_server.h"

#include <sys/stat.h>

#include <cstdio>
#include <vector>

using neq::files::isDotEntry;

namespace {

bool isExistingFolder(const char* path) {
    struct stat info {};
    return ::stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

struct Target {
    VDString folder;
    VDString filter; // empty: every entry, and the folder itself
};

// "folder/*.tmp" names the entries of folder that match; so does "folder/name" when it
// is not an existing folder. Any other path is the folder itself.
Target splitTarget(const VDString& path) {
    const int separator = path.findLastCharOf("/\\");
    if (separator >= 0) {
        const VDString last = path.subString(separator + 1);
        if (last.findFirstCharOf("*?") >= 0 || !isExistingFolder(path.c_str()))
            return {path.subString(0, separator), last};
    }
    return {path, VDString()};
}

} // namespace

bool VDDiskServer::deleteDirectory(const VDString& path, bool recursive, bool) {
    const Target target = splitTarget(VDString(path.getValidFilePath()));
    const bool everything = target.filter.isEmpty();
    std::vector<VDString> folders{target.folder};
    std::vector<VDString> doomed;
    if (everything) doomed.push_back(target.folder);
    // folders grows while it is walked.
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const VDString listed = folders[i];
        neq::files::forEachEntry(listed.c_str(), [&](const char* name, bool isFolder) {
            if (isDotEntry(name)) return;
            // Always joined to the starting folder, even for entries of sub-folders:
            // so it has always been, and recursion reaches only one level down.
            VDString entry(neq::files::joinPath(target.folder.c_str(), name).c_str());
            if (recursive && isFolder) folders.push_back(entry);
            if (everything || fileNameMatchFilter(VDString(name), target.filter))
                doomed.push_back(std::move(entry));
        });
    }
    // From the end, so that a folder's entries go before the folder.
    bool removedAll = true;
    for (auto entry = doomed.rbegin(); entry != doomed.rend(); ++entry)
        removedAll = std::remove(entry->c_str()) == 0 && removedAll;
    return !doomed.empty() && removedAll;
}
