#include "api/blend_exports.h"

#include "api/host_entry.h"
#include "api/module_state.h"
#include "blend/blend_scene.h"

float addBlend(const char* targetPath, char* basePath) {
    if (targetPath == nullptr || basePath == nullptr) return neq::api::kNullPath;
    return neq::api::guardedEntry(
        [&] { return neq::blend::addBlend(targetPath, basePath, UVTileStr); });
}

float finishBlend(const char* basePath) {
    if (basePath == nullptr) return neq::api::kNullPath;
    return neq::api::guardedEntry([&] { return neq::blend::finishBlend(basePath, UVTileStr); });
}
