#include "foundation/output_file.h"

#include "foundation/file_io.h"

#include <cstring>
#include <string>

namespace neq {

OutputFile::OutputFile(std::size_t bufferSize) : buffer_(bufferSize) {}

OutputFile::~OutputFile() {
    close();
}

bool OutputFile::open(const char* path, const char* mode) {
    close();
    failed_ = false;
    std::string reason; // callers report the failure in their own terms
    file_ = files::openStream(path, mode, reason);
    // Our own buffer already batches writes; a second stdio buffer would only copy.
    if (file_ != nullptr) std::setvbuf(file_, nullptr, _IONBF, 0);
    return file_ != nullptr;
}

void OutputFile::append(const void* data, std::size_t size) {
    if (size > buffer_.size() - used_) {
        flush();
        if (size >= buffer_.size()) {
            // Large blocks go straight to the file rather than through the buffer.
            if (file_ && std::fwrite(data, 1, size, file_) != size) failed_ = true;
            return;
        }
    }
    std::memcpy(buffer_.data() + used_, data, size);
    used_ += size;
}

bool OutputFile::flush() {
    if (used_ != 0 && file_ != nullptr && std::fwrite(buffer_.data(), 1, used_, file_) != used_)
        failed_ = true;
    used_ = 0;
    return !failed_;
}

bool OutputFile::close() {
    if (file_ == nullptr) return !failed_;
    flush();
    if (std::fclose(file_) != 0) failed_ = true;
    file_ = nullptr;
    return !failed_;
}

} // namespace neq
