// Whole-file reads and the replacing write of configuration files.

#include "foundation/atomic_file.h"
#include "foundation/vd_config_text.h"
#include "foundation/vd_disk_server.h"

#include <sys/stat.h>

#include <cstdio>
#include <string>

namespace neq::config {
namespace {

// The write the file always had: open for writing (creating or truncating), write.
bool writeDirectly(const char* path, const std::string& bytes) {
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr) return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return (std::fclose(file) == 0) && written;
}

} // namespace

bool readConfigFile(const VDString& path, std::vector<char>& bytes) {
    bytes.clear();
    std::FILE* file = VDDiskServer::fileOpen(path, VDString("rb"));
    if (file == VDDiskServer::s_invalidFile) return false;
    // Only a regular file has a size to trust: a folder can report any end position.
    struct stat info {};
    const bool regular = ::fstat(::fileno(file), &info) == 0 && S_ISREG(info.st_mode);
    const long long size = regular ? VDDiskServer::fileSize(file) : 0;
    if (size > 0) {
        bytes.resize(static_cast<std::size_t>(size));
        bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    }
    std::fclose(file);
    return !bytes.empty();
}

bool replaceFileContents(const char* path, const std::string& bytes) {
    // A device or pipe cannot be replaced: it is written to, as it always was.
    struct stat existing {};
    if (::stat(path, &existing) == 0 && !S_ISREG(existing.st_mode))
        return writeDirectly(path, bytes);
    std::string reason;
    return files::replaceFile(path, bytes, reason);
}

} // namespace neq::config
