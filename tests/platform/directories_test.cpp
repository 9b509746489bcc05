#include "platform/directories.h"

#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace neq::platform {
namespace {

using test::fileExists;

TEST(PlatformDirectories, ExecutableDirectoryHoldsTheRunningProgram) {
    const std::string folder = executableDirectory();
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(folder.front(), '/');
    EXPECT_TRUE(fileExists(folder + "/neqbridge_tests"));
}

} // namespace
} // namespace neq::platform
