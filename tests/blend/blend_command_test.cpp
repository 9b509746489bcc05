#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

// Runs inside the scene folder, so that the messages name the files as given.
TEST(BlendCommand, ReportsTheSceneAndTranslatesEveryFailure) {
    TempDir dir;
    for (const char* name : {"Head.ma", "Smile.ma", "2nd.ma"})
        writeFile(dir.file(name), "x\n");
    expectRuns(
        {{"blend Head.ma Smile.ma", 0, "with 1 target written to Head.ma"},
         {"blend Head.ma 2nd.ma", 0, "warning: target name \"2nd\" (from 2nd.ma) is not a plain"},
         {"blend Head.ma Smile.ma Missing.ma", 1,
          "cannot open target scene Missing.ma (code -1760)"},
         {"blend NoBase.ma Smile.ma", 1, "cannot read base scene NoBase.ma (code -2760)"},
         {"blend Head.ma", 2, "give the base scene and at least one target scene"}},
        "cd " + dir.path() + " &&");
}

} // namespace
} // namespace neq::test
