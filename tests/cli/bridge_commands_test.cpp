#include "support/temp_dir.h"
#include "support/tool_run.h"
#include "tooling/neq_writer.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace neq::test {
namespace {

// The tool with the shared folder moved into dir.
std::string movedTo(const TempDir& dir) {
    return "NEQBRIDGE_PUBLIC_FOLDER='" + dir.path() + "/'";
}

TEST(ConfigCommand, GetsAndSetsOneEntry) {
    TempDir dir;
    const std::string file = dir.file("NeQ_Config.txt");
    writeFile(file, "other = 1\npath = \"/Applications/App.app\"\n");
    ToolRun run = runTool("config get " + file + " PATH");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "/Applications/App.app\n");

    run = runTool("config set " + file + " Path '\"/opt/app\"'");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "replaced 'Path' in '" + file + "'\n");
    EXPECT_EQ(readFile(file), "PATH = \"/opt/app\"\nother = 1\n");
    EXPECT_EQ(runTool("config set -q " + dir.file("new.txt") + " k v").errors, "");
    EXPECT_EQ(readFile(dir.file("new.txt")), "K = v\n");
    EXPECT_EQ(runTool("config get " + dir.file("new.txt") + " k").output, "v\n");

    expectRuns({
        {"config get " + file + " missing", 1,
         "neqbridge config: no key 'missing' in '" + file + "'"},
        {"config get " + dir.file("none") + " K", 1,
         "neqbridge config: cannot open input '" + dir.file("none") +
             "': No such file or directory"},
        {"config set " + dir.file("no/c.txt") + " K v", 1,
         "cannot write '" + dir.file("no/c.txt") + "': No such file or directory"},
        {"config set " + dir.path() + " K v", 1, "is a folder, not a file"},
        {"config get " + file, 2, "neqbridge config: missing KEY"},
        {"config set " + file + " K", 2, "missing VALUE"},
        {"config get " + file + " 'a=b'", 2, "holds '=' or a line end"},
        {"config set " + file + " ' K' v", 2, "starts or ends with a blank"},
        {"config set " + file + " K \"$(printf 'a\\nb')\"", 2, "VALUE must be one line"},
        {"config put " + file + " K", 2, "unknown action 'put'"},
    });
    EXPECT_EQ(readFile(file), "PATH = \"/opt/app\"\nother = 1\n");
    EXPECT_FALSE(fileExists(dir.file("no")));
}

const char kDescription[] = "NAME \"Maya\"\nNEQ_VERSION 2\nIMPORT_FLIP_Y True\n"
                            "NORMAL_MAP_FLIP_XY 1\nEDIT_COMMAND run \"x\"\n";

// Run inside the folder, so that the record names the file as given.
TEST(AppCommand, PrintsTheRecordAsTextOrJson) {
    TempDir dir;
    const std::string inDir = "cd " + dir.path() + " &&";
    writeFile(dir.file("app.txt"), kDescription);
    for (const char* json : {"", "--json "}) {
        const ToolRun run = runTool("app " + std::string(json) + "app.txt", false, inDir);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.output, readTestData(*json ? "cli/app_record.json" : "cli/app_record.txt"));
        EXPECT_EQ(run.errors, "");
    }

    writeFile(dir.file("cut.txt"), "NAME a\nNEQ_VERSION 3");
    const ToolRun run = runTool("app cut.txt", false, inDir);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("version         1\n"), std::string::npos);
    EXPECT_EQ(
        run.errors,
        "neqbridge app: warning: the last line of 'cut.txt' has no line end and is ignored\n");

    writeFile(dir.file("empty.txt"), "");
    expectRuns({{"app " + dir.file("empty.txt"), 1,
                 "neqbridge app: '" + dir.file("empty.txt") + "' is empty"},
                {"app " + dir.file("none.txt"), 1, "cannot open input"},
                {"app " + dir.path(), 1, "is a folder, not a file"},
                {"app", 2, "missing FILE"}});
}

