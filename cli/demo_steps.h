#pragma once

#include <string>
#include <string_view>

namespace neq::cli {

// What the demo's steps share: its folder and the files earlier steps wrote.
struct DemoContext {
    std::string dir;            // ends in "/"
    std::string baseMeshPath;   // NeQ file of the base sample mesh (usual block chain)
    std::string subdividedPath; // NeQ file of its subdivision, in the OBJ export's shape
};

// The demo's steps, run in the order cmd_demo.cpp lists them. Each tells what it does
// through status lines and throws Failure (command.h) when something fails.
void demoMeshSteps(DemoContext& context);
void demoTileSteps(DemoContext& context);
void demoBlendSteps(DemoContext& context);
void demoBridgeSteps(DemoContext& context);
void demoUvMergeSteps(DemoContext& context);

// Writes a file of the demo through PendingOutput.
void writeDemoFile(const std::string& path, std::string_view bytes);

} // namespace neq::cli
