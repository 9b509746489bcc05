#pragma once

// Forked children for tests that need another user's rights or a resource limit.

#include <sys/resource.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace neq::test {

// The permission bits of path, as stat reports them.
unsigned modeOf(const std::string& path);

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kAddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kAddressSanitizer = true;
#else
constexpr bool kAddressSanitizer = false;
#endif
#else
constexpr bool kAddressSanitizer = false;
#endif

// What a forked child may change about itself before it runs its body.
struct ChildSetup {
    // Writes past this many bytes fail (SIGXFSZ is ignored, so write reports it).
    std::optional<rlim_t> fileSizeLimit;
    // As kUnprivilegedUser when the tests run as root, so that permission bits apply.
    bool unprivileged = false;
};

constexpr unsigned kUnprivilegedUser = 65534;

// Runs body in a forked child and returns its result; a child that does not end
// normally fails the test.
bool runInChild(const ChildSetup& setup, const std::function<bool()>& body);

// Caps this process's address space (in a child): allocations past it fail. Does
// nothing under AddressSanitizer, whose shadow memory needs far more.
bool limitAddressSpace(rlim_t bytes);
std::size_t addressSpaceInUse();

// Lets the unprivileged child own and reach path (does nothing unless root).
void handToUnprivilegedUser(const std::string& path);

} // namespace neq::test
