#include "blend/blend_scene.h"

#include "blend/blend_statements.h"
#include "blend/node_name.h"
#include "blend/scene_file.h"
#include "foundation/file_io.h"

namespace neq::blend {

BlendStatus addBlend(const char* targetPath, const char* basePath,
                     std::vector<std::string>& targetNames) {
    // A name that would end its quoted string is not a target at all: nothing is
    // recorded, so the statements never carry it. Any other name is counted before
    // anything can fail: the host numbers its targets by call order.
    std::string name = nodeNameOf(targetPath);
    if (!isQuotableNodeName(name)) return BlendStatus::TargetUnreadable;
    if (!isQuotableNodeName(nodeNameOf(basePath))) return BlendStatus::BaseUnreadable;
    targetNames.push_back(std::move(name));

    char holder = 0;
    if (!readSceneTail(basePath, holder)) return BlendStatus::BaseUnreadable;
    const char baseRepeat = holder;

    // The holder is not reset between the files: an empty target repeats the byte
    // carried over from the base.
    std::vector<std::uint8_t> target;
    if (!readWholeFile(targetPath, target)) return BlendStatus::TargetUnreadable;
    appendRepeatedLastByte(target, static_cast<std::uint8_t>(holder));

    const std::string_view targetBytes(reinterpret_cast<const char*>(target.data()), target.size());
    if (!appendToScene(basePath, {std::string_view(&baseRepeat, 1), targetBytes}))
        return BlendStatus::BaseUnwritable;
    return BlendStatus::Done;
}

BlendStatus finishBlend(const char* basePath, const std::vector<std::string>& targetNames) {
    // The list is exported data that host code may fill directly, so every name that
    // goes into the statements is checked here, not only the base's.
    const std::string baseName = nodeNameOf(basePath);
    if (!isQuotableNodeName(baseName)) return BlendStatus::BaseUnreadable;
    for (const std::string& target : targetNames)
        if (!isQuotableNodeName(target)) return BlendStatus::BaseUnreadable;

    char holder = 0;
    if (!readSceneTail(basePath, holder)) return BlendStatus::BaseUnreadable;

    std::string text(1, holder);
    appendBlendStatements(text, baseName, targetNames);
    if (!appendToScene(basePath, {text})) return BlendStatus::BaseUnwritable;
    return BlendStatus::Done;
}

} // namespace neq::blend
