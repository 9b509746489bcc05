#include "support/host_library.h"

#include <neqbridge/neqbridge.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

namespace neq::test {
namespace {

// CheckName and ClearNameSet over the exported `nameSet` the typed exports share.
TEST(NameEntries, NamesStayReservedInTheExportedSetUntilCleared) {
    HostLibrary library;
    const auto check = [&](const char* name) {
        char out[256] = "untouched";
        EXPECT_EQ(library.call("CheckName", name, out), 0.0f);
        return std::string(out);
    };
    ASSERT_EQ(library.call("ClearNameSet"), 0.0f);
    EXPECT_EQ(check("my head"), "my_head");
    EXPECT_EQ(check(nullptr), "");
    EXPECT_EQ(library.call("CheckName", "A", nullptr), 0.0f) << "a null out only skips the copy";
    char a[] = "A";
    const std::unique_ptr<char[]> typed(NameCheck(a));
    EXPECT_STREQ(typed.get(), "A_copy1");
    EXPECT_EQ(nameSet, (std::set<std::string>{"", "A", "A_copy1", "my_head"}));

    EXPECT_EQ(library.call("ClearNameSet"), 0.0f);
    EXPECT_TRUE(nameSet.empty());
    EXPECT_EQ(check("my head"), "my_head");
    char out[8] = "x";
    EXPECT_EQ(library.call("Version", nullptr, out), 4.09f);
    EXPECT_STREQ(out, "x") << "Version leaves the buffer alone";
}

} // namespace
} // namespace neq::test
