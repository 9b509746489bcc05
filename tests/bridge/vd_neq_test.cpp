// The shared folder's names and a target application's description.

#include "bridge/vd_neq.h"
#include "bridge/vd_neq_app.h"

#include "support/case_table.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <string>

namespace neq::test {
namespace {

std::string str(const VDString& s) {
    return s.c_str();
}

// The root, however spelt (a link to it too), would spread the tree over "/".
TEST(SharedFolder, TheVariableMovesEveryNameButTheRootIsRefused) {
    TempDir dir;
    ASSERT_EQ(::symlink("/", dir.file("root").c_str()), 0);
    std::vector<CaseRow> rows = readCaseTable("bridge/shared_folders.txt");
    rows.push_back({dir.file("root"), ""});
    for (const CaseRow& row : rows) {
        const std::string &value = row[0], &root = row[1];
        SCOPED_TRACE(value);
        const auto names =
            bridge::sharedFolderNamesFor(value == "(unset)" ? nullptr : value.c_str());
        const auto under = [&root](const char* name) { return root.empty() ? "" : root + name; };
        EXPECT_EQ(names.rootRefused, root.empty());
        EXPECT_EQ(str(names.publicFolder), root);
        EXPECT_EQ(str(names.appsFolder), under("/NeQApps"));
        EXPECT_EQ(str(names.brushFolder), under("/NeQBrush"));
        EXPECT_EQ(str(names.projectsFolder), under("/NeQProjects"));
        EXPECT_EQ(str(names.defaultProjectFolder), under("/NeQProjects/Default"));
    }
}

// An application name other than one plain folder name would lead out of NeQApps.
TEST(SharedFolder, PathBuildersJoinTheLoadedNamesAndPlainAppNames) {
    const std::string root =
        str(bridge::sharedFolderNamesFor(std::getenv("NEQBRIDGE_PUBLIC_FOLDER")).publicFolder);
    const VDString maya("Maya");
    const std::pair<VDString, const char*> paths[] = {
        {VDNeQ::s_publicFolder, ""},
        {VDNeQ::s_NeQAppsFolder, "/NeQApps"},
        {VDNeQ::s_NeQBrushFolder, "/NeQBrush"},
        {VDNeQ::s_NeQProjectsFolder, "/NeQProjects"},
        {VDNeQ::s_NeQDefaultProjectFolder, "/NeQProjects/Default"},
        {VDNeQ::getAppFile(maya, VDString("NeQ_Config.txt")), "/NeQApps/Maya/NeQ_Config.txt"},
        {VDNeQ::getAppFolder(maya), "/NeQApps/Maya"},
        {VDNeQ::getClayvoFile(VDString("x.txt")), "/NeQBrush/x.txt"},
        {VDNeQ::getDefaultProjectFile(VDString("p.txt")), "/NeQProjects/Default/p.txt"},
        {VDNeQ::getApplicationFile(), "/NeQBrush/NeQ_Application.txt"},
        {VDNeQ::getObjectListFile(), "/NeQBrush/NeQ_ObjectList.txt"},
        {VDNeQ::getProjectPathFile(), "/NeQBrush/NeQ_ProjectPath.txt"},
        {VDNeQ::getObjectPathFile(), "/NeQBrush/NeQ_ObjectPath.txt"}};
    for (const auto& [path, suffix] : paths)
        EXPECT_EQ(str(path), root + suffix);
    EXPECT_EQ(str(VDNeQ::s_folderSeparator), "/");

    for (const char* app : {"Maya", "...", "a.b", "my app"})
        EXPECT_TRUE(VDNeQ::isAppName(VDString(app))) << app;
    for (const char* app : {"../../trav", "..", ".", "", "a/b", "a\\b", "/abs"}) {
        const VDString name(app);
        EXPECT_FALSE(VDNeQ::isAppName(name)) << app;
        EXPECT_EQ(str(VDNeQ::getAppFolder(name)), "") << app;
        EXPECT_EQ(str(VDNeQ::getAppFile(name, VDString("NeQ_Config.txt"))), "") << app;
        bool found = true;
        EXPECT_EQ(str(VDNeQ::readAppPath(name, &found)), "") << app;
        EXPECT_FALSE(found) << app;
        EXPECT_FALSE(VDNeQ::writeAppPath(name, VDString("/x"))) << app;
    }
}

TEST(SharedFolder, PathEntriesRoundTripQuoted) {
    TempDir dir;
    const VDString config(dir.file("NeQ_Config.txt").c_str());
    writeFile(config.c_str(), "OTHER = 1\npath = \"/old\"\n");
    ASSERT_TRUE(bridge::writePathEntry(config, VDString("/Applications/Clay vo.app")));
    EXPECT_EQ(readFile(config.c_str()), "PATH = \"/Applications/Clay vo.app\"\nOTHER = 1\n");
    bool found = false;
    EXPECT_EQ(str(bridge::readPathEntry(config, &found)), "/Applications/Clay vo.app");
    EXPECT_TRUE(found);

    // Quotes removed by the lookup are not removed twice, unless a second pair is there.
    const std::pair<const char*, const char*> entries[] = {{"PATH = \"\"/twice\"\"\n", "/twice"},
                                                           {"PATH = /plain\n", "/plain"}};
    for (const auto& [text, path] : entries) {
        writeFile(config.c_str(), text);
        EXPECT_EQ(str(bridge::readPathEntry(config, nullptr)), path);
    }

    // No folder is made: the writer fails and the reader finds nothing.
    const VDString missing(dir.file("NeQApps/Maya/NeQ_Config.txt").c_str());
    EXPECT_FALSE(bridge::writePathEntry(missing, VDString("/x")));
    found = true;
    EXPECT_EQ(str(bridge::readPathEntry(missing, &found)), "");
    EXPECT_FALSE(found);
    EXPECT_FALSE(fileExists(dir.file("NeQApps")));
}

// How each key reads, through the tool: tests/data/cli/transcripts/app_*.txt.
TEST(NeQApp, FlagKeysOwnDistinctBitsAndRegisterInTheFormatsOrder) {
    std::uint32_t all = 0;
    for (const bridge::AppKey& key : bridge::kAppKeys) {
        EXPECT_EQ(all & key.flag, 0u) << key.key;
        all |= key.flag;
        key.handler("1", nullptr); // without a record: ignored, no crash
    }
    EXPECT_EQ(all, 0x03FFFFFFu);
    // The token list is last-in first-out: walking it gives the keys backwards.
    std::string registered;
    VDNeQAppParser parser;
    for (const VDGenericConfigFileToken* t = parser.getParser().getTokens(); t; t = t->m_next)
        registered = str(t->m_keyword) + (registered.empty() ? "" : " ") + registered;
    EXPECT_EQ(registered + "\n", readTestData("bridge/app_keys.txt"));
}

TEST(NeQApp, DefaultsComeBackBeforeEachParse) {
    VDNeQAppParser parser;
    EXPECT_EQ(parser.m_version, 1);
    TempDir dir;
    writeFile(dir.file("a.txt"), "NAME A\nNEQ_VERSION 5\nIMPORT_FLIP_Z 1\n");
    writeFile(dir.file("b.txt"), "EXTENSION .ma\n");
    writeFile(dir.file("empty.txt"), "");
    ASSERT_TRUE(parser.parseFile(dir.file("a.txt").c_str()));
    ASSERT_TRUE(parser.parseFile(dir.file("b.txt").c_str()));
    EXPECT_EQ(str(parser.m_name) + str(parser.m_extension), ".ma");
    EXPECT_EQ(parser.m_version, 1);
    EXPECT_EQ(parser.m_flags, 0u);
    parser.m_name.set("kept"); // a missing or empty file leaves the record cleared
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

// A copy owns its own token list; an assignment copies the record and keeps the list.
TEST(NeQApp, CopiesKeepTheirOwnTokens) {
    VDNeQAppParser source;
    source.m_id.set("maya");
    source.m_name.set("Maya");
    source.m_version = 7;
    source.m_flags = 0x5;
    VDNeQAppParser copy(source), assigned;
    EXPECT_NE(copy.getParser().getTokens(), source.getParser().getTokens());
    source.m_name.set("changed");
    const VDGenericConfigFileToken* ownTokens = assigned.getParser().getTokens();
    assigned.m_extension.set(".x");
    assigned = copy;
    EXPECT_EQ(assigned.getParser().getTokens(), ownTokens);
    const auto fields = [](const VDNeQApp& record) {
        return str(record.m_id) + str(record.m_name) + str(record.m_extension) +
               std::to_string(record.m_version) + std::to_string(record.m_flags);
    };
    EXPECT_EQ(fields(copy), "mayaMaya75");
    EXPECT_EQ(fields(assigned), "mayaMaya75");
    VDNeQApp record = copy;
    record.clear();
    EXPECT_EQ(fields(record), "10");
}

} // namespace
} // namespace neq::test
