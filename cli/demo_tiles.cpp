#include "cmd_tiles.h"
#include "command.h"
#include "demo_steps.h"

#include "api/result_codes.h"
#include "foundation/file_name_extract.h"
#include "meshfile/uv_tiles.h"

namespace neq::cli {
namespace {

std::string fileName(std::string path) {
    return FileNameExtract(path, 6);
}

std::string joined(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ", ") + item;
    return text;
}

// The host's split, as the host calls it; its code says which tile file failed.
std::vector<std::string> splitAsTheHostDoes(const std::string& mesh, const std::string& base) {
    std::vector<std::string> names;
    const float result = api::hostCode(meshfile::splitUvTiles(mesh.c_str(), base.c_str(), names),
                                       api::kCannotOpenInput);
    if (result == static_cast<float>(names.size())) return names;
    const std::string failed =
        meshfile::uvTileFilePath(meshfile::uvTileFileStem(base), names.size());
    throw Failure("cannot write tile file " + quoted(failed) + " (GetUVsFromNeQ returned " +
                  std::to_string(static_cast<long>(result)) + ")");
}

} // namespace

void demoTileSteps(DemoContext& context) {
    status("\n-- UV tiles and groups");
    const std::string& mesh = context.baseMeshPath;
    const std::string meshName = fileName(mesh);

    const meshfile::UvTileScan scan = listTilesOrFail(mesh);
    std::vector<std::string> tiles;
    for (const meshfile::UV_tile& tile : scan.tiles)
        tiles.push_back(tile.name);
    statusf("  listed the %zu UV tiles of %s: %s; the last face lies in %s", tiles.size(),
            meshName.c_str(), joined(tiles).c_str(), scan.lastTileName.c_str());
    status("    again: neqbridge tiles " + meshName);

    const std::string base = context.dir + "tiles.NeQ";
    const std::vector<std::string> names = splitAsTheHostDoes(mesh, base);
    std::vector<std::string> files;
    for (std::size_t k = 0; k < names.size(); ++k)
        files.push_back(fileName(meshfile::uvTileFilePath(meshfile::uvTileFileStem(base), k)) +
                        " (" + names[k] + ")");
    statusf("  split %s into one file per tile: %s", meshName.c_str(), joined(files).c_str());
    status("    again: neqbridge tiles " + meshName + " " + fileName(base) + " --split");

    statusf("  counted the groups of %s: %lu", meshName.c_str(), countGroupsOrFail(mesh));
    status("    again: neqbridge groups " + meshName);
}

} // namespace neq::cli
