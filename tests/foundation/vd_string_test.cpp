#include "foundation/vd_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

namespace {

enum class Search { First, Next, Prev, Last };

struct SearchCase {
    const char *subject, *pattern;
    Search kind;
    int from;
    bool noCase;
    int expected;
};

// `text` after `edit`.
VDString edited(const char* text, void (*edit)(VDString&)) {
    VDString s(text);
    edit(s);
    return s;
}

int runSearch(const SearchCase& c) {
    const VDString subject(c.subject);
    const VDString pattern(c.pattern);
    switch (c.kind) {
    case Search::First:
        return subject.findFirst(pattern, c.noCase);
    case Search::Next:
        return subject.findNext(pattern, c.from, c.noCase);
    case Search::Prev:
        return subject.findPrev(pattern, c.from, c.noCase);
    case Search::Last:
        return subject.findLast(pattern, c.noCase);
    }
    return -2;
}

TEST(VDString, PatternSearchesKeepTheirSinglePassBehaviour) {
    using S = Search;
    const SearchCase cases[] = {
        // findFirst is exact.
        {"xab", "ab", S::First, 0, false, 1},
        {"aaabxxxx", "aab", S::First, 0, false, 1},
        {"aAbx", "ab", S::First, 0, true, 1},
        {"ab", "", S::First, 0, false, -1},
        {"", "a", S::First, 0, false, -1},
        {"ab", "abc", S::First, 0, false, -1},
        // findNext misses a match that ends after length - plen, and never backtracks.
        {"xab", "ab", S::Next, 0, false, -1},
        {"abxx", "ab", S::Next, 0, false, 0},
        {"abab", "ab", S::Next, 1, false, -1},
        {"ababxx", "ab", S::Next, 1, false, 2},
        {"aaabxxxx", "aab", S::Next, 0, false, -1},
        {"xabyy", "AB", S::Next, 0, true, 1},
        {"xabyy", "AB", S::Next, 0, false, -1},
        {"abxx", "ab", S::Next, -3, false, 0},
        {"abxx", "", S::Next, 0, false, -1},
        // The restart after a mismatch compares exactly, even without case.
        {"aabx", "ab", S::Next, 0, true, 1},
        {"aAbx", "ab", S::Next, 0, true, -1},
        {"aabx", "AB", S::Next, 0, true, -1},
        // findLast starts on the terminator and stops below plen.
        {"ab", "ab", S::Last, 0, false, -1},
        {"xxab", "ab", S::Last, 0, false, 2},
        {"xxAB", "ab", S::Last, 0, true, 2},
        {"xxabb", "ab", S::Last, 0, false, 2},
        {"a", "a", S::Last, 0, false, -1},
        {"ba", "a", S::Last, 0, false, 1},
        {"xxab", "", S::Last, 0, false, -1},
        // findPrev: from <= 0 finds nothing; from past length - plen is clipped.
        {"xxab", "ab", S::Prev, 100, false, 2},
        {"xxab", "ab", S::Prev, 3, false, 2},
        {"xxab", "ab", S::Prev, 2, false, -1},
        {"xxab", "ab", S::Prev, 0, false, -1},
        {"abcab", "ab", S::Prev, 4, false, 3},
        {"abcab", "ab", S::Prev, 3, false, -1},
        {"abab", "ab", S::Prev, 2, false, -1},
        {"xxab", "AB", S::Prev, 3, true, 2},
        {"", "ab", S::Prev, 5, false, -1},
    };
    for (const SearchCase& c : cases)
        EXPECT_EQ(runSearch(c), c.expected)
            << "kind " << static_cast<int>(c.kind) << " '" << c.pattern << "' in '" << c.subject
            << "' from " << c.from << (c.noCase ? " nocase" : "");
}

TEST(VDString, CompareNullRulesLimitsAndByteSigns) {
    struct Case {
        const char *a, *b;
        int limit, cmp, cmpNoCase;
    };
    const Case cases[] = {
        {nullptr, "", 0, 0, 0},     {nullptr, nullptr, 0, 0, 0}, {nullptr, "a", 0, -1, -1},
        {"a", nullptr, 0, 1, 1},    {"", nullptr, 0, 0, 0},      {"abc", "abd", 0, -1, -1},
        {"abd", "abc", 0, 1, 1},    {"abc", "ABD", 2, 1, 0},     {"abc", "abd", 2, 0, 0},
        {"abc", "abd", -5, -1, -1}, {"abc", "ABC", 0, 1, 0},     {"ab", "abc", 0, -1, -1},
        {"abc", "ab", 0, 1, 1},     {"[", "a", 0, -1, 1}, // no-case compares the upper-cased bytes
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
        {"", "a", true, false, false},      {"abc", "abc", false, true, true},
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
        {"", ""},        {"/a/b.c.obj", "b.c"},      {"/a/b/", ""},    {"dir.v2/name", "name"},
        {".hidden", ""}, {"C:\\m\\Head.ma", "Head"}, {"name", "name"},
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

    const std::pair<const char*, const char*> advances[] = {
        {"", "1"},       {"a0b", "a0b1"},     {"name.png", "name1.png"},
        {"a8", "a9"},    {"name", "name1"},   {"img19.png", "img20.png"},
        {"99", "100"},   {".png", "1.png"},   {"dir.v2/img9", "dir.v2/img10"},
        {"a99", "a100"}, {"9.png", "10.png"}, {"dir.v2\\shot", "dir.v2\\shot1"},
    };
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
        {1000, "1.0k"},    {1000000, "1.0m"},   {0, "0"},
        {1234567, "1.2m"}, {45678, "45.6k"},    {999, "999"},
        {1999999, "1.9m"}, {12345678, "12.3m"}, {1099, "1.0k"},
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
        {"hello", 5, 9, ""},   {"hello", 3, 2, ""},      {"hello", -2, 2, "he"},
        {"", 0, -1, ""},
    };
    for (const Slice& c : slices)
        EXPECT_STREQ(VDString(c.text).subString(c.start, c.end).c_str(), c.expected)
            << c.text << " [" << c.start << ", " << c.end << ")";

    const std::pair<int, const char*> cuts[] = {
        {2, "llo"}, {0, "hello"}, {-1, "hello"}, {5, ""}, {9, ""},
    };
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
        {"42", 42},        {"-17", -17}, {"+8", 8}, {"12ab", 12},
        {" 5", 0},         {"", 0},      {"-", 0},  {"2147483648", INT_MIN},
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
    EXPECT_EQ(path.findNextCharOf("/\\", 40), -1);
    EXPECT_EQ(path.findPrevCharOf("/\\", 40), 3);
    EXPECT_EQ(path.findFirstCharOf(""), -1);
    const VDString padded("  ab ");
    EXPECT_EQ(padded.findFirstCharNotOf(" "), 2);
    EXPECT_EQ(padded.findLastCharNotOf(" "), 3);
    EXPECT_EQ(padded.findNextCharNotOf(" ", 3), 3);
    EXPECT_EQ(padded.findPrevCharNotOf(" ", 1), -1);
    EXPECT_EQ(VDString().findFirstCharNotOf(" "), -1);

    const std::pair<VDString, const char*> edits[] = {
        {edited("my head-x", [](VDString& s) { s.replaceCharsOf(" -", '_'); }), "my_head_x"},
        {edited("a1b2", [](VDString& s) { s.replaceCharsNotOf("0123456789", '.'); }), ".1.2"},
        {edited("a b  c", [](VDString& s) { s.removeCharsOf(" "); }), "abc"},
        {edited("a1b2", [](VDString& s) { s.removeCharsNotOf("0123456789"); }), "12"},
        {edited("\xE9t\xE9", [](VDString& s) { s.replaceCharsOf("\xE9", 'e'); }), "ete"},
        {edited("abc", [](VDString& s) { s.removeCharsOf(""); }), "abc"},
    };
    for (const auto& [result, expected] : edits)
        EXPECT_STREQ(result.c_str(), expected);
}

TEST(VDString, FindFirstTag) {
    struct Case {
        const char* text;
        const char* open;
        int start, end;
        bool found;
        int startAfter, endAfter;
    };
    const Case cases[] = {
        {"<a>text</a>tail", "<a>", 0, 100, true, 3, 7},
        {"<a>text</a>tail", "<a>", -4, 100, true, 3, 7},
        {"<a>text</a>", "<a>", 0, 100, false, 3, 11}, // findNext misses a close at the end
        {"<a>text</a>tail", "<a>", 0, 10, false, 3, 10},
        {"<a>text</a>tail", "<b>", 0, 100, false, -1, 15},
        {"<a>text</a>tail", "<a>", 15, 100, false, 15, 100},
        {"<a>text</a>tail", "<a>", 4, 4, false, 4, 4},
        {"<a>text</a>tail", "", 0, 100, false, 0, 100},
    };
    for (const Case& c : cases) {
        int start = c.start;
        int end = c.end;
        EXPECT_EQ(VDString(c.text).findFirstTag(VDString(c.open), VDString("</a>"), start, end),
                  c.found)
            << c.text << " " << c.open << " " << c.start << ".." << c.end;
        EXPECT_EQ(start, c.startAfter) << c.text << " " << c.open;
        EXPECT_EQ(end, c.endAfter) << c.text << " " << c.open;
    }
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
        edited("x", [](VDString& s) { s.create(3, '\0'); }),
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
