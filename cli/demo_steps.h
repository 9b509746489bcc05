#pragma once

#include <string>

namespace neq::cli {

// What the demo's steps share: its folder and the files earlier steps wrote.
struct DemoContext {
    std::string dir;            // ends in "/"
    std::string baseMeshPath;   // NeQ file of the base sample mesh (usual block chain)
    std::string subdividedPath; // NeQ file of its subdivision, in the OBJ export's shape
};

// Each returns false after printing what failed. Steps run in this order.
bool demoMeshSteps(DemoContext& context);
bool demoTileSteps(DemoContext& context);
bool demoBlendSteps(DemoContext& context);

} // namespace neq::cli
