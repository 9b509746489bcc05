#include "platform/writeback.h"

#include <fcntl.h>

namespace neq::platform {

void startWriteback([[maybe_unused]] int fd, [[maybe_unused]] std::uint64_t offset,
                    [[maybe_unused]] std::uint64_t length) {
#ifdef SYNC_FILE_RANGE_WRITE
    ::sync_file_range(fd, static_cast<off_t>(offset), static_cast<off_t>(length),
                      SYNC_FILE_RANGE_WRITE);
#endif
}

} // namespace neq::platform
