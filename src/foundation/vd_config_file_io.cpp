// Whole-file reads and the replacing write of configuration files.

#include "foundation/atomic_file.h"
#include "foundation/vd_config_text.h"
#include "foundation/vd_disk_server_internal.h"
#include "foundation/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <string>

namespace neq::config {

bool readConfigFile(const VDString& path, std::vector<char>& bytes) {
    std::string text, reason;
    files::readRegularFile(path.getValidFilePath(), text, reason);
    bytes.assign(text.begin(), text.end());
    return !bytes.empty();
}

bool replaceFileContents(const char* path, const std::string& bytes) {
    std::string reason;
    struct stat existing {};
    if (::stat(path, &existing) != 0 || S_ISREG(existing.st_mode))
        return files::replaceFile(path, bytes, reason);
    // A device is not a file to replace: it is written to, as it always was (a FIFO only
    // when someone reads it; otherwise the write fails instead of waiting).
    diskserver::OwnedDescriptor device(
        files::openFile(path, O_WRONLY | O_TRUNC, files::Kind::anyFile, reason));
    return device.isOpen() && diskserver::writeAll(device.get(), bytes.data(), bytes.size()) &&
           device.close();
}

} // namespace neq::config