TEST(BridgeCommand, PathsFollowTheVariableWhenTheLibraryLoads) {
    const ToolRun standard = runTool("bridge paths", false, "env -u NEQBRIDGE_PUBLIC_FOLDER");
    EXPECT_EQ(standard.exitCode, 0);
    EXPECT_NE(standard.output.find(" /Users/Shared/Vandrel/NeQProjects/Default\n"),
              std::string::npos);

    TempDir dir;
    ::mkdir(dir.file("NeQBrush").c_str(), 0755);
    const ToolRun moved = runTool("bridge paths", false, movedTo(dir));
    EXPECT_EQ(moved.exitCode, 0);
    EXPECT_EQ(moved.output,
              "public folder    exists   " + dir.path() + "\n" + "host             exists   " +
                  dir.path() + "/NeQBrush\n" + "applications     missing  " + dir.path() +
                  "/NeQApps\n" + "projects         missing  " + dir.path() + "/NeQProjects\n" +
                  "default project  missing  " + dir.path() + "/NeQProjects/Default\n");
    EXPECT_EQ(moved.errors, "public folder moved by NEQBRIDGE_PUBLIC_FOLDER\n");
    EXPECT_EQ(runTool("bridge paths", false, "NEQBRIDGE_PUBLIC_FOLDER=").output, standard.output);
}

TEST(BridgeCommand, ReadsAndWritesInstalledLocations) {
    TempDir dir;
    const std::string env = movedTo(dir);
    ::mkdir(dir.file("NeQBrush").c_str(), 0755);
    ::mkdir(dir.file("NeQApps").c_str(), 0755);
    ::mkdir(dir.file("NeQApps/Maya").c_str(), 0755);

    ToolRun run = runTool("bridge host-path '/Applications/Clay vo.app'", false, env);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(readFile(dir.file("NeQBrush/NeQ_Config.txt")),
              "PATH = \"/Applications/Clay vo.app\"\n");
    EXPECT_EQ(runTool("bridge host-path", false, env).output, "/Applications/Clay vo.app\n");

    EXPECT_EQ(runTool("bridge app-path Maya /opt/maya", false, env).exitCode, 0);
    EXPECT_EQ(readFile(dir.file("NeQApps/Maya/NeQ_Config.txt")), "PATH = \"/opt/maya\"\n");
    EXPECT_EQ(runTool("bridge app-path Maya", false, env).output, "/opt/maya\n");

    expectRuns({{"bridge app-path Blender", 1,
                 "neqbridge bridge: no 'Blender' path recorded in '" + dir.path() +
                     "/NeQApps/Blender/NeQ_Config.txt'"},
                {"bridge app-path Blender /x", 1, "does not exist (the bridge never creates it)"},
                {"bridge app-path ../NeQBrush /x", 2, "APP must be a folder name"},
                {"bridge app-path", 2, "missing APP"},
                {"bridge host-path ''", 2, "PATH must be one line"},
                {"bridge paths extra", 2, "neqbridge bridge:"},
                {"bridge fly", 2, "unknown action 'fly'"}},
               env);
    EXPECT_FALSE(fileExists(dir.file("NeQApps/Blender")));
    EXPECT_EQ(readFile(dir.file("NeQBrush/NeQ_Config.txt")),
              "PATH = \"/Applications/Clay vo.app\"\n");

    // The root as the shared folder would spread the tree over the whole system.
    for (const char* root : {"/", "//", "/tmp/.."})
        expectRuns({{"bridge paths", 1,
                     "neqbridge bridge: NEQBRIDGE_PUBLIC_FOLDER '" + std::string(root) +
                         "' is the root folder; the shared folder tree needs a folder of its "
                         "own"},
                    {"bridge init /", 1, "neqbridge bridge: DIR '/' is the root folder"}},
                   std::string("NEQBRIDGE_PUBLIC_FOLDER=") + root);

    TempDir empty;
    expectRuns({{"bridge host-path", 1, "no host path recorded"},
                {"bridge host-path /x", 1, "the folder '" + empty.path() + "/NeQBrush/'"}},
               movedTo(empty));
    EXPECT_FALSE(fileExists(empty.file("NeQBrush")));
}

