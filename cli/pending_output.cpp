#include "pending_output.h"

#include "command.h"
#include "files.h"

#include "foundation/file_io.h"
#include "foundation/text_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace neq::cli {

PendingOutput::PendingOutput(const std::string& destination, Naming naming)
    : destination_(destination) {
    if (destination_ == "-") {
        const char* folder = std::getenv("TMPDIR");
        std::string pattern =
            std::string(folder && *folder ? folder : "/tmp") + "/neqbridge-XXXXXX";
        const int fd = ::mkstemp(pattern.data());
        if (fd < 0)
            throw Failure("cannot create a temporary file for standard output: " + reasonOf(errno));
        ::close(fd);
        writePath_ = pattern;
        temporary_ = toStandardOutput_ = true;
        return;
    }
    struct stat info {};
    const bool exists = ::stat(destination_.c_str(), &info) == 0;
    if ((exists && S_ISDIR(info.st_mode)) || lastNameOf(destination_).empty())
        throw Failure("output " + quoted(destination_) + " is a folder, not a file");
    if (exists && !S_ISREG(info.st_mode)) {
        writePath_ = destination_;
        return;
    }
    // A link is followed and stays; a chain of links that loops is refused, not replaced.
    std::string reason;
    if (!files::followLinks(destination_.c_str(), target_, reason))
        throw Failure("cannot write output " + quoted(destination_) + ": " + reason);
    std::string pattern = files::temporaryPattern(target_);
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
    // A FIFO that nobody reads is refused rather than waited on.
    FileSink file;
    std::string reason;
    if (!file.open(writePath_.c_str(), &reason))
        throw Failure("cannot write output " + quoted(destination_) + ": " + reason);
    errno = 0;
    if (!file.write(bytes.data(), bytes.size()) || !file.close()) failWrite(errno ? errno : EIO);
}

void PendingOutput::commit() {
    if (!temporary_) return;
    if (toStandardOutput_) {
        std::string bytes, reason;
        if (!files::readRegularFile(writePath_.c_str(), bytes, reason))
            throw Failure("cannot read back the output for standard output: " + reason);
        std::fflush(stdout);
        errno = 0;
        if (!files::writeAll(STDOUT_FILENO, bytes.data(), bytes.size()))
            throw Failure("cannot write to standard output: " + reasonOf(errno));
        removeTemporary();
        return;
    }
    if (::rename(writePath_.c_str(), target_.c_str()) != 0)
        throw Failure("cannot replace output " + quoted(destination_) + ": " + reasonOf(errno));
    temporary_ = false;
    removeTemporary();
}

void PendingOutput::failWrite(int error) const {
    throw Failure("cannot write output " + quoted(destination_) + ": " + reasonOf(error));
}

} // namespace neq::cli
