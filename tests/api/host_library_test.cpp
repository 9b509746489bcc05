#include "support/host_library.h"

#include <gtest/gtest.h>

#include <cstring>

namespace neq::test {
namespace {

TEST(HostLibrary, VersionIsTheFloatNearestToFourPointZeroNine) {
    HostLibrary library;
    char out[8] = "x";
    EXPECT_EQ(library.call("Version", nullptr, out), 4.09f);
    EXPECT_STREQ(out, "x");
}

TEST(HostLibrary, InternalSymbolsStayHidden) {
    HostLibrary library;
    EXPECT_EQ(library.symbol("_ZN3neq8meshfile11loadNeqFileEPKcRSt6vectorIhSaIhEE"), nullptr);
    EXPECT_EQ(library.symbol("loadNeqFile"), nullptr);
}

} // namespace
} // namespace neq::test
