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
          "CreateFolder", "AddFile", "NeQMergeUVs"})
        EXPECT_NE(library.entry(name), nullptr) << name;
    // The module state is exported as data; the two string containers carry the
    // library ABI tag in their names.
    for (const char* name :
         {"folder", "faceID", "s_startTimeVal", "_Z7nameSetB5cxx11", "_Z9UVTileStrB5cxx11"})
        EXPECT_NE(library.symbol(name), nullptr) << name;
    EXPECT_EQ(library.symbol("_ZN3neq8meshfile11loadNeqFileEPKcRSt6vectorIhSaIhEE"), nullptr);

    char out[8] = "x";
    EXPECT_EQ(library.call("Version", nullptr, out), 4.09f);
    EXPECT_STREQ(out, "x");
}

} // namespace
} // namespace neq::test
