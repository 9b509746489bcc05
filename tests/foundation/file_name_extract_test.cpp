#include "foundation/file_name_extract.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

// `expected` null: an out-of-range error. The path argument must never change.
void expectExtract(const char* original, int mode, const char* expected) {
    std::string path = original;
    if (expected == nullptr) {
        EXPECT_THROW(FileNameExtract(path, mode), std::out_of_range) << original;
    } else {
        EXPECT_EQ(FileNameExtract(path, mode), expected) << original << " mode " << mode;
    }
    EXPECT_EQ(path, original);
}

TEST(FileNameExtract, EveryModeOnTypicalAndDegeneratePaths) {
    const int kModes[] = {1, 2, 3, 4, 6};
    const struct {
        const char* path;
        const char* byMode[5]; // modes 1, 2, 3, 4 (null: no dot to find), 6
    } cases[] = {
        {"/d/x.tar.gz", {"/d/", "x.tar", "/d/x.tar", ".gz", "x.tar.gz"}},
        {"C:\\m\\Head.ma", {"C:\\m\\", "Head", "C:\\m\\Head", ".ma", "Head.ma"}},
        {"a/b\\c.ma", {"a/b\\", "c", "a/b\\c", ".ma", "c.ma"}},
        {"a\\b/c.ma", {"a\\b/", "c", "a\\b/c", ".ma", "c.ma"}},
        {"Smile", {"", "Smile", "Smile", nullptr, "Smile"}},
        {"dir.v2/Smile", {"dir.v2/", "Smile", "dir", ".v2/Smile", "Smile"}},
        {"a.b.ma", {"", "a.b", "a.b", ".ma", "a.b.ma"}},
        {"/x/", {"/x/", "", "/x/", nullptr, ""}},
        {".hidden", {"", "", "", ".hidden", ".hidden"}},
        {"", {"", "", "", nullptr, ""}},
    };
    for (const auto& c : cases) {
        for (int i = 0; i < 5; ++i)
            expectExtract(c.path, kModes[i], c.byMode[i]);
        for (int mode : {-3, 0, 5, 7}) // any other mode: the path unchanged
            expectExtract(c.path, mode, c.path);
    }
}

} // namespace
