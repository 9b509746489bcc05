// Finding files by wildcard in a folder tree.

#include "foundation/file_io.h"
#include "foundation/vd_disk_server.h"

#include <string>
#include <vector>

namespace {

bool search(VDArray<VDString>& found, const VDString& filter, const char* folder, int depth,
            int stopLevels) {
    bool hit = false;
    std::vector<std::string> subFolders;
    neq::files::forEachEntry(folder, [&](const char* name, bool isFolder) {
        if (fileNameMatchFilter(VDString(name), filter)) {
            // A matching folder is a result, never searched itself.
            found.push_back(VDString(neq::files::joinPath(folder, name).c_str()));
            hit = true;
        } else if (depth > 0 && isFolder && !neq::files::isDotEntry(name)) {
            subFolders.emplace_back(name);
        }
    });
    if (hit && stopLevels >= 1) return true;
    // The folder listed last is searched first.
    for (auto sub = subFolders.rbegin(); sub != subFolders.rend(); ++sub) {
        const std::string path = neq::files::joinPath(folder, sub->c_str());
        if (search(found, filter, path.c_str(), depth - 1, stopLevels - 1)) {
            if (stopLevels > 0) return true;
            hit = true;
        }
    }
    return hit;
}

} // namespace

bool VDDiskServer::searchFileList(VDArray<VDString>& found, const VDString& filter,
                                  const VDString& folder, int depth, int stopLevels) {
    return search(found, filter, folder.getValidFilePath(), depth, stopLevels);
}
