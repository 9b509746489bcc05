#include "cmd_tiles.h"
#include "demo_steps.h"

#include "foundation/file_name_extract.h"
#include "meshfile/uv_tiles_split.h"

#include <cstdio>

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

} // namespace

bool demoTileSteps(DemoContext& context) {
    std::printf("\n-- UV tiles and groups\n");
    const std::string& mesh = context.baseMeshPath;
    const std::string meshName = fileName(mesh);

    meshfile::UvTileScan scan;
    if (!listTilesOrReport(mesh, scan)) return false;
    std::vector<std::string> tiles;
    for (const meshfile::UV_tile& tile : scan.tiles)
        tiles.push_back(tile.name);
    std::printf("  GetUVTile(%s) = %zu: tiles %s; the last face lies in %s\n", meshName.c_str(),
                tiles.size(), joined(tiles).c_str(), scan.lastTileName.c_str());

    const std::string base = context.dir + "tiles.NeQ";
    std::vector<std::string> names;
    if (!splitTilesOrReport(mesh, base, names)) return false;
    std::vector<std::string> files;
    for (std::size_t k = 0; k < names.size(); ++k)
        files.push_back(fileName(meshfile::uvTileFilePath(meshfile::uvTileFileStem(base), k)) +
                        " (" + names[k] + ")");
    std::printf("  GetUVsFromNeQ(%s, %s) = %zu: %s\n", meshName.c_str(), fileName(base).c_str(),
                names.size(), joined(files).c_str());

    float groups = 0.0f;
    if (!countGroupsOrReport(mesh, groups)) return false;
    std::printf("  GetUVGroup(%s) = %g distinct groups\n", meshName.c_str(), groups);
    return true;
}

} // namespace neq::cli
