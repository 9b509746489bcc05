#include "bridge/vd_neq.h"

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

// Unset or empty, the variable leaves the standard names; set, it moves all of them. The
// root, however spelt, would spread the tree over "/": it is refused, leaving every name
// empty (no folder to use).
TEST(SharedFolder, TheVariableMovesEveryNameButTheRootIsRefused) {
    TempDir dir;
    ASSERT_EQ(::symlink("/", dir.file("root").c_str()), 0);
    const std::string link = dir.file("root");
    const std::pair<const char*, const char*> cases[] = {{nullptr, "/Users/Shared/Vandrel"},
                                                         {"", "/Users/Shared/Vandrel"},
                                                         {"/srv/bridge", "/srv/bridge"},
                                                         {"/srv/bridge///", "/srv/bridge"},
                                                         {"relative/dir/", "relative/dir"},
                                                         {" ", " "},
                                                         {"/tmp/../srv", "/tmp/../srv"},
                                                         {"..", ".."},
                                                         {"/", ""},
                                                         {"//", ""},
                                                         {"/./", ""},
                                                         {"/tmp/..", ""},
                                                         {"/..//.", ""},
                                                         {link.c_str(), ""}};
    for (const auto& [value, folder] : cases) {
        SCOPED_TRACE(value ? value : "(unset)");
        const bridge::SharedFolderNames names = bridge::sharedFolderNamesFor(value);
        const std::string root = folder;
        const auto under = [&root](const char* name) { return root.empty() ? "" : root + name; };
        EXPECT_EQ(names.rootRefused, root.empty());
        EXPECT_EQ(str(names.publicFolder), root);
        EXPECT_EQ(str(names.appsFolder), under("/NeQApps"));
        EXPECT_EQ(str(names.brushFolder), under("/NeQBrush"));
        EXPECT_EQ(str(names.projectsFolder), under("/NeQProjects"));
        EXPECT_EQ(str(names.defaultProjectFolder), under("/NeQProjects/Default"));
    }
}

// The names this process loaded with (the variable is normally unset under test; the
// tool's tests run it with the variable set). An application is one plain folder name
// under NeQApps; anything else would lead out of it, so its paths are empty, nothing is
// found and nothing written.
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

} // namespace
} // namespace neq::test
