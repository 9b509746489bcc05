#include "bridge/path_entry.h"
#include "bridge/shared_folder_names.h"
#include "bridge/vd_neq.h"

#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace neq::test {
namespace {

using bridge::SharedFolderNames;
using bridge::sharedFolderNamesFor;

std::string str(const VDString& s) {
    return s.c_str();
}

// Unset or empty, the variable leaves the standard names; set, it moves all of them.
TEST(SharedFolder, TheVariableMovesEveryName) {
    const std::pair<const char*, const char*> cases[] = {
        {nullptr, "/Users/Shared/Vandrel"}, {"", "/Users/Shared/Vandrel"},
        {"/srv/bridge", "/srv/bridge"},     {"/srv/bridge///", "/srv/bridge"},
        {"relative/dir/", "relative/dir"},  {" ", " "}};
    for (const auto& [value, folder] : cases) {
        SCOPED_TRACE(value ? value : "(unset)");
        const SharedFolderNames names = sharedFolderNamesFor(value);
        const std::string root = folder;
        EXPECT_EQ(str(names.publicFolder), root);
        EXPECT_EQ(str(names.folderSeparator), "/");
        EXPECT_EQ(str(names.appsFolder), root + "/NeQApps");
        EXPECT_EQ(str(names.brushFolder), root + "/NeQBrush");
        EXPECT_EQ(str(names.projectsFolder), root + "/NeQProjects");
        EXPECT_EQ(str(names.defaultProjectFolder), root + "/NeQProjects/Default");
    }
}

// The root, however spelt, would spread the tree over "/": it is refused, leaving every
// name empty (no folder to use).
TEST(SharedFolder, TheRootIsRefused) {
    TempDir dir;
    ASSERT_EQ(::symlink("/", dir.file("root").c_str()), 0);
    for (const std::string& value :
         std::vector<std::string>{"/", "//", "/./", "/tmp/..", "/..//.", dir.file("root")}) {
        const SharedFolderNames names = sharedFolderNamesFor(value.c_str());
        EXPECT_TRUE(names.rootRefused) << value;
        for (const VDString* name : {&names.publicFolder, &names.appsFolder, &names.brushFolder,
                                     &names.projectsFolder, &names.defaultProjectFolder})
            EXPECT_EQ(str(*name), "") << value;
    }
    for (const char* value : {"/tmp", "/tmp/../srv", "..", "."})
        EXPECT_FALSE(sharedFolderNamesFor(value).rootRefused) << value;
}

// An application is one plain folder name under NeQApps; anything else would lead out
// of it, so its paths are empty, nothing is found and nothing written.
TEST(SharedFolder, ApplicationNamesAreOnePlainFolderName) {
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
    for (const char* app : {"Maya", "...", "a.b", "my app"})
        EXPECT_TRUE(VDNeQ::isAppName(VDString(app))) << app;
}

// The names this process loaded with (the variable is normally unset under test; the
// tool's tests run it with the variable set).
TEST(SharedFolder, PathBuildersJoinTheLoadedNames) {
    const SharedFolderNames loaded = sharedFolderNamesFor(std::getenv("NEQBRIDGE_PUBLIC_FOLDER"));
    const std::string root = str(loaded.publicFolder);
    EXPECT_EQ(str(VDNeQ::s_publicFolder), root);
    EXPECT_EQ(str(VDNeQ::s_folderSeparator), "/");
    EXPECT_EQ(str(VDNeQ::s_NeQAppsFolder), root + "/NeQApps");
    EXPECT_EQ(str(VDNeQ::s_NeQBrushFolder), root + "/NeQBrush");
    EXPECT_EQ(str(VDNeQ::s_NeQProjectsFolder), root + "/NeQProjects");
    EXPECT_EQ(str(VDNeQ::s_NeQDefaultProjectFolder), root + "/NeQProjects/Default");

    EXPECT_EQ(str(VDNeQ::getAppFile(VDString("Maya"), VDString("NeQ_Config.txt"))),
              root + "/NeQApps/Maya/NeQ_Config.txt");
    EXPECT_EQ(str(VDNeQ::getAppFolder(VDString("Maya"))), root + "/NeQApps/Maya");
    EXPECT_EQ(str(VDNeQ::getClayvoFile(VDString("x.txt"))), root + "/NeQBrush/x.txt");
    EXPECT_EQ(str(VDNeQ::getDefaultProjectFile(VDString("p.txt"))),
              root + "/NeQProjects/Default/p.txt");
    EXPECT_EQ(str(VDNeQ::getApplicationFile()), root + "/NeQBrush/NeQ_Application.txt");
    EXPECT_EQ(str(VDNeQ::getObjectListFile()), root + "/NeQBrush/NeQ_ObjectList.txt");
    EXPECT_EQ(str(VDNeQ::getProjectPathFile()), root + "/NeQBrush/NeQ_ProjectPath.txt");
    EXPECT_EQ(str(VDNeQ::getObjectPathFile()), root + "/NeQBrush/NeQ_ObjectPath.txt");
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
    writeFile(config.c_str(), "PATH = \"\"/twice\"\"\n");
    EXPECT_EQ(str(bridge::readPathEntry(config, nullptr)), "/twice");
    writeFile(config.c_str(), "PATH = /plain\n");
    EXPECT_EQ(str(bridge::readPathEntry(config, nullptr)), "/plain");

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
