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

// Handlers that record "KEYWORD=value" into a vector<string> context.
template <const char* Name> void record(const char* value, void* context) {
    static_cast<std::vector<std::string>*>(context)->push_back(std::string(Name) + "=" + value);
}
constexpr char kName[] = "NAME";
constexpr char kNameX[] = "NAMEX";
constexpr char kPath[] = "PATH";

// The calls a parser with the given keywords makes on a file holding text.
std::vector<std::string> dispatched(const std::string& text, bool nameXAfterName = true) {
    TempDir dir;
    writeFile(dir.file("c.txt"), text);
    P parser;
    if (nameXAfterName) {
        parser.addToken("name", record<kName>);
        parser.addToken("NameX", record<kNameX>);
    } else {
        parser.addToken("NameX", record<kNameX>);
        parser.addToken("name", record<kName>);
    }
    parser.addToken("PATH", record<kPath>);
    std::vector<std::string> calls;
    EXPECT_TRUE(parser.parseFile(dir.file("c.txt").c_str(), &calls));
    return calls;
}

using Calls = std::vector<std::string>;

TEST(ConfigParser, MatchesKeywordsAsPrefixesNewestFirst) {
    // Case-insensitive; any run of blanks, ":" and "=" separates; the line is trimmed.
    EXPECT_EQ(dispatched("name: MyApp\n"), Calls{"NAME=MyApp"});
    EXPECT_EQ(dispatched("  NAME =:\t My App  \t\n"), Calls{"NAME=My App"});
    EXPECT_EQ(dispatched("path=/a b/c\n"), Calls{"PATH=/a b/c"});
    // The newer keyword is tried first; with the order reversed the older one takes
    // every line it prefixes, the rest of the key becoming the value.
    EXPECT_EQ(dispatched("NAMEX 1\n"), Calls{"NAMEX=1"});
    EXPECT_EQ(dispatched("NAMEX 1\n", false), Calls{"NAME=X 1"});
    EXPECT_EQ(dispatched("NAMES are here\n"), Calls{"NAME=S are here"});
    // Unknown keys, blank lines and comment-like lines go to nobody.
    EXPECT_EQ(dispatched("# NAME x\n\n  \nNAM\nOTHER 3\n"), Calls{});
    // A keyword followed only by separators, or alone on its line, is consumed without a
    // call: the older keyword does not get the line either.
    EXPECT_EQ(dispatched("NAME :=\nPATH\n"), Calls{});
    EXPECT_EQ(dispatched("NAMEX\n"), Calls{});
}

TEST(ConfigParser, DispatchesOnlyTerminatedLines) {
    EXPECT_EQ(dispatched("NAME MyApp"), Calls{});
    EXPECT_EQ(dispatched("NAME a\nPATH b"), Calls{"NAME=a"});
    // "\r", "\r\n" and runs of terminators all end a line.
    EXPECT_EQ(dispatched("NAME a\r\n\r\nPATH b\rNAME c\n\n"),
              (Calls{"NAME=a", "PATH=b", "NAME=c"}));
    // A NUL byte ends the text.
    const char withNul[] = "NAME a\nPATH b\0\nNAME c\n";
    EXPECT_EQ(dispatched(std::string(withNul, sizeof withNul - 1)), Calls{"NAME=a"});
}

TEST(ConfigParser, ParseFileIsFalseForMissingOrEmptyFiles) {
    TempDir dir;
    writeFile(dir.file("empty"), "");
    P parser;
    EXPECT_FALSE(parser.parseFile(dir.file("empty").c_str(), nullptr));
    EXPECT_FALSE(parser.parseFile(dir.file("none").c_str(), nullptr));
    EXPECT_FALSE(parser.parseFile(dir.path().c_str(), nullptr));
    writeFile(dir.file("unterminated"), "x");
    EXPECT_TRUE(parser.parseFile(dir.file("unterminated").c_str(), nullptr));
}

