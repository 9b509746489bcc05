#include "pending_output.h"

#include "command.h"
#include "files.h"

#include "foundation/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

namespace neq::cli {

PendingOutput::PendingOutput(const std::string& destination, Naming naming)
    : destination_(destination) {
    struct stat info {};
    const bool exists = ::stat(destination_.c_str(), &info) == 0;
    if ((exists && S_ISDIR(info.st_mode)) || lastNameOf(destination_).empty())
        throw Failure("output " + quoted(destination_) + " is a folder, not a file");
    if (exists && !S_ISREG(info.st_mode)) {
        writePath_ = destination_;
        return;
    }
    target_ = followLinks(destination_);
    std::string pattern = folderOf(target_) + "/." + lastNameOf(target_) + ".neqbridge-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    int fd = -1;
    if (naming == Naming::hidden) {
        fd = ::mkstemp(name.data());
        if (fd >= 0) writePath_ = name.data();
    } else if (::mkdtemp(name.data()) != nullptr) {
        privateFolder_ = name.data();
        writePath_ = privateFolder_ + "/" + lastNameOf(destination_);
        fd = ::open(writePath_.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600);
    }
    if (fd < 0) {
        const int error = errno;
        if (!privateFolder_.empty()) ::rmdir(privateFolder_.c_str());
        throw Failure("cannot create output " + quoted(destination_) + ": " + reasonOf(error));
    }
    // The temporary file is private; give it the mode the output would have had.
    ::fchmod(fd, exists ? (info.st_mode & 07777) : files::newFileMode());
    ::close(fd);
    temporary_ = true;
}

PendingOutput::~PendingOutput() {
    removeTemporary();
}

void PendingOutput::removeTemporary() {
    if (temporary_) ::unlink(writePath_.c_str());
    temporary_ = false;
    if (!privateFolder_.empty()) ::rmdir(privateFolder_.c_str());
    privateFolder_.clear();
}

void PendingOutput::write(std::string_view bytes) const {
    const int fd = ::open(writePath_.c_str(), O_WRONLY | O_TRUNC | O_CREAT, 0666);
    if (fd < 0) failWrite(errno);
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) {
            const int error = written < 0 ? errno : EIO;
            ::close(fd);
            failWrite(error);
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    if (::close(fd) != 0) failWrite(errno);
}

void PendingOutput::commit() {
    if (!temporary_) return;
    if (::rename(writePath_.c_str(), target_.c_str()) != 0)
        throw Failure("cannot replace output " + quoted(destination_) + ": " + reasonOf(errno));
    temporary_ = false;
    removeTemporary();
}

void PendingOutput::failWrite(int error) const {
    throw Failure("cannot write output " + quoted(destination_) + ": " + reasonOf(error));
}

} // namespace neq::cli
