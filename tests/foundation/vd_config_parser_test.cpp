#include "foundation/vd_config_parser.h"
#include "support/child_process.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

namespace neq::test {
namespace {

using P = VDGenericConfigFileParser;
using Calls = std::vector<std::string>;

// Handlers that record "KEYWORD=value" into a vector<string> context.
template <const char* Name> void record(const char* value, void* context) {
    static_cast<Calls*>(context)->push_back(std::string(Name) + "=" + value);
}
constexpr char kName[] = "NAME";
constexpr char kNameX[] = "NAMEX";
constexpr char kPath[] = "PATH";

// The calls a parser with the keywords NAME, NAMEX (or, reversed, NAMEX, NAME) and PATH
// makes on a file holding text.
Calls dispatched(const std::string& text, bool reversed) {
    TempDir dir;
    writeFile(dir.file("c.txt"), text);
    P parser;
    parser.addToken(reversed ? "NameX" : "name", reversed ? record<kNameX> : record<kName>);
    parser.addToken(reversed ? "name" : "NameX", reversed ? record<kName> : record<kNameX>);
    parser.addToken("PATH", record<kPath>);
    Calls calls;
    EXPECT_TRUE(parser.parseFile(dir.file("c.txt").c_str(), &calls));
    return calls;
}

TEST(ConfigParser, DispatchesTerminatedLinesToTheNewestPrefixKeyword) {
    const struct {
        std::string text;
        bool reversed;
        Calls calls;
    } cases[] = {
        // Case-insensitive; any run of blanks, ":" and "=" separates; the line is trimmed.
        {"name: MyApp\n", false, {"NAME=MyApp"}},
        {"  NAME =:\t My App  \t\n", false, {"NAME=My App"}},
        {"path=/a b/c\n", false, {"PATH=/a b/c"}},
        // The newer keyword is tried first; an older one takes every line it prefixes.
        {"NAMEX 1\n", false, {"NAMEX=1"}},
        {"NAMEX 1\n", true, {"NAME=X 1"}},
        {"NAMES are here\n", false, {"NAME=S are here"}},
        // Unknown keys, blank lines and comment-like lines go to nobody; a keyword with
        // only separators is consumed without a call, the older keyword not getting it.
        {"# NAME x\n\n  \nNAM\nOTHER 3\n", false, {}},
        {"NAME :=\nPATH\n", false, {}},
        {"NAMEX\n", false, {}},
        // Only terminated lines count: "\r", "\r\n" and runs of them; a NUL ends the text.
        {"NAME MyApp", false, {}},
        {"NAME a\nPATH b", false, {"NAME=a"}},
        {"NAME a\r\n\r\nPATH b\rNAME c\n\n", false, {"NAME=a", "PATH=b", "NAME=c"}},
        {std::string("NAME a\nPATH b\0\nNAME c\n", 22), false, {"NAME=a"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(dispatched(c.text, c.reversed), c.calls) << c.text;
}

// Missing and unreadable files are the file layer's; here one smoke test of each result.
TEST(ConfigParser, ParseFileIsFalseForMissingOrEmptyFiles) {
    TempDir dir;
    writeFile(dir.file("empty"), "");
    writeFile(dir.file("unterminated"), "x");
    P parser;
    EXPECT_FALSE(parser.parseFile(dir.file("empty").c_str(), nullptr));
    EXPECT_FALSE(parser.parseFile(dir.file("none").c_str(), nullptr));
    EXPECT_TRUE(parser.parseFile(dir.file("unterminated").c_str(), nullptr));
}

TEST(ConfigParser, CopiesKeepTheKeywordOrder) {
    P parser, assigned;
    parser.addToken("A", record<kName>);
    parser.addToken("AB", record<kNameX>);
    assigned.addToken("Z", record<kPath>);
    assigned = parser;
    P copy(parser);
    for (const P* p : {&copy, &assigned}) {
        const VDGenericConfigFileToken* token = p->getTokens();
        ASSERT_NE(token, parser.getTokens());
        EXPECT_EQ(token->m_keyword, VDString("AB"));
        ASSERT_NE(token->m_next, nullptr);
        EXPECT_EQ(token->m_next->m_keyword, VDString("A"));
        EXPECT_EQ(token->m_next->m_next, nullptr);
    }
}

TEST(ConfigParser, LineHelpers) {
    char text[] = "ab\r\n\ncd\n", unterminated[] = "ab";
    EXPECT_EQ(P::findEndOfLine(text), text + 2);
    EXPECT_EQ(P::findNextLine(text), text + 5);
    EXPECT_EQ(P::findNextLine(text + 5), nullptr);
    EXPECT_EQ(P::findEndOfLine(text + 8), nullptr);
    EXPECT_EQ(P::findEndOfLine(unterminated), nullptr);
    EXPECT_EQ(P::findNextLine(unterminated), nullptr);
    EXPECT_EQ(P::findEndOfLine(nullptr), nullptr);
    EXPECT_EQ(P::findNextLine(nullptr), nullptr);
}

TEST(ConfigParser, ParseALineSplitsAtTheFirstEquals) {
    const struct {
        std::string line, split; // "key|value", or "" when refused (key and value kept)
    } cases[] = {
        {"  PATH = \"/a = b\" \r\n", "PATH|\"/a = b\""},
        {"\tMy Key\t=\t v\t", "My Key|v"},
        {"KEY", "KEY|"},
        {"KEY =  ", "KEY|"},
        {"a=b=c", "a|b=c"},
        {"= value", ""},
        {" \t\r\n", ""},
    };
    for (const auto& c : cases) {
        VDString key("old key"), value("old value");
        const bool ok = P::parseALine(c.line.data(), c.line.data() + c.line.size(), key, value);
        EXPECT_EQ(ok, !c.split.empty()) << c.line;
        EXPECT_EQ(std::string(key.c_str()) + "|" + value.c_str(),
                  ok ? c.split : "old key|old value")
            << c.line;
    }
}

TEST(ConfigParser, ParamConversions) {
    const std::pair<const char*, const char*> strings[] = {
        {"\"Maya\"", "Maya"}, {"\"", ""},           {"\"\"", ""}, {"\"open", "open"},
        {"plain", "plain"},   {"a\"b\"", "a\"b\""}, {"", ""},     {"\"a\"b\"", "a\"b"}};
    for (const auto& [in, out] : strings)
        EXPECT_EQ(std::string(P::paramToString(in).c_str()), out) << in;
    EXPECT_TRUE(P::paramToString(nullptr).isEmpty());

    const std::pair<const char*, int> bools[] = {
        {"No", 0},  {"NO", 0}, {"0", 0},    {"false", 0}, {"#F", 0}, {"#f", 0},
        {"yes", 1}, {"1", 1},  {"TRUE", 1}, {"#t", 1},    {"#T", 1}, {"maybe", -1},
        {"", -1},   {"2", -1}, {"no ", -1}, {"00", -1},
    };
    for (const auto& [text, value] : bools) {
        EXPECT_EQ(P::paramToBool(text), value != 0) << text;
        EXPECT_EQ(P::paramToBoolOrDefault(text), value) << text;
    }

    EXPECT_FLOAT_EQ(P::paramToFloat("2.5e1x"), 25.0f);
    EXPECT_EQ(P::paramToFloat("abc"), 0.0f);
    EXPECT_EQ(P::paramToFloat(nullptr), 0.0f);
    const std::pair<const char*, int> ints[] = {
        {"2.9", 2},
        {"-2.9", -2},
        {" 7", 7},
        {"x", 0},
        {"nan", 0},
        {"1e30", 2147483647},
        {"-inf", -2147483647 - 1},
    };
    for (const auto& [text, value] : ints)
        EXPECT_EQ(P::paramToInt(text), value) << text;
}

TEST(ConfigEntry, FindTakesTheFirstMatchingKeyIgnoringCase) {
    TempDir dir;
    const std::string path = dir.file("NeQ_Config.txt"), other = dir.file("c.txt");
    writeFile(path, "\n  # comment\nother = 1\r\n  Path\t=  \"/Applications/My App\"  \n"
                    "PATH = second\nEMPTY =\nQUOTE = \"\nLAST = no newline");
    // Only one pair of quotes is removed, and only when both ends hold one. A line with
    // an empty key repeats the previous key; before any key it is empty.
    writeFile(other, "= orphan\nA = \"\"x\"\"\n   \n= 2\n");
    const struct {
        std::string file;
        const char* token;
        const char* value; // null: not found
    } cases[] = {
        {path, "path", "/Applications/My App"},
        {path, "OTHER", "1"},
        {path, "empty", ""},
        {path, "QUOTE", "\""},
        {path, "last", "no newline"},
        {path, "MISSING", nullptr},
        {dir.file("absent"), "PATH", nullptr},
        {other, "", ""},
        {other, "a", "\"x\""},
    };
    for (const auto& c : cases) {
        bool found = c.value == nullptr;
        const VDString value =
            P::findTokenInConfigFile(VDString(c.file.c_str()), VDString(c.token), &found);
        EXPECT_EQ(found, c.value != nullptr) << c.token;
        EXPECT_STREQ(value.c_str(), c.value ? c.value : "") << c.token;
    }
    EXPECT_EQ(P::findTokenInConfigFile(VDString(path.c_str()), VDString("PATH"), nullptr),
              VDString("/Applications/My App"));
}

TEST(ConfigEntry, ReplaceMovesTheEntryToTheFirstLine) {
    const std::string kMixed =
        "A = 1\r\n\r\n  Path = 2\n = inherits PATH\nPATH=3\nPath: 4\nB = 4\n   \nC = 5";
    const std::string kKept = "A = 1\r\n\r\nPath: 4\nB = 4\n   \nC = 5";
    const struct {
        const char* before; // null: no file
        const char *token, *value;
        bool written, found;
        std::string after; // "" with no file: none made
    } cases[] = {
        {"path = 1\nOTHER = 2\n", "PATH", "x", true, true, "PATH = x\nOTHER = 2\n"},
        // Every line of the key goes, with a following empty-key line; the rest is kept
        // byte for byte, terminators and an unterminated last line included. Only "="
        // ends a key.
        {kMixed.c_str(), "path", "\"/x y\"", true, true, "PATH = \"/x y\"\n" + kKept},
        // A missing entry is added on top, the value written as given; a missing file is
        // made.
        {kKept.c_str(), "new", "", true, false, "NEW = \n" + kKept},
        {nullptr, "Path", "v", true, false, "PATH = v\n"},
        // A line break would let a value write an entry of another key.
        {"PATH = 1\n", "PATH", "x\nOTHER = y", false, false, "PATH = 1\n"},
        {"PATH = 1\n", "PATH", "x\r", false, false, "PATH = 1\n"},
        {"PATH = 1\n", "PA\nTH", "x", false, false, "PATH = 1\n"},
        {"PATH = 1\n", "\rPATH", "x", false, false, "PATH = 1\n"},
        {nullptr, "PATH", "a\nb", false, false, ""},
    };
    for (const auto& c : cases) {
        TempDir dir;
        const std::string path = dir.file("c.txt");
        if (c.before) writeFile(path, c.before);
        bool found = !c.found;
        EXPECT_EQ(P::replaceTokenInConfigFile(VDString(path.c_str()), VDString(c.token),
                                              VDString(c.value), &found),
                  c.written)
            << c.token << " = " << c.value;
        EXPECT_EQ(found, c.found) << c.token << " = " << c.value;
        EXPECT_EQ(fileExists(path) ? readFile(path) : "", c.after) << c.token << " = " << c.value;
        EXPECT_EQ(listFolder(dir.path()).size(), fileExists(path) ? 1u : 0u);
    }
}

// The file layer's failures are its own test's; here the replacement's smoke test: the
// file is made with the usual mode and no folder, replaced by a rename keeping its mode,
// through a link that stays, a device written to, a read-only file left alone.
TEST(ConfigEntry, ReplaceGoesThroughTheFileLayer) {
    TempDir dir;
    const auto replace = [](const std::string& path, const char* token) {
        return P::replaceTokenInConfigFile(VDString(path.c_str()), VDString(token), VDString("1"),
                                           nullptr);
    };
    const std::string path = dir.file("c.txt");
    EXPECT_TRUE(replace(path, "A"));
    const mode_t mask = ::umask(0);
    ::umask(mask);
    EXPECT_EQ(modeOf(path), 0666u & ~mask);
    EXPECT_FALSE(replace(dir.file("missing/c.txt"), "A"));

    ::chmod(path.c_str(), 0640);
    struct stat before {
    }, after{}, link{};
    ::stat(path.c_str(), &before);
    ASSERT_EQ(::symlink("c.txt", dir.file("link").c_str()), 0);
    EXPECT_TRUE(replace(dir.file("link"), "B"));
    ::stat(path.c_str(), &after);
    ::lstat(dir.file("link").c_str(), &link);
    EXPECT_NE(before.st_ino, after.st_ino) << "the file is replaced by a rename";
    EXPECT_TRUE(S_ISLNK(link.st_mode));
    EXPECT_EQ(modeOf(path), 0640u);
    EXPECT_EQ(readFile(path), "B = 1\nA = 1\n");
    EXPECT_EQ(listFolder(dir.path()), (std::vector<std::string>{"c.txt", "link"}));
    EXPECT_TRUE(replace("/dev/null", "A"));

    ::chmod(dir.path().c_str(), 0777);
    ::chmod(path.c_str(), 0444);
    EXPECT_TRUE(runInChild({std::nullopt, true}, [&] { return !replace(path, "C"); }));
    EXPECT_EQ(readFile(path), "B = 1\nA = 1\n");
}

} // namespace
} // namespace neq::test
