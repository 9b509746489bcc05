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

// What a blend step reports; the host entries turn it into their float codes.
enum class BlendStatus {
    Done,
    TargetUnreadable, // the target scene cannot be opened for reading
    BaseUnreadable,   // the base scene cannot be opened for reading
    BaseUnwritable,   // the base scene cannot be written
};

// Records the target's name (its file name without folder and extension) in
// `targetNames` first, whatever follows, then appends to the base scene the base's
// last byte, the target scene's bytes and the target's last byte.
// On any failure the base scene is unchanged. A target name that is not quotable
// (blend/node_name.h) gives TargetUnreadable, a base name that is not gives
// BaseUnreadable, both before anything is recorded.
BlendStatus addBlend(const char* targetPath, const char* basePath,
                     std::vector<std::string>& targetNames);

// Appends to the base scene its last byte and the blend-shape statements for the
// recorded targets, in recording order (blend/blend_statements.h). The names stay
// recorded. Returns Done, BaseUnreadable or BaseUnwritable; on failure the base scene
// is unchanged. A base or recorded name that is not quotable gives BaseUnreadable
// before the file is touched.
BlendStatus finishBlend(const char* basePath, const std::vector<std::string>& targetNames);

} // namespace neq::blend
