#include "support/host_library.h"

#include <gtest/gtest.h>

namespace neq::test {
namespace {

// Each entry's behaviour is tested through this library in the test of its service.
TEST(HostEntries, EveryEntryResolvesByItsPlainNameAndInternalsStayHidden) {
    HostLibrary library;
    for (const char* name :
         {"Version", "addBlendFile", "endBlendFile", "clearUVString", "ClearNameSet", "CheckName",
          "OpenFolder", "GetFile", "CloseFolder", "SetFolder", "FileDelete", "GetPublicFolder",
          "CreateFolder", "AddFile"})
        EXPECT_NE(library.entry(name), nullptr) << name;
    EXPECT_EQ(library.symbol("_ZN3neq8meshfile11loadNeqFileEPKcRSt6vectorIhSaIhEE"), nullptr);
    EXPECT_EQ(library.symbol("loadNeqFile"), nullptr);
}

TEST(HostEntries, VersionIsTheFloatNearestToFourPointZeroNine) {
    HostLibrary library;
    char out[8] = "x";
    EXPECT_EQ(library.call("Version", nullptr, out), 4.09f);
    EXPECT_STREQ(out, "x");
}

} // namespace
} // namespace neq::test
