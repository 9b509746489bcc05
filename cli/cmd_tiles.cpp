#include "cmd_tiles.h"
#include "args.h"
#include "command.h"

#include "meshfile/groups.h"
#include "meshfile/uv_tiles.h"
#include "meshfile/uv_tiles_split.h"

#include <cstdio>

namespace neq::cli {
namespace {

const char kHelp[] =
    "usage: neqbridge tiles FILE [OUTBASE.NeQ --split]\n"
    "\n"
    "Lists the UV tiles of the NeQ mesh FILE: how many there are and their names,\n"
    "in the order the split numbers them. A face lies in the tile of the first\n"
    "(u, v) pair of its UV record. Tile \"_uU_vV\" is the unit square from (U, V) to\n"
    "(U+1, V+1), where a negative coordinate counts one tile further down: -0.25\n"
    "lies in tile -1 and -1.0 in tile -2. Tiles are ordered by name as text, so\n"
    "\"_u-1_v0\" < \"_u0_v0\" < \"_u10_v0\" < \"_u2_v0\". The tile of the last face is\n"
    "marked with \"*\".\n"
    "\n"
    "With OUTBASE.NeQ and --split, writes one NeQ file per tile, named OUTBASE\n"
    "without its extension, the tile's position (0, 1, ...) and \".NeQ\":\n"
    "\"out/head.NeQ\" gives \"out/head0.NeQ\", \"out/head1.NeQ\", ... Existing files\n"
    "are overwritten. Each file holds FILE up to and including the UV block header,\n"
    "then every UV pair moved into the tile's unit square (-1, -1 for pairs outside\n"
    "the tile), then 16 zero bytes; blocks after the UV block are not copied.\n"
    "Prints each file with its tile name.\n"
    "\n"
    "options:\n"
    "  --split     write the per-tile files (needs OUTBASE.NeQ)\n"
    "  -h, --help  show this text\n"
    "\n"
    "Exit status: 0 on success; 1 when FILE cannot be opened, has no UV block or a\n"
    "tile file cannot be written; 2 for a wrong command line.\n";

// A read failure the listing, the split and the group count share.
bool reportReadFailure(float result, const std::string& mesh, const char* blockKind) {
    if (result >= 0.0f) return false;
    if (result == meshfile::kNoUvBlockResult)
        printError(mesh + " has no " + blockKind + " block");
    else
        printError("cannot open input file " + mesh); // -17, or -1760 from the split
    return true;
}

int printTileList(const std::string& path) {
    meshfile::UvTileScan scan;
    if (!listTilesOrReport(path, scan)) return kExitFailed;
    std::printf("%s: %zu UV tile%s%s\n", path.c_str(), scan.tiles.size(),
                scan.tiles.size() == 1 ? "" : "s",
                scan.tiles.empty() ? " (the UV block is empty)" : " (* = tile of the last face)");
    for (const meshfile::UV_tile& tile : scan.tiles)
        std::printf("  %s%s\n", tile.name.c_str(), tile.name == scan.lastTileName ? " *" : "");
    return kExitOk;
}

int printTileSplit(const std::string& path, const std::string& base) {
    std::vector<std::string> names;
    const bool ok = splitTilesOrReport(path, base, names);
    if (ok || !names.empty())
        std::printf("%s: wrote %zu tile file%s%s\n", path.c_str(), names.size(),
                    names.size() == 1 ? "" : "s", ok ? "" : " before the failure");
    const std::string stem = meshfile::uvTileFileStem(base);
    for (std::size_t k = 0; k < names.size(); ++k)
        std::printf("  %s  %s\n", meshfile::uvTileFilePath(stem, k).c_str(), names[k].c_str());
    return ok ? kExitOk : kExitFailed;
}

int run(const std::vector<std::string>& args) {
    ParsedArgs parsed;
    std::string error;
    if (!parseArgs(args, {}, {"--split"}, parsed, error)) return usageError(kTilesCommand, error);
    const std::size_t count = parsed.positional.size();
    if (count == 0) return usageError(kTilesCommand, "missing FILE");
    if (count > 2) return usageError(kTilesCommand, "too many arguments");
    if (parsed.has("--split") != (count == 2))
        return usageError(kTilesCommand,
                          count == 2 ? "OUTBASE.NeQ needs --split" : "--split needs OUTBASE.NeQ");
    if (count == 1) return printTileList(parsed.positional[0]);
    return printTileSplit(parsed.positional[0], parsed.positional[1]);
}

} // namespace

bool listTilesOrReport(const std::string& mesh, meshfile::UvTileScan& scan) {
    return !reportReadFailure(meshfile::listUvTiles(mesh.c_str(), scan), mesh, "UV");
}

bool splitTilesOrReport(const std::string& mesh, const std::string& base,
                        std::vector<std::string>& names) {
    const float result = meshfile::splitUvTiles(mesh.c_str(), base.c_str(), names);
    if (reportReadFailure(result, mesh, "UV")) return false;
    // Success returns the tile count, which may itself exceed 1500; a failure at file k
    // leaves exactly k names.
    if (result == static_cast<float>(names.size())) return true;
    printError("cannot create or write output file " +
               meshfile::uvTileFilePath(meshfile::uvTileFileStem(base), names.size()) +
               " (result " + std::to_string(static_cast<long>(result)) + ")");
    return false;
}

bool countGroupsOrReport(const std::string& mesh, float& groups) {
    groups = meshfile::countGroupsInFile(mesh.c_str());
    // The group count reports the same -17 and -18 as the tile listing.
    return !reportReadFailure(groups, mesh, "group");
}

const Command kTilesCommand = {"tiles", "list the UV tiles of a NeQ file, or split it per tile",
                               kHelp, run};

} // namespace neq::cli
