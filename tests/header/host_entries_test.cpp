#include "support/host_library.h"

#include <neqbridge/neqbridge.hpp>

#include <gtest/gtest.h>

namespace neq::test {
namespace {

// Each entry's behaviour is tested through this library in the test of its service.
TEST(HostEntries, EveryEntryResolvesByItsPlainName) {
    HostLibrary library;
    for (const char* name :
         {"Version", "addBlendFile", "endBlendFile", "clearUVString", "ClearNameSet", "CheckName",
          "OpenFolder", "GetFile", "CloseFolder", "SetFolder", "FileDelete", "GetPublicFolder",
          "CreateFolder", "AddFile", "NeQMergeUVs"})
        EXPECT_NE(library.entry(name), nullptr) << name;
    // The module state is exported as data: the plain names by name; nameSet and
    // UVTileStr, whose symbols carry the standard library's spelling, are linked through
    // the public header (this program would not link without them).
    for (const char* name : {"folder", "faceID", "s_startTimeVal"})
        EXPECT_NE(library.symbol(name), nullptr) << name;
    EXPECT_NE(static_cast<const void*>(&nameSet), static_cast<const void*>(&UVTileStr));

    char out[8] = "x";
    EXPECT_EQ(library.call("Version", nullptr, out), 4.09f);
    EXPECT_STREQ(out, "x");
}

} // namespace
} // namespace neq::test
