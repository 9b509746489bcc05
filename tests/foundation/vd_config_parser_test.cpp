#include "foundation/vd_config_parser.h"
#include "support/case_table.h"
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

// Each operation of the case table, from its arguments to its result as text.
std::string operate(const CaseRow& a) {
    const std::string& op = a[0];
    TempDir dir;
    const std::string path = dir.file("c.txt");
    if (op == "dispatch" || op == "find" || (op == "replace" && a[1] != "none"))
        writeFile(path, a[1]);
    if (op == "dispatch") {
        P parser;
        const bool reversed = a[2] == "reversed";
        parser.addToken(reversed ? "NameX" : "name", reversed ? record<kNameX> : record<kName>);
        parser.addToken(reversed ? "name" : "NameX", reversed ? record<kName> : record<kNameX>);
        parser.addToken("PATH", record<kPath>);
        Calls calls;
        EXPECT_TRUE(parser.parseFile(path.c_str(), &calls));
        std::string text;
        for (const std::string& call : calls)
            text += call + ";";
        return text;
    }
    if (op == "parseALine") {
        VDString key("old key"), value("old value");
        const bool ok = P::parseALine(a[1].data(), a[1].data() + a[1].size(), key, value);
        return ok ? std::string(key.c_str()) + "|" + value.c_str()
               : key == VDString("old key") && value == VDString("old value") ? "refused"
                                                                              : "changed";
    }
    if (op == "endOfLine" || op == "nextLine") {
        char* text = a[2] == "null" ? nullptr : const_cast<char*>(a[1].c_str()) + std::stoi(a[2]);
        const char* found = op == "endOfLine" ? P::findEndOfLine(text) : P::findNextLine(text);
        return found ? std::to_string(found - a[1].c_str()) : "null";
    }
    if (op == "parseFile") {
        if (a[1] != "(none)") writeFile(path, a[1]);
        return std::to_string(P().parseFile(path.c_str(), nullptr));
    }
    if (op == "paramToString") return P::paramToString(a[1].c_str()).c_str();
    if (op == "paramToBool")
        return std::to_string(P::paramToBool(a[1].c_str())) + " " +
               std::to_string(P::paramToBoolOrDefault(a[1].c_str()));
    if (op == "paramToFloat") return VDString::format("%g", P::paramToFloat(a[1].c_str())).c_str();
    if (op == "paramToInt") return std::to_string(P::paramToInt(a[1].c_str()));
    bool found = true; // rows where nothing is found show that it is written
    if (op == "find") {
        const VDString value =
            P::findTokenInConfigFile(VDString(path.c_str()), VDString(a[2].c_str()), &found);
        return found ? value.c_str() : value.isEmpty() ? "missing" : "value but not found";
    }
    const bool written = P::replaceTokenInConfigFile(VDString(path.c_str()), VDString(a[2].c_str()),
                                                     VDString(a[3].c_str()), &found);
    EXPECT_LE(listFolder(dir.path()).size(), 1u) << "no temporary left";
    return std::to_string(written) + " " + std::to_string(found) + "|" +
           (fileExists(path) ? readFile(path) : "none");
}

TEST(ConfigParser, OperationsOfTheCaseTable) {
    for (CaseRow row : readCaseTable("foundation/vd_config_parser_cases.txt")) {
        std::string expected = row.back();
        row.pop_back();
        if (row[0] == "replace") expected = row.back() + "|" + expected, row.pop_back();
        EXPECT_EQ(operate(row), expected) << testing::PrintToString(row);
    }
    EXPECT_EQ(P::paramToFloat(nullptr), 0.0f);
    EXPECT_TRUE(P::paramToString(nullptr).isEmpty());
    bool found = true;
    EXPECT_TRUE(P::findTokenInConfigFile(VDString("/none/c.txt"), VDString("A"), &found).isEmpty());
    EXPECT_FALSE(found);
    EXPECT_TRUE(
        P::findTokenInConfigFile(VDString("/none/c.txt"), VDString("A"), nullptr).isEmpty());
}

TEST(ConfigParser, CopiesKeepTheKeywordOrder) {
    P parser, assigned;
    parser.addToken("A", record<kName>);
    parser.addToken("AB", record<kNameX>);
    assigned.addToken("Z", record<kPath>);
    assigned = parser;
    P copy(parser);
    for (const P* p : {&copy, &assigned}) {
        EXPECT_NE(p->getTokens(), parser.getTokens()) << "tokens of its own";
        std::string keywords;
        for (const VDGenericConfigFileToken* t = p->getTokens(); t != nullptr; t = t->m_next)
            keywords += std::string(t->m_keyword.c_str()) + ";";
        EXPECT_EQ(keywords, "AB;A;");
    }
}

// The replacement on the file layer: made with the usual mode, renamed into place keeping
// its mode, through a link that stays, a device written to, a read-only file left alone.
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
