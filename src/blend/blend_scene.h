#pragma once

// Building a blend-shape scene: the host writes a base scene and one scene per target;
// each target scene is appended to the base scene, and finally the blend-shape
// statements for every recorded target are appended.
//
// The scenes grow the way the host's byte-at-a-time readers always made them grow:
// every file read contributes its bytes and then its last byte once more. Within one
// call the holder of that byte starts as 0 and carries over from file to file, so an
// empty base contributes a single 0 byte and an empty target repeats the byte the base
// contributed last. The base scene only ever grows at its end, so it is never read or
// written whole: each call costs what it appends.

#include <string>
#include <vector>

namespace neq::blend {

// Records the target's name (its file name without folder and extension) in
// `targetNames` first, whatever follows, then appends to the base scene the base's
// last byte, the target scene's bytes and the target's last byte.
// Returns kBlendDone, kBaseUnreadable, kTargetUnreadable or kBaseUnwritable
// (blend/blend_result.h); on any failure the base scene is unchanged. A target name
// that is not quotable (blend/node_name.h) gives kTargetUnreadable, a base name that
// is not gives kBaseUnreadable, both before anything is recorded.
float addBlend(const char* targetPath, const char* basePath, std::vector<std::string>& targetNames);

// Appends to the base scene its last byte and the blend-shape statements for the
// recorded targets, in recording order (blend/blend_statements.h). The names stay
// recorded. Returns kBlendDone, kBaseUnreadable or kBaseUnwritable; on failure the
// base scene is unchanged. A base or recorded name that is not quotable gives
// kBaseUnreadable before the file is touched.
float finishBlend(const char* basePath, const std::vector<std::string>& targetNames);

} // namespace neq::blend
