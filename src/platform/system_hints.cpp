#include "platform/system_hints.h"

#include <fcntl.h>
#include <sys/mman.h>

namespace neq::platform {

void preferLargePages(const void* data, std::size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::uintptr_t kLargePage = std::uintptr_t{2} << 20;
    const auto begin = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t first = (begin + kLargePage - 1) & ~(kLargePage - 1);
    const std::uintptr_t end = (begin + bytes) & ~(kLargePage - 1);
    // A refusal only means small pages, as without the hint.
    if (first < end) ::madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
#else
    (void)data;
    (void)bytes;
#endif
}

void startWriteback([[maybe_unused]] int fd, [[maybe_unused]] std::uint64_t offset,
                    [[maybe_unused]] std::uint64_t length) {
#ifdef SYNC_FILE_RANGE_WRITE
    ::sync_file_range(fd, static_cast<off_t>(offset), static_cast<off_t>(length),
                      SYNC_FILE_RANGE_WRITE);
#endif
}

} // namespace neq::platform