TEST(ConfigParser, CopiesKeepTheKeywordOrder) {
    P parser;
    parser.addToken("A", record<kName>);
    parser.addToken("AB", record<kNameX>);
    P copy(parser);
    P assigned;
    assigned.addToken("Z", record<kPath>);
    assigned = parser;
    for (const P* p : {&copy, &assigned}) {
        const VDGenericConfigFileToken* token = p->getTokens();
        ASSERT_NE(token, nullptr);
        EXPECT_EQ(token->m_keyword, VDString("AB"));
        ASSERT_NE(token->m_next, nullptr);
        EXPECT_EQ(token->m_next->m_keyword, VDString("A"));
        EXPECT_EQ(token->m_next->m_next, nullptr);
        EXPECT_NE(token, parser.getTokens());
    }
}

TEST(ConfigParser, LineHelpers) {
    char text[] = "ab\r\n\ncd\n";
    EXPECT_EQ(P::findEndOfLine(text), text + 2);
    EXPECT_EQ(P::findNextLine(text), text + 5);
    EXPECT_EQ(P::findNextLine(text + 5), nullptr);
    EXPECT_EQ(P::findEndOfLine(text + 8), nullptr);
    char unterminated[] = "ab";
    EXPECT_EQ(P::findEndOfLine(unterminated), nullptr);
    EXPECT_EQ(P::findNextLine(unterminated), nullptr);
    EXPECT_EQ(P::findEndOfLine(nullptr), nullptr);
    EXPECT_EQ(P::findNextLine(nullptr), nullptr);
}

struct Split {
    bool ok;
    std::string key;
    std::string value;
};

Split split(const std::string& line) {
    VDString key("old key");
    VDString value("old value");
    const bool ok = P::parseALine(line.data(), line.data() + line.size(), key, value);
    return {ok, key.c_str(), value.c_str()};
}

TEST(ConfigParser, ParseALineSplitsAtTheFirstEquals) {
    const Split cases[] = {{true, "PATH", "\"/a = b\""},
                           {true, "My Key", "v"},
                           {true, "KEY", ""},
                           {true, "KEY", ""},
                           {true, "a", "b=c"},
                           {false, "old key", "old value"},
                           {false, "old key", "old value"}};
    const char* lines[] = {"  PATH = \"/a = b\" \r\n",
                           "\tMy Key\t=\t v\t",
                           "KEY",
                           "KEY =  ",
                           "a=b=c",
                           "= value",
                           " \t\r\n"};
    for (int i = 0; i < 7; ++i) {
        const Split got = split(lines[i]);
        EXPECT_EQ(got.ok, cases[i].ok) << lines[i];
        EXPECT_EQ(got.key, cases[i].key) << lines[i];
        EXPECT_EQ(got.value, cases[i].value) << lines[i];
    }
}

TEST(ConfigParser, ParamConversions) {
    const std::pair<const char*, const char*> strings[] = {
        {"\"Maya\"", "Maya"}, {"\"", ""},           {"\"\"", ""}, {"\"open", "open"},
        {"plain", "plain"},   {"a\"b\"", "a\"b\""}, {"", ""},     {"\"a\"b\"", "a\"b"}};
    for (const auto& [in, out] : strings)
        EXPECT_EQ(std::string(P::paramToString(in).c_str()), out) << in;
    EXPECT_TRUE(P::paramToString(nullptr).isEmpty());

    for (const char* no : {"No", "NO", "0", "false", "#F", "#f"}) {
        EXPECT_FALSE(P::paramToBool(no)) << no;
        EXPECT_EQ(P::paramToBoolOrDefault(no), 0) << no;
    }
    for (const char* yes : {"yes", "1", "TRUE", "#t", "#T"}) {
        EXPECT_TRUE(P::paramToBool(yes)) << yes;
        EXPECT_EQ(P::paramToBoolOrDefault(yes), 1) << yes;
    }
    for (const char* other : {"maybe", "", "2", "no ", "00"}) {
        EXPECT_TRUE(P::paramToBool(other)) << other;
        EXPECT_EQ(P::paramToBoolOrDefault(other), -1) << other;
    }

    EXPECT_FLOAT_EQ(P::paramToFloat("2.5e1x"), 25.0f);
    EXPECT_EQ(P::paramToFloat("abc"), 0.0f);
    EXPECT_EQ(P::paramToFloat(nullptr), 0.0f);
    EXPECT_EQ(P::paramToInt("2.9"), 2);
    EXPECT_EQ(P::paramToInt("-2.9"), -2);
    EXPECT_EQ(P::paramToInt(" 7"), 7);
    EXPECT_EQ(P::paramToInt("x"), 0);
    EXPECT_EQ(P::paramToInt("nan"), 0);
    EXPECT_EQ(P::paramToInt("1e30"), 2147483647);
    EXPECT_EQ(P::paramToInt("-inf"), -2147483647 - 1);
}

} // namespace
} // namespace neq::test

