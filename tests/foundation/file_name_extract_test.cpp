#include "foundation/file_name_extract.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

struct Case {
    const char* path;
    int mode;
    const char* expected;
};

TEST(FileNameExtract, EveryModeOnTypicalAndDegeneratePaths) {
    const Case cases[] = {
        {"/d/x.tar.gz", 1, "/d/"},
        {"/d/x.tar.gz", 2, "x.tar"},
        {"/d/x.tar.gz", 3, "/d/x.tar"},
        {"/d/x.tar.gz", 4, ".gz"},
        {"/d/x.tar.gz", 6, "x.tar.gz"},
        {"/d/x.tar.gz", 0, "/d/x.tar.gz"},
        {"/d/x.tar.gz", 5, "/d/x.tar.gz"},
        {"/d/x.tar.gz", -3, "/d/x.tar.gz"},
        {"C:\\m\\Head.ma", 2, "Head"},
        {"C:\\m\\Head.ma", 1, "C:\\m\\"},
        {"a/b\\c.ma", 1, "a/b\\"},
        {"a\\b/c.ma", 6, "c.ma"},
        {"Smile", 1, ""},
        {"Smile", 2, "Smile"},
        {"Smile", 3, "Smile"},
        {"Smile", 6, "Smile"},
        {"dir.v2/Smile", 2, "Smile"},
        {"dir.v2/Smile", 3, "dir"},
        {"dir.v2/Smile", 4, ".v2/Smile"},
        {"a.b.ma", 2, "a.b"},
        {"/x/", 2, ""},
        {"/x/", 6, ""},
        {".hidden", 2, ""},
        {"", 2, ""},
        {"", 1, ""},
    };
    for (const Case& c : cases) {
        std::string path = c.path;
        EXPECT_EQ(FileNameExtract(path, c.mode), c.expected) << c.path << " mode " << c.mode;
        EXPECT_EQ(path, c.path) << "the path argument must not change";
    }
}

TEST(FileNameExtract, ExtensionOfAPathWithoutDotIsAnOutOfRangeError) {
    std::string path = "/d/name";
    EXPECT_THROW(FileNameExtract(path, 4), std::out_of_range);
}

} // namespace
