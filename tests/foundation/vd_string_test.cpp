#include "foundation/vd_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

namespace {

// `text` after `edit`.
VDString edited(const char* text, void (*edit)(VDString&)) {
    VDString s(text);
    edit(s);
    return s;
}

// The four pattern searches of `pattern` in `subject`.
int first(const char* subject, const char* pattern, bool noCase = false) {
    return VDString(subject).findFirst(VDString(pattern), noCase);
}
int next(const char* subject, const char* pattern, int from, bool noCase = false) {
    return VDString(subject).findNext(VDString(pattern), from, noCase);
}
int prev(const char* subject, const char* pattern, int from, bool noCase = false) {
    return VDString(subject).findPrev(VDString(pattern), from, noCase);
}
int last(const char* subject, const char* pattern, bool noCase = false) {
    return VDString(subject).findLast(VDString(pattern), noCase);
}

TEST(VDString, PatternSearchesKeepTheirSinglePassBehaviour) {
    // findFirst is exact.
    EXPECT_EQ(first("xab", "ab"), 1);
    EXPECT_EQ(first("aaabxxxx", "aab"), 1);
    EXPECT_EQ(first("aAbx", "ab", true), 1);
    EXPECT_EQ(first("ab", ""), -1);
    // findNext misses a match that ends after length - plen, and never backtracks.
    EXPECT_EQ(next("xab", "ab", 0), -1);
    EXPECT_EQ(next("abxx", "ab", 0), 0);
    EXPECT_EQ(next("ababxx", "ab", 1), 2);
    EXPECT_EQ(next("aaabxxxx", "aab", 0), -1);
    EXPECT_EQ(next("xabyy", "AB", 0, true), 1);
    EXPECT_EQ(next("abxx", "ab", -3), 0);
    EXPECT_EQ(next("abxx", "", 0), -1);
    // The restart after a mismatch compares exactly, even without case.
    EXPECT_EQ(next("aabx", "ab", 0, true), 1);
    EXPECT_EQ(next("aAbx", "ab", 0, true), -1);
    EXPECT_EQ(next("aabx", "AB", 0, true), -1);
    // findLast starts on the terminator and stops below plen.
    EXPECT_EQ(last("ab", "ab"), -1);
    EXPECT_EQ(last("xxab", "ab"), 2);
    EXPECT_EQ(last("xxAB", "ab", true), 2);
    EXPECT_EQ(last("ba", "a"), 1);
    EXPECT_EQ(last("xxab", ""), -1);
    // findPrev finds matches below `from`; a `from` past the end is clipped.
    EXPECT_EQ(prev("xxab", "ab", 100), 2);
    EXPECT_EQ(prev("xxab", "ab", 3), 2);
    EXPECT_EQ(prev("xxab", "ab", 2), -1);
    EXPECT_EQ(prev("abcab", "ab", 4), 3);
    EXPECT_EQ(prev("xxab", "AB", 3, true), 2);
}

TEST(VDString, CompareNullRulesLimitsAndByteSigns) {
    struct Case {
        const char *a, *b;
        int limit, cmp, cmpNoCase;
    };
    const Case cases[] = {
        {nullptr, "", 0, 0, 0},     {nullptr, "a", 0, -1, -1}, {"a", nullptr, 0, 1, 1},
        {"abd", "abc", 0, 1, 1},    {"abc", "ABD", 2, 1, 0},   {"abc", "abd", 2, 0, 0},
        {"abc", "abd", -5, -1, -1}, {"abc", "ABC", 0, 1, 0},   {"ab", "abc", 0, -1, -1},
        {"[", "a", 0, -1, 1},      // no-case compares the upper-cased bytes
        {"a\xE9", "a", 0, -1, 1},  // cmp on signed bytes, no-case on unsigned
        {"\xE9", "\xC9", 0, 1, 1}, // no folding outside a..z
    };
    for (const Case& c : cases) {
        const std::string label = std::string(c.a ? c.a : "(null)") + " vs " +
                                  (c.b ? c.b : "(null)") + " limit " + std::to_string(c.limit);
        EXPECT_EQ(VDString::cmp(c.a, c.b, c.limit), c.cmp) << label;
        EXPECT_EQ(VDString::cmpNoCase(c.a, c.b, c.limit), c.cmpNoCase) << label;
    }
    EXPECT_TRUE(VDString("x") == VDString("x"));
    EXPECT_TRUE(VDString() == VDString(""));
    EXPECT_TRUE(VDString("x") != VDString("X"));
}

TEST(VDString, StartsWithAndEndsWith) {
    struct Case {
        const char *subject, *affix;
        bool noCase, starts, ends;
    };
    const Case cases[] = {
        {"abc", "ab", false, true, false},  {"abc", "bc", false, false, true},
        {"abc", "AB", false, false, false}, {"abc", "AB", true, true, false},
        {"abc", "BC", true, false, true},   {"ab", "abc", false, false, false},
        {"abc", "", false, true, true},     {"", "", false, true, true},
    };
    for (const Case& c : cases) {
        const VDString subject(c.subject);
        EXPECT_EQ(subject.startsWith(VDString(c.affix), c.noCase), c.starts)
            << c.subject << " / " << c.affix;
        EXPECT_EQ(subject.endsWith(VDString(c.affix), c.noCase), c.ends)
            << c.subject << " / " << c.affix;
    }
}

TEST(VDString, PathHelpers) {
    const std::pair<const char*, const char*> fileNames[] = {
        {"", ""},        {"/a/b.c.obj", "b.c"}, {"dir.v2/name", "name"},
        {".hidden", ""}, {"C:\\m\\H.ma", "H"},
    };
    for (const auto& [path, name] : fileNames)
        EXPECT_STREQ(VDString(path).getFileName().c_str(), name) << path;

    const std::pair<const char*, const char*> validPaths[] = {
        {"/", ""},     {"x!:/a", "x!:/a"},          {"!:", ""},      {"!:file:/x", "file:/x"},
        {"a//", "a/"}, {"!:/Users/x/", "/Users/x"}, {"file:x", "x"}, {"FILE:/tmp/a\\", "/tmp/a"},
    };
    for (const auto& [path, valid] : validPaths) {
        VDString s(path);
        s.makePathValid();
        EXPECT_STREQ(s.c_str(), valid) << path;
    }

    const std::pair<const char*, int> filePathOffsets[] = {
        {"Disk:/Users/x", 5}, {"file:///tmp", 5}, {"/a:b/c", 4}, {"plain", 0}, {"a:b", 2},
    };
    for (const auto& [path, offset] : filePathOffsets) {
        const VDString s(path);
        EXPECT_EQ(s.getValidFilePath(), s.getString() + offset) << path;
    }
    EXPECT_STREQ(VDString().getValidFilePath(), "");

    const std::pair<const char*, const char*> advances[] = {{"", "1"},
                                                            {"a0b", "a0b1"},
                                                            {"name.png", "name1.png"},
                                                            {"img19.png", "img20.png"},
                                                            {"99", "100"},
                                                            {".png", "1.png"},
                                                            {"dir.v2/img9", "dir.v2/img10"},
                                                            {"dir.v2\\shot", "dir.v2\\shot1"}};
    for (const auto& [before, after] : advances) {
        VDString s(before);
        EXPECT_STREQ(s.fileNameAdvance().c_str(), after) << before;
    }

    const VDString path("C:\\Dir\\file");
    EXPECT_TRUE(path.isInPath("c:/DIR/"));
    EXPECT_TRUE(path.isInPath(""));
    EXPECT_FALSE(path.isInPath("c:/dir/file/x"));
    EXPECT_FALSE(path.isInPath("c:/dix"));
    EXPECT_FALSE(VDString().isInPath("a"));
}

TEST(VDString, Formatting) {
    const std::pair<int, const char*> shortCounts[] = {
        {0, "0"},         {999, "999"},      {1099, "1.0k"},
        {45678, "45.6k"}, {1999999, "1.9m"}, {12345678, "12.3m"},
    };
    for (const auto& [n, text] : shortCounts) {
        VDString s;
        s.printShortCount(n);
        EXPECT_STREQ(s.c_str(), text) << n;
    }

    VDString s;
    s.print("%s", std::string(600, 'x').c_str());
    EXPECT_EQ(s.length(), 511);
    EXPECT_STREQ(VDString::format("%d-%s", 7, "x").c_str(), "7-x");
    EXPECT_STREQ(VDString::int2String(-42).c_str(), "-42");
    s.printTime(123456ul, true);
    EXPECT_EQ(s.getString(), nullptr);

    char buffer[8] = "keep";
    char fmt[] = "%d";
    vdSprintf(buffer, fmt, 12345);
    EXPECT_STREQ(buffer, "keep");
    EXPECT_EQ(vdSprintf_s(buffer, 4, "%d", 12345), 5);
    EXPECT_STREQ(buffer, "123");
    EXPECT_EQ(vdSprintf_s(buffer, -1, "%d", 678), 3);
    EXPECT_STREQ(buffer, "123");
}

TEST(VDString, CuttingQuotingAndNumbers) {
    struct Slice {
        const char* text;
        int start, end;
        const char* expected;
    };
    const Slice slices[] = {
        {"hello", 1, 3, "el"}, {"hello", 1, -1, "ello"}, {"hello", 2, 99, "llo"},
        {"hello", 3, 2, ""},   {"hello", -2, 2, "he"},
    };
    for (const Slice& c : slices)
        EXPECT_STREQ(VDString(c.text).subString(c.start, c.end).c_str(), c.expected)
            << c.text << " [" << c.start << ", " << c.end << ")";

    const std::pair<int, const char*> cuts[] = {{2, "llo"}, {0, "hello"}, {-1, "hello"}, {9, ""}};
    for (const auto& [n, tail] : cuts) {
        VDString s("hello");
        s.cutTo(n);
        EXPECT_STREQ(s.c_str(), tail) << n;
    }

    const std::pair<const char*, const char*> unquotes[] = {
        {"\"x\"", "x"}, {"x\"", "x\""}, {"\"x", "\"x"},       {"\"", ""},
        {"\"\"", ""},   {"", ""},       {"\"a\"b\"", "a\"b"},
    };
    for (const auto& [quoted, plain] : unquotes)
        EXPECT_STREQ(VDString(quoted).unquoted().c_str(), plain) << quoted;
    EXPECT_STREQ(VDString("a").quoted().c_str(), "\"a\"");
    EXPECT_STREQ(VDString().quoted().c_str(), "\"\"");
    EXPECT_STREQ(VDString("a").quoted(VDString("'")).c_str(), "'a'");
    EXPECT_STREQ(VDString("a").quoted(VDString()).c_str(), "a");

    const std::pair<const char*, int> numbers[] = {
        {"-17", -17},      {"+8", 8}, {"12ab", 12}, {" 5", 0}, {"", 0}, {"2147483648", INT_MIN},
        {"4294967297", 1},
    };
    for (const auto& [text, value] : numbers)
        EXPECT_EQ(VDString(text).convertToInt(), value) << text;

    VDString upper("abz[\xE9");
    EXPECT_STREQ(upper.toUpper().c_str(), "ABZ[\xE9");
}

TEST(VDString, CharacterSetSearchesAndEdits) {
    const VDString path("a/b\\c");
    EXPECT_EQ(path.findFirstCharOf("/\\"), 1);
    EXPECT_EQ(path.findLastCharOf("/\\"), 3);
    EXPECT_EQ(path.findNextCharOf("/\\", 2), 3);
    EXPECT_EQ(path.findPrevCharOf("/\\", 2), 1);
    EXPECT_EQ(path.findNextCharOf("/\\", 4), -1);
    EXPECT_EQ(path.findPrevCharOf("/\\", 40), 3);
    EXPECT_EQ(path.findFirstCharOf(""), -1);
    const VDString padded("  ab ");
    EXPECT_EQ(padded.findFirstCharNotOf(" "), 2);
    EXPECT_EQ(padded.findLastCharNotOf(" "), 3);
    EXPECT_EQ(padded.findPrevCharNotOf(" ", 1), -1);
    EXPECT_EQ(VDString().findFirstCharNotOf(" "), -1);

    const std::pair<VDString, const char*> edits[] = {
        {edited("my head-x", [](VDString& s) { s.replaceCharsOf(" -", '_'); }), "my_head_x"},
        {edited("a1b2", [](VDString& s) { s.replaceCharsNotOf("0123456789", '.'); }), ".1.2"},
        {edited("a b  c", [](VDString& s) { s.removeCharsOf(" "); }), "abc"},
        {edited("a1b2", [](VDString& s) { s.removeCharsNotOf("0123456789"); }), "12"},
        {edited("\xE9t\xE9", [](VDString& s) { s.replaceCharsOf("\xE9", 'e'); }), "ete"},
    };
    for (const auto& [result, expected] : edits)
        EXPECT_STREQ(result.c_str(), expected);
}

// findFirstTag's answer and the range it leaves: "found 3 7" or "none 3 11".
std::string firstTag(const char* text, const char* open, int start, int end) {
    const bool found = VDString(text).findFirstTag(VDString(open), VDString("</a>"), start, end);
    return (found ? "found " : "none ") + std::to_string(start) + " " + std::to_string(end);
}

TEST(VDString, FindFirstTag) {
    EXPECT_EQ(firstTag("<a>text</a>tail", "<a>", 0, 100), "found 3 7");
    EXPECT_EQ(firstTag("<a>text</a>tail", "<a>", -4, 100), "found 3 7");
    EXPECT_EQ(firstTag("<a>text</a>", "<a>", 0, 100), "none 3 11"); // a close at the end is missed
    EXPECT_EQ(firstTag("<a>text</a>tail", "<a>", 0, 10), "none 3 10");
    EXPECT_EQ(firstTag("<a>text</a>tail", "<b>", 0, 100), "none -1 15");
    EXPECT_EQ(firstTag("<a>text</a>tail", "<a>", 15, 100), "none 15 100");
    EXPECT_EQ(firstTag("<a>text</a>tail", "", 0, 100), "none 0 100");
    int start = 0;
    int end = 15;
    EXPECT_FALSE(
        VDString("<a>text</a>tail").findLastTag(VDString("<a>"), VDString("</a>"), start, end));
}

// Every operation leaves an empty result as the null pointer, never a lone NUL block.
TEST(VDString, EmptyResultsOwnNoMemory) {
    const VDString text("abc");
    static const char kAbc[] = "abc";
    const VDString empties[] = {
        VDString(""),
        VDString() + VDString(),
        text.subString(3),
        VDString("\"").unquoted(),
        VDString("/a/").getFileName(),
        VDString::format("%s", ""),
        edited("x", [](VDString& s) { s.create(kAbc, kAbc); }),
        edited("x", [](VDString& s) { s.create(0, 'x'); }),
        edited("abc", [](VDString& s) { s.cutTo(3); }),
        edited("   ", [](VDString& s) { s.removeCharsOf(" "); }),
        edited("a", [](VDString& s) { s.replaceCharsOf("a", '\0'); }),
        edited("/", [](VDString& s) { s.makePathValid(); }),
    };
    for (std::size_t i = 0; i < std::size(empties); ++i) {
        EXPECT_EQ(empties[i].getString(), nullptr) << i;
        EXPECT_EQ(empties[i].getDynMemoryUsed(), 0u) << i;
        EXPECT_EQ(empties[i].length(), 0) << i;
        EXPECT_STREQ(empties[i].c_str(), "") << i;
    }

    EXPECT_EQ(text.getDynMemoryUsed(), 4u);
    EXPECT_EQ(text.getMemoryUsed(), sizeof(void*));
    EXPECT_EQ(VDString::emptyString().getString(), nullptr);

    VDString copy(text);
    EXPECT_NE(copy.getString(), text.getString());
    const VDString& alias = copy;
    copy = alias; // self-assignment keeps the text
    EXPECT_STREQ(copy.c_str(), "abc");
    VDString moved(std::move(copy));
    EXPECT_STREQ(moved.c_str(), "abc");
    moved += moved;
    EXPECT_STREQ(moved.c_str(), "abcabc");
    EXPECT_STREQ(("x" + VDString("y")).c_str(), "xy");
    EXPECT_STREQ((static_cast<const char*>(nullptr) + VDString("y")).c_str(), "y");
    EXPECT_STREQ((VDString("ab") + VDString()).c_str(), "ab");
}

} // namespace