// Blender registered as a stand-in script that records its arguments and, like the
// add-on's send step, puts an edited mesh into the project and lists it.
TEST(BridgeCommand, SendsToAnApplicationAndReceivesWhatComesBack) {
    TempDir dir;
    const std::string env = movedTo(dir);
    ASSERT_EQ(runTool("bridge init", false, env).exitCode, 0);
    const std::string project = dir.file("NeQProjects/Default/");
    writeFile(dir.file("blender.sh"),
              "[ -f \"$0.fails\" ] && exit 3\nprintf '%s|' \"$@\" > \"$0.tmp\"\n"
              "mv \"$0.tmp\" \"$0.args\"\n"
              "printf edited > '" +
                  project +
                  "edited.NeQ'\n"
                  "printf 'edited\\r\\n\\n' > '" +
                  dir.file("NeQBrush/NeQ_ObjectList.txt") + "'\n");
    meshfile::Mesh triangle;
    triangle.vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    triangle.faces = {{0, 1, 2, -1}};
    ASSERT_TRUE(
        meshfile::writeBytesToFile(dir.file("head.v2.NeQ"), meshfile::buildNeqChain(triangle)));
    const std::string mesh = readFile(dir.file("head.v2.NeQ"));

    EXPECT_EQ(runTool("bridge register-app Blender --path " + dir.file("blender.sh"), false, env)
                  .exitCode,
              0);
    EXPECT_EQ(readFile(dir.file("NeQApps/Blender/NeQ_Config.txt")),
              "PATH = \"" + dir.file("blender.sh") + "\"\n");
    EXPECT_EQ(runTool("app " + dir.file("NeQApps/Blender/NeQ_App.txt")).output,
              readTestData("cli/blender_record.txt"));

    const std::string send = "bridge send " + dir.file("head.v2.NeQ");
    const std::string receiveStep = "--python-expr|import addon_utils, bpy; "
                                    "addon_utils.check('neqbridge_blender')[1] or "
                                    "addon_utils.enable('neqbridge_blender', default_set=False); "
                                    "bpy.ops.neqbridge.receive()|";
    ToolRun run = runTool(send + " --app Blender", false, env); // not waited for
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    for (int i = 0; i < 1000 && !fileExists(dir.file("blender.sh.args")); ++i)
        ::usleep(10000);
    EXPECT_EQ(readFile(dir.file("blender.sh.args")), receiveStep);
    run = runTool(send + " --app Blender --background", false, env);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(readFile(dir.file("blender.sh.args")), "-b|--python-exit-code|1|" + receiveStep);
    EXPECT_EQ(readFile(project + "head.v2.NeQ"), mesh);
    EXPECT_EQ(readFile(dir.file("NeQBrush/NeQ_ObjectPath.txt")), project + "head.v2.NeQ\n");

    ::mkdir(dir.file("back").c_str(), 0755);
    run = runTool("bridge receive " + dir.file("back"), false, env);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, dir.file("back/edited.NeQ") + "\n");
    EXPECT_EQ(readFile(dir.file("back/edited.NeQ")), "edited");

    writeFile(dir.file("blender.sh.fails"), "");
    expectRuns({{send + " --app Blender --background", 1, "did not import"},
                {send + " --app Blender", 0, "started Blender"}, // how it ends is not awaited
                {send + " --app Maya", 2, "unknown application 'Maya'"},
                {send, 2, "send needs --app APP"},
                {"bridge register-app", 2, "missing APP"},
                {"bridge receive " + dir.file("head.v2.NeQ"), 1, "not a folder"},
                {"bridge receive " + project, 1, "(the same file)"}},
               env);
#ifdef NEQBRIDGE_INTERCHANGE
    writeFile(dir.file("cut.NeQ"), mesh.substr(0, 60));
    expectRuns({{"bridge send " + dir.file("cut.NeQ") + " --app Blender", 1,
                 "cannot send '" + dir.file("cut.NeQ") + "': offset 32: "}},
               env);
    EXPECT_FALSE(fileExists(project + "cut.NeQ"));
#endif
    writeFile(dir.file("NeQBrush/NeQ_ObjectList.txt"), "../x\n");
    TempDir empty;
    expectRuns(
        {{"bridge receive " + dir.file("back"), 1, "names '../x', which is not a file name"}}, env);
    expectRuns({{"bridge register-app Blender --path /x", 1, "NeQApps' does not exist"},
                {send + " --app Blender", 1, "Blender is not registered"},
                {"bridge receive " + empty.path(), 1, "NeQ_ObjectList.txt': No such file"}},
               movedTo(empty));
}

} // namespace
} // namespace neq::test
