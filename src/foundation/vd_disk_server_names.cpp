// File-name text: folder parts and extensions. Nothing here looks at the disk.

#include "foundation/vd_disk_server.h"

namespace {

// ext with a leading "." (an empty ext becomes ".").
VDString dottedExtension(const VDString& ext) {
    return ext.startsWith(".") ? ext : "." + ext;
}

// The index just after the last "/" of path (0 without one), after dropping a volume
// prefix from path.
int cutAfterLastSlash(VDString& path) {
    path.set(path.getValidFilePath());
    return path.findLastCharOf("/") + 1;
}

} // namespace

bool VDDiskServer::extractPathFromFilename(VDString& path) {
    path = path.subString(0, cutAfterLastSlash(path));
    return true;
}

bool VDDiskServer::extractPathFromFilename(VDString& path, VDString& fileName) {
    const int cut = cutAfterLastSlash(path);
    fileName = path.subString(cut);
    path = path.subString(0, cut);
    return true;
}

bool VDDiskServer::removePathFromFilename(VDString& path) {
    path.set(path.getValidFilePath());
    path.cutTo(path.findLastCharOf("/\\") + 1);
    return true;
}

bool VDDiskServer::fileNameHasExtension(const VDString& name, const VDString& ext) {
    return name.endsWith(dottedExtension(ext));
}

bool VDDiskServer::makeFilenameWithExt(VDString& name, const VDString& ext) {
    const VDString dotted = dottedExtension(ext);
    if (name.endsWith(dotted)) return false;
    name += dotted;
    return true;
}

bool VDDiskServer::makeFilenameWithoutExt(VDString& name, const VDString& ext) {
    const VDString dotted = dottedExtension(ext);
    if (!name.endsWith(dotted)) return false;
    name = name.subString(0, name.length() - dotted.length());
    return true;
}
