#pragma once

// Typed exports that build a blend-shape scene over the shared name list UVTileStr.
// Both return 0 or -1760 / -2760 / -3760 (see blend/blend_result.h); a null path
// gives -9, as the host entries do.

#include "foundation/export.h"

namespace neq::api {
// What the blend exports and entries return for a null path, before touching anything.
constexpr float kNullPath = -9.0f;
} // namespace neq::api

// Records the target's name in UVTileStr and appends the target scene to the base scene.
NEQBRIDGE_API float addBlend(const char* targetPath, char* basePath);
// Appends the blend-shape statements for every name in UVTileStr to the base scene.
NEQBRIDGE_API float finishBlend(const char* basePath);
