#pragma once

// Forked children for tests that need another user's rights or a resource limit.

#include <sys/resource.h>

#include <functional>
#include <optional>
#include <string>

namespace neq::test {

// The permission bits of path, as stat reports them.
unsigned modeOf(const std::string& path);

// What a forked child may change about itself before it runs its body.
struct ChildSetup {
    // Writes past this many bytes fail (SIGXFSZ is ignored, so write reports it).
    std::optional<rlim_t> fileSizeLimit;
    // Run as the unprivileged user kUnprivilegedUser when the tests run as root, so
    // that permission bits apply.
    bool unprivileged = false;
};

constexpr unsigned kUnprivilegedUser = 65534;

// Runs body in a forked child and returns its result; a child that does not end
// normally fails the test.
bool runInChild(const ChildSetup& setup, const std::function<bool()>& body);

// Lets the unprivileged child own and reach path (does nothing unless root).
void handToUnprivilegedUser(const std::string& path);

} // namespace neq::test
