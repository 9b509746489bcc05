#include "platform/memory_hints.h"

#include <sys/mman.h>

#include <cstdint>

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

} // namespace neq::platform
