#include "foundation/vd_string.h"

#include "support/case_table.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <utility>

namespace neq::test {
namespace {

using Args = CaseRow;

VDString text(int n) {
    return VDString(std::to_string(n).c_str());
}
int num(const std::string& s) {
    return std::stoi(s);
}
const char* orNull(const std::string& s) {
    return s == "(null)" ? nullptr : s.c_str();
}
// The string after an in-place edit.
VDString after(const std::string& s, const std::function<void(VDString&)>& edit) {
    VDString v(s.c_str());
    edit(v);
    return v;
}

using Operation = std::function<VDString(const Args&)>;

// Operations of one shape, by the member they call.
Operation search(int (VDString::*find)(const VDString&, bool) const) {
    return [=](const Args& a) {
        return text((VDString(a[1].c_str()).*find)(VDString(a[2].c_str()), a[3] == "1"));
    };
}
Operation searchFrom(int (VDString::*find)(const VDString&, int, bool) const) {
    return [=](const Args& a) {
        return text((VDString(a[1].c_str()).*find)(VDString(a[2].c_str()), num(a[3]), a[4] == "1"));
    };
}
Operation charsFrom(int (VDString::*find)(const char*, int) const) {
    return [=](const Args& a) {
        return text((VDString(a[1].c_str()).*find)(a[2].c_str(), num(a[3])));
    };
}
Operation lastChar(int (VDString::*find)(const char*) const) {
    return [=](const Args& a) { return text((VDString(a[1].c_str()).*find)(a[2].c_str())); };
}
Operation replaceChars(void (VDString::*replace)(const char*, char)) {
    return [=](const Args& a) {
        return after(a[1], [&](VDString& s) { (s.*replace)(a[2].c_str(), a[3][0]); });
    };
}
Operation removeChars(void (VDString::*remove)(const char*)) {
    return
        [=](const Args& a) { return after(a[1], [&](VDString& s) { (s.*remove)(a[2].c_str()); }); };
}
Operation edit(VDString& (VDString::*change)()) {
    return [=](const Args& a) { return after(a[1], [&](VDString& s) { (s.*change)(); }); };
}

// Each operation of the case table, from its arguments to its result as text.
const std::map<std::string, Operation> kOperations = {
    {"first", search(&VDString::findFirst)},
    {"next", searchFrom(&VDString::findNext)},
    {"prev", searchFrom(&VDString::findPrev)},
    {"last", search(&VDString::findLast)},
    {"cmp",
     [](const Args& a) {
         return VDString(
             (std::to_string(VDString::cmp(orNull(a[1]), orNull(a[2]), num(a[3]))) + " " +
              std::to_string(VDString::cmpNoCase(orNull(a[1]), orNull(a[2]), num(a[3]))))
                 .c_str());
     }},
    {"affix",
     [](const Args& a) {
         const VDString s(a[1].c_str()), affix(a[2].c_str());
         return VDString::format("%d %d", s.startsWith(affix, a[3] == "1"),
                                 s.endsWith(affix, a[3] == "1"));
     }},
    {"fileName", [](const Args& a) { return VDString(a[1].c_str()).getFileName(); }},
    {"pathValid", edit(&VDString::makePathValid)},
    {"validFilePath",
     [](const Args& a) { return VDString(VDString(a[1].c_str()).getValidFilePath()); }},
    {"advance", edit(&VDString::fileNameAdvance)},
    {"inPath", [](const Args& a) { return text(VDString(a[1].c_str()).isInPath(a[2].c_str())); }},
    {"shortCount",
     [](const Args& a) { return after("", [&](VDString& s) { s.printShortCount(num(a[1])); }); }},
    {"subString",
     [](const Args& a) { return VDString(a[1].c_str()).subString(num(a[2]), num(a[3])); }},
    {"cutTo", [](const Args& a) { return after(a[1], [&](VDString& s) { s.cutTo(num(a[2])); }); }},
    {"unquoted", [](const Args& a) { return VDString(a[1].c_str()).unquoted(); }},
    {"quoted", [](const Args& a) { return VDString(a[1].c_str()).quoted(); }},
    {"quotedWith",
     [](const Args& a) { return VDString(a[1].c_str()).quoted(VDString(a[2].c_str())); }},
    {"toInt", [](const Args& a) { return text(VDString(a[1].c_str()).convertToInt()); }},
    {"toUpper", edit(&VDString::toUpper)},
    {"nextCharOf", charsFrom(&VDString::findNextCharOf)},
    {"lastCharOf", lastChar(&VDString::findLastCharOf)},
    {"prevCharOf", charsFrom(&VDString::findPrevCharOf)},
    {"nextCharNotOf", charsFrom(&VDString::findNextCharNotOf)},
    {"lastCharNotOf", lastChar(&VDString::findLastCharNotOf)},
    {"prevCharNotOf", charsFrom(&VDString::findPrevCharNotOf)},
    {"replaceCharsOf", replaceChars(&VDString::replaceCharsOf)},
    {"replaceCharsNotOf", replaceChars(&VDString::replaceCharsNotOf)},
    {"removeCharsOf", removeChars(&VDString::removeCharsOf)},
    {"removeCharsNotOf", removeChars(&VDString::removeCharsNotOf)},
    {"firstTag",
     [](const Args& a) {
         int start = num(a[3]), end = num(a[4]);
         const bool found = VDString(a[1].c_str())
                                .findFirstTag(VDString(a[2].c_str()), VDString("</a>"), start, end);
         return VDString::format("%s %d %d", found ? "found" : "none", start, end);
     }},
};

TEST(VDString, OperationsOfTheCaseTable) {
    for (const Args& row : readCaseTable("foundation/vd_string_cases.txt")) {
        const VDString result = kOperations.at(row.front())(row);
        EXPECT_STREQ(result.c_str(), row.back().c_str()) << testing::PrintToString(row);
        if (row.back().empty()) {
            EXPECT_EQ(result.getString(), nullptr) << testing::PrintToString(row);
            EXPECT_EQ(result.getDynMemoryUsed(), 0u) << testing::PrintToString(row);
        }
    }
}

TEST(VDString, FormattingAndOwnership) {
    VDString s;
    s.print("%s", std::string(600, 'x').c_str());
    EXPECT_EQ(s.length(), 511);
    EXPECT_STREQ(VDString::int2String(-42).c_str(), "-42");
    s.printTime(123456ul, true);
    EXPECT_EQ(s.getString(), nullptr);
    char buffer[8] = "keep", fmt[] = "%d";
    vdSprintf(buffer, fmt, 12345);
    EXPECT_STREQ(buffer, "keep");
    EXPECT_EQ(vdSprintf_s(buffer, 4, "%d", 12345), 5);
    EXPECT_EQ(vdSprintf_s(buffer, -1, "%d", 678), 3);
    EXPECT_STREQ(buffer, "123");

    static const char kAbc[] = "abc";
    for (const VDString& empty :
         {VDString(""), VDString() + VDString(), VDString::format("%s", ""),
          after("x", [](VDString& e) { e.create(kAbc, kAbc); }),
          after("x", [](VDString& e) { e.create(0, 'x'); }), VDString::emptyString()})
        EXPECT_EQ(empty.getString(), nullptr);
    const VDString abc(kAbc);
    EXPECT_EQ(abc.getDynMemoryUsed(), 4u);
    EXPECT_EQ(abc.getMemoryUsed(), sizeof(void*));
    VDString copy(abc);
    EXPECT_NE(copy.getString(), abc.getString());
    const VDString& alias = copy;
    copy = alias; // self-assignment keeps the text
    VDString moved(std::move(copy));
    moved += moved;
    EXPECT_STREQ(moved.c_str(), "abcabc");
    EXPECT_TRUE(VDString() == VDString(""));
    EXPECT_TRUE(VDString("x") != VDString("X"));
    EXPECT_STREQ(("x" + VDString("y")).c_str(), "xy");
    EXPECT_STREQ((static_cast<const char*>(nullptr) + VDString("y")).c_str(), "y");
    int start = 0, end = 15;
    EXPECT_FALSE(
        VDString("<a>text</a>tail").findLastTag(VDString("<a>"), VDString("</a>"), start, end));
}

} // namespace
} // namespace neq::test
