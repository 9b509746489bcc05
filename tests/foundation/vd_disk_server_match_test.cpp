#include "foundation/vd_disk_server.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

bool matches(const char* name, const char* filter) {
    return fileNameMatchFilter(VDString(name), VDString(filter));
}

TEST(FileNameMatchFilter, WildcardsAndCase) {
    EXPECT_TRUE(matches("photo.JPG", "*.jpg"));
    EXPECT_FALSE(matches("a", ""));
    EXPECT_FALSE(matches("", "*"));
    EXPECT_TRUE(matches("abc", "a?c"));
    EXPECT_FALSE(matches("ab", "a?c"));
    EXPECT_FALSE(matches("abcd", "a?c")) << "the whole name must be used";
    EXPECT_TRUE(matches("abc", "*"));
    EXPECT_TRUE(matches("abc", "abc*")) << "a star may take nothing";
    EXPECT_TRUE(matches("abc", "***a**b*c***"));
    EXPECT_TRUE(matches("a.b.c", "*.c"));
    EXPECT_FALSE(matches("a.b.c", "*.b"));
    EXPECT_TRUE(matches("mississippi", "m*iss*ppi"));
    EXPECT_FALSE(matches("mississippi", "m*iss*ppx"));
    EXPECT_TRUE(matches("\xe9T\xc9", "\xe9t\xc9")) << "ASCII letters only are folded";
    EXPECT_FALSE(matches("\xe9", "\xc9"));

    // The plain form compares bytes as they are.
    EXPECT_FALSE(fileNameMatchFilterRec("photo.JPG", "*.jpg"));
    EXPECT_TRUE(fileNameMatchFilterRec("photo.jpg", "*.jpg"));
    EXPECT_TRUE(fileNameMatchFilterRec("", "**"));
    EXPECT_TRUE(fileNameMatchFilterRec(nullptr, nullptr));
    EXPECT_FALSE(fileNameMatchFilterRec("a", nullptr));
    EXPECT_FALSE(fileNameMatchFilterRec("", "?"));

    // Filters that make a plain recursion take exponential time answer at once.
    const std::string name(200, 'a');
    EXPECT_FALSE(fileNameMatchFilterRec(name.c_str(), "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b"));
    EXPECT_TRUE(fileNameMatchFilterRec(name.c_str(), "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a"));
}

// The matching rule written as the plain recursion, for comparison.
bool recursiveModel(const char* name, const char* filter) {
    if (*filter == '\0') return *name == '\0';
    if (*filter == '*')
        return (*name != '\0' && recursiveModel(name + 1, filter)) ||
               recursiveModel(name, filter + 1);
    if (*name == '\0') return false;
    return (*filter == '?' || *filter == *name) && recursiveModel(name + 1, filter + 1);
}

TEST(FileNameMatchFilter, AgreesWithThePlainRecursion) {
    std::mt19937 random(7);
    const auto randomText = [&](const char* alphabet, int alphabetSize) {
        std::string text(random() % 9, ' ');
        for (char& c : text)
            c = alphabet[random() % alphabetSize];
        return text;
    };
    for (int i = 0; i < 200000; ++i) {
        const std::string name = randomText("ab", 2);
        const std::string filter = randomText("ab*?", 4);
        ASSERT_EQ(fileNameMatchFilterRec(name.c_str(), filter.c_str()),
                  recursiveModel(name.c_str(), filter.c_str()))
            << '"' << name << "\" \"" << filter << '"';
    }
}

} // namespace
