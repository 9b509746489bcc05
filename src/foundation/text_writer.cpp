#include "foundation/text_writer.h"

#include "foundation/file_io.h"
#include "platform/system_hints.h"

#include <fcntl.h>

namespace neq {

bool FileSink::open(const char* path, std::string* reason) {
    close();
    failed_ = writeback_ = false;
    written_ = writebackStart_ = 0;
    std::string ignored; // most callers report the failure in their own terms
    owned_.emplace(files::openFile(path, O_WRONLY | O_CREAT | O_TRUNC, files::Kind::anyFile,
                                   reason ? *reason : ignored));
    fd_ = owned_->get();
    return fd_ >= 0;
}

bool FileSink::close() {
    if (owned_ && owned_->isOpen() && !owned_->close()) failed_ = true;
    owned_.reset();
    fd_ = -1;
    return !failed_;
}

bool FileSink::write(const char* data, std::size_t size) {
    if (fd_ < 0 || !files::writeAll(fd_, data, size)) {
        failed_ = true;
        return false;
    }
    written_ += size;
    constexpr std::uint64_t kWritebackStep = std::uint64_t{8} << 20;
    if (writeback_ && written_ - writebackStart_ >= kWritebackStep) {
        platform::startWriteback(fd_, writebackStart_, written_ - writebackStart_);
        writebackStart_ = written_;
    }
    return true;
}

} // namespace neq