namespace neq::test {
namespace {

using P = VDGenericConfigFileParser;

struct Lookup {
    std::string value;
    bool found;
};

Lookup find(const std::string& path, const char* token) {
    bool found = true;
    const VDString value =
        P::findTokenInConfigFile(VDString(path.c_str()), VDString(token), &found);
    return {value.c_str(), found};
}

// The file's text after replacing token with value, and whether an entry was there.
struct Replaced {
    bool written;
    bool found;
    std::string text;
};

Replaced replace(const std::string& path, const char* token, const char* value) {
    bool found = true;
    const bool written = P::replaceTokenInConfigFile(VDString(path.c_str()), VDString(token),
                                                     VDString(value), &found);
    return {written, found, fileExists(path) ? readFile(path) : std::string()};
}

TEST(ConfigEntry, FindTakesTheFirstMatchingKeyIgnoringCase) {
    TempDir dir;
    const std::string path = dir.file("NeQ_Config.txt");
    writeFile(path, "\n  # comment\nother = 1\r\n  Path\t=  \"/Applications/My App\"  \n"
                    "PATH = second\nEMPTY =\nQUOTE = \"\nLAST = no newline");
    EXPECT_EQ(find(path, "path").value, "/Applications/My App");
    EXPECT_TRUE(find(path, "path").found);
    EXPECT_EQ(find(path, "OTHER").value, "1");
    const Lookup empty = find(path, "empty");
    EXPECT_EQ(empty.value, "");
    EXPECT_TRUE(empty.found);
    EXPECT_EQ(find(path, "QUOTE").value, "\"");
    EXPECT_EQ(find(path, "last").value, "no newline");
    const Lookup missing = find(path, "MISSING");
    EXPECT_EQ(missing.value, "");
    EXPECT_FALSE(missing.found);
    EXPECT_FALSE(find(dir.file("absent"), "PATH").found);
    EXPECT_FALSE(find(dir.path(), "PATH").found);
    EXPECT_EQ(P::findTokenInConfigFile(VDString(path.c_str()), VDString("PATH"), nullptr),
              VDString("/Applications/My App"));
}

TEST(ConfigEntry, LinesWithAnEmptyKeyRepeatThePreviousKey) {
    TempDir dir;
    const std::string path = dir.file("c.txt");
    // Only one pair of quotes is removed, and only when both ends hold one.
    writeFile(path, "= orphan\nA = \"\"x\"\"\n   \n= 2\n");
    // Before any key the key is empty, so an empty token matches the first line.
    const Lookup first = find(path, "");
    EXPECT_TRUE(first.found);
    EXPECT_EQ(first.value, "");
    EXPECT_EQ(find(path, "a").value, "\"x\"");
}

TEST(ConfigEntry, ReplaceMovesTheEntryToTheFirstLine) {
    TempDir dir;
    const std::string path = dir.file("c.txt");
    writeFile(path, "path = 1\nOTHER = 2\n");
    Replaced r = replace(path, "PATH", "x");
    EXPECT_TRUE(r.written);
    EXPECT_TRUE(r.found);
    EXPECT_EQ(r.text, "PATH = x\nOTHER = 2\n");

    // Every line of the key goes, with a following empty-key line; the rest is kept byte
    // for byte, terminators and an unterminated last line included. Only "=" ends a key.
    writeFile(path,
              "A = 1\r\n\r\n  Path = 2\n = inherits PATH\nPATH=3\nPath: 4\nB = 4\n   \nC = 5");
    r = replace(path, "path", "\"/x y\"");
    EXPECT_TRUE(r.found);
    EXPECT_EQ(r.text, "PATH = \"/x y\"\nA = 1\r\n\r\nPath: 4\nB = 4\n   \nC = 5");

    // A missing entry is added on top; the value is written as given.
    r = replace(path, "new", "");
    EXPECT_TRUE(r.written);
    EXPECT_FALSE(r.found);
    EXPECT_EQ(r.text, "NEW = \nPATH = \"/x y\"\nA = 1\r\n\r\nPath: 4\nB = 4\n   \nC = 5");
}

// A line break would let a value write an entry of another key.
TEST(ConfigEntry, ReplaceRefusesLineBreaksInTokenOrValue) {
    TempDir dir;
    const std::string path = dir.file("c.txt");
    writeFile(path, "PATH = 1\n");
    for (const auto& [token, value] : std::vector<std::pair<const char*, const char*>>{
             {"PATH", "x\nOTHER = y"}, {"PATH", "x\r"}, {"PA\nTH", "x"}, {"\rPATH", "x"}}) {
        const Replaced r = replace(path, token, value);
        EXPECT_FALSE(r.written) << value;
        EXPECT_FALSE(r.found) << value;
        EXPECT_EQ(r.text, "PATH = 1\n") << value;
    }
    EXPECT_FALSE(replace(dir.file("new.txt"), "PATH", "a\nb").written);
    EXPECT_FALSE(fileExists(dir.file("new.txt")));
}

TEST(ConfigEntry, ReplaceCreatesTheFileButNoFolder) {
    TempDir dir;
    Replaced r = replace(dir.file("new.txt"), "Path", "v");
    EXPECT_TRUE(r.written);
    EXPECT_FALSE(r.found);
    EXPECT_EQ(r.text, "PATH = v\n");
    const mode_t mask = ::umask(0);
    ::umask(mask);
    EXPECT_EQ(modeOf(dir.file("new.txt")), 0666u & ~mask);

    EXPECT_FALSE(replace(dir.file("missing/c.txt"), "PATH", "v").written);
    EXPECT_FALSE(fileExists(dir.file("missing")));
    // A folder in the file's place is left alone.
    ::mkdir(dir.file("folder").c_str(), 0755);
    EXPECT_FALSE(P::replaceTokenInConfigFile(VDString(dir.file("folder").c_str()), VDString("PATH"),
                                             VDString("v"), nullptr));
    EXPECT_EQ(listFolder(dir.path()), (std::vector<std::string>{"folder", "new.txt"}));
}

TEST(ConfigEntry, ReplaceGoesThroughATemporaryFileKeepingModeAndLinks) {
    TempDir dir;
    const std::string path = dir.file("c.txt");
    writeFile(path, "A = 1\n");
    ::chmod(path.c_str(), 0640);
    struct stat before {};
    ::stat(path.c_str(), &before);
    EXPECT_TRUE(replace(path, "B", "2").written);
    struct stat after {};
    ::stat(path.c_str(), &after);
    EXPECT_NE(before.st_ino, after.st_ino) << "the file is replaced by a rename";
    EXPECT_EQ(modeOf(path), 0640u);
    EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{"c.txt"});

