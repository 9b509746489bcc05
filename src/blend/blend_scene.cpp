#include "blend/blend_scene.h"

#include "blend/blend_result.h"
#include "blend/blend_statements.h"
#include "blend/node_name.h"
#include "blend/scene_file.h"
#include "foundation/whole_file.h"

namespace neq::blend {

float addBlend(const char* targetPath, const char* basePath,
               std::vector<std::string>& targetNames) {
    // Counted before anything can fail: the host numbers its targets by call order.
    targetNames.push_back(nodeNameOf(targetPath));

    char holder = 0;
    if (!readSceneTail(basePath, holder)) return kBaseUnreadable;
    const char baseRepeat = holder;

    // The holder is not reset between the files: an empty target repeats the byte
    // carried over from the base.
    std::vector<std::uint8_t> target;
    if (!readWholeFile(targetPath, target)) return kTargetUnreadable;
    appendRepeatedLastByte(target, static_cast<std::uint8_t>(holder));

    const std::string_view targetBytes(reinterpret_cast<const char*>(target.data()), target.size());
    if (!appendToScene(basePath, {std::string_view(&baseRepeat, 1), targetBytes}))
        return kBaseUnwritable;
    return kBlendDone;
}

float finishBlend(const char* basePath, const std::vector<std::string>& targetNames) {
    char holder = 0;
    if (!readSceneTail(basePath, holder)) return kBaseUnreadable;

    std::string text(1, holder);
    appendBlendStatements(text, nodeNameOf(basePath), targetNames);
    if (!appendToScene(basePath, {text})) return kBaseUnwritable;
    return kBlendDone;
}

} // namespace neq::blend
