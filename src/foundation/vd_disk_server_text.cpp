// Small text files read or written whole: settings and notes of at most 4096 bytes.

#include "foundation/file_io.h"
#include "foundation/vd_disk_server.h"

#include <fcntl.h>

#include <string>

namespace {

constexpr std::size_t kLargestText = 4096;

} // namespace

bool VDDiskServer::readFileAsString(const VDString& path, VDString& out) {
    // A folder, FIFO or device is refused at once rather than waited on or read forever.
    std::string text, reason;
    if (neq::files::readRegularFile(path.getValidFilePath(), text, reason, kLargestText)) {
        out.create(text.data(), text.data() + text.size());
        return true;
    }
    out.clear();
    return false;
}

bool VDDiskServer::writeFileFromString(const VDString& path, const VDString& text) {
    // Created or emptied before the text is looked at: a refused text leaves an empty
    // file, as callers expect. The open itself never waits for a FIFO's reader.
    std::string reason;
    neq::files::OwnedDescriptor file(neq::files::openFile(
        path.getValidFilePath(), O_WRONLY | O_CREAT | O_TRUNC, neq::files::Kind::anyFile, reason));
    if (!file.isOpen()) return false;
    const std::size_t size = static_cast<std::size_t>(text.length());
    if (size == 0 || size > kLargestText) return false;
    return neq::files::writeAll(file.get(), text.c_str(), size) && file.close();
}