    // Through a symbolic link the file it leads to is replaced; the link stays.
    ASSERT_EQ(::symlink("c.txt", dir.file("link").c_str()), 0);
    EXPECT_TRUE(replace(dir.file("link"), "C", "3").written);
    struct stat link {};
    ::lstat(dir.file("link").c_str(), &link);
    EXPECT_TRUE(S_ISLNK(link.st_mode));
    EXPECT_EQ(readFile(path), "C = 3\nB = 2\nA = 1\n");
}

// A device is not a file to replace: it is written to.
TEST(ConfigEntry, ReplaceWritesDevicesDirectly) {
    EXPECT_TRUE(replace("/dev/null", "A", "1").written);
    struct stat null {};
    ::stat("/dev/null", &null);
    EXPECT_TRUE(S_ISCHR(null.st_mode));
}

TEST(ConfigEntry, ReplaceLeavesAReadOnlyFileAlone) {
    TempDir dir;
    ::chmod(dir.path().c_str(), 0777);
    const std::string path = dir.file("c.txt");
    writeFile(path, "A = 1\n");
    ::chmod(path.c_str(), 0444);
    EXPECT_TRUE(runInChild({std::nullopt, true}, [&] {
        return !P::replaceTokenInConfigFile(VDString(path.c_str()), VDString("A"), VDString("2"),
                                            nullptr);
    }));
    EXPECT_EQ(readFile(path), "A = 1\n");
    EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{"c.txt"});
}

} // namespace
} // namespace neq::test
