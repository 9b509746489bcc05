#include "bridge/vd_neq_app.h"

#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

std::string str(const VDString& s) {
    return s.c_str();
}

// A parser that has read text from a file.
struct Parsed {
    explicit Parsed(const std::string& text) {
        writeFile(dir.file("app.txt"), text);
        ok = parser.parseFile(dir.file("app.txt").c_str());
    }
    TempDir dir;
    VDNeQAppParser parser;
    bool ok = false;
};

// How each key reads, through the tool, is tests/data/cli/transcripts/app_description_keys.txt.
TEST(NeQApp, EveryFlagKeySetsAndClearsItsOwnBit) {
    std::uint32_t all = 0;
    int flagKeys = 0;
    for (const bridge::AppKey& key : bridge::kAppKeys) {
        if (key.flag == 0) continue;
        ++flagKeys;
        EXPECT_EQ(all & key.flag, 0u) << key.key;
        all |= key.flag;
        const Parsed on(std::string(key.key) + " yes\n");
        EXPECT_EQ(on.parser.m_flags, key.flag) << key.key;
        const Parsed off(std::string(key.key) + " yes\n" + key.key + " #F\n");
        EXPECT_EQ(off.parser.m_flags, 0u) << key.key;
    }
    EXPECT_EQ(flagKeys, 26);
    EXPECT_EQ(all, 0x03FFFFFFu);
}

TEST(NeQApp, KeysAreRegisteredInTheFormatsOrder) {
    // The token list is last-in first-out: walking it gives the keys backwards.
    std::string registered;
    VDNeQAppParser parser;
    for (const VDGenericConfigFileToken* t = parser.getParser().getTokens(); t; t = t->m_next)
        registered = str(t->m_keyword) + (registered.empty() ? "" : " ") + registered;
    EXPECT_EQ(registered + "\n", readTestData("bridge/app_keys.txt"));
    // So the longer key wins over its prefix.
    EXPECT_EQ(Parsed("normal_map_flip_xy: on\n").parser.m_flags, 0x00010000u);
}

TEST(NeQApp, DefaultsComeBackBeforeEachParse) {
    VDNeQAppParser parser;
    EXPECT_EQ(parser.m_version, 1);
    EXPECT_EQ(parser.m_flags, 0u);
    TempDir dir;
    writeFile(dir.file("a.txt"), "NAME A\nNEQ_VERSION 5\nIMPORT_FLIP_Z 1\n");
    writeFile(dir.file("b.txt"), "EXTENSION .ma\n");
    writeFile(dir.file("empty.txt"), "");
    ASSERT_TRUE(parser.parseFile(dir.file("a.txt").c_str()));
    ASSERT_TRUE(parser.parseFile(dir.file("b.txt").c_str()));
    EXPECT_TRUE(parser.m_name.isEmpty());
    EXPECT_EQ(str(parser.m_extension), ".ma");
    EXPECT_EQ(parser.m_version, 1);
    EXPECT_EQ(parser.m_flags, 0u);

    // A missing or empty file leaves the record cleared.
    parser.m_name.set("kept");
    EXPECT_FALSE(parser.parseFile(dir.file("empty.txt").c_str()));
    EXPECT_TRUE(parser.m_name.isEmpty());
    EXPECT_FALSE(parser.parseFile(dir.file("none.txt").c_str()));
}

// The line splitter the descriptions are read with: a line without a bound is no line.
TEST(NeQApp, LinesWithoutABoundSplitIntoNothing) {
    const char line[] = "NAME = x";
    VDString key("kept"), value("kept");
    EXPECT_FALSE(VDGenericConfigFileParser::parseALine(line, nullptr, key, value));
    EXPECT_FALSE(VDGenericConfigFileParser::parseALine(nullptr, line + 8, key, value));
    EXPECT_EQ(str(key) + str(value), "keptkept");
    EXPECT_TRUE(VDGenericConfigFileParser::parseALine(line, line + 8, key, value));
}

TEST(NeQApp, CopiesAndHandlersWithoutARecord) {
    VDNeQAppParser source;
    source.m_id.set("maya");
    source.m_name.set("Maya");
    source.m_version = 7;
    source.m_flags = 0x5;

    VDNeQAppParser copy(source);
    EXPECT_EQ(str(copy.m_id), "maya");
    EXPECT_EQ(copy.m_version, 7);
    EXPECT_EQ(copy.m_flags, 0x5u);
    EXPECT_NE(copy.getParser().getTokens(), source.getParser().getTokens());
    source.m_name.set("changed");
    EXPECT_EQ(str(copy.m_name), "Maya");

    VDNeQAppParser assigned;
    const VDGenericConfigFileToken* ownTokens = assigned.getParser().getTokens();
    assigned.m_extension.set(".x");
    assigned = copy;
    EXPECT_EQ(str(assigned.m_name), "Maya");
    EXPECT_TRUE(assigned.m_extension.isEmpty());
    EXPECT_EQ(assigned.getParser().getTokens(), ownTokens);

    VDNeQApp record = copy;
    record.clear();
    EXPECT_TRUE(record.m_id.isEmpty());
    EXPECT_EQ(record.m_version, 1);
    EXPECT_EQ(record.m_flags, 0u);

    for (const bridge::AppKey& key : bridge::kAppKeys)
        key.handler("1", nullptr); // ignored, no crash
}

} // namespace
} // namespace neq::test
