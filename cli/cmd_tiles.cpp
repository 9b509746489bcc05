#include "cmd_tiles.h"

#include "args.h"
#include "command.h"
#include "files.h"
#include "json_text.h"
#include "neq_input.h"
#include "pending_output.h"

#include "api/result_codes.h"
#include "meshfile/groups.h"
#include "meshfile/uv_tiles.h"

#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <memory>

namespace neq::cli {
namespace {

void failWithoutBlock(const std::string& mesh, const char* blockKind) {
    throw Failure(quoted(mesh) + " has no " + blockKind + " block" + codeDetail(api::kNoBlock));
}

// The tile a face lands in when its first UV pair is (-1, -1), as --split writes the
// faces outside each file's tile.
const char kOutsideTile[] = "_u-2_v-2";

int printTileList(const std::string& path, bool json) {
    const meshfile::UvTileScan scan = listTilesOrFail(path);
    if (json) {
        std::string out = "{\"file\":" + jsonString(path) + ",\"tiles\":[";
        for (const meshfile::UV_tile& tile : scan.tiles)
            out += (out.back() == '[' ? "" : ",") + jsonString(tile.name);
        out += "],\"lastTile\":" + (scan.tiles.empty() ? "null" : jsonString(scan.lastTileName));
        std::printf("%s}\n", out.c_str());
        return kExitOk;
    }
    std::printf("%s: %zu UV tile%s%s\n", path.c_str(), scan.tiles.size(),
                scan.tiles.size() == 1 ? "" : "s",
                scan.tiles.empty() ? " (the UV block is empty)" : " (* = tile of the last face)");
    for (const meshfile::UV_tile& tile : scan.tiles)
        std::printf("  %s%s\n", tile.name.c_str(), tile.name == scan.lastTileName ? " *" : "");
    for (const meshfile::UV_tile& tile : scan.tiles)
        if (tile.name == kOutsideTile)
            std::printf("%s holds the faces whose UVs are (-1, -1), as tile files written by "
                        "--split mark the faces outside their tile\n",
                        kOutsideTile);
    return kExitOk;
}

// The output base names files to come, so it must not be a folder or a device.
void checkOutputBase(const std::string& outBase) {
    struct stat info {};
    const bool exists = ::stat(outBase.c_str(), &info) == 0;
    if (lastNameOf(outBase).empty() || (exists && S_ISDIR(info.st_mode)))
        throw Failure("output base " + quoted(outBase) +
                      " is a folder; give a file name in it, such as " +
                      quoted((outBase.back() == '/' ? outBase : outBase + "/") + "tile.NeQ"));
    if (exists && !S_ISREG(info.st_mode))
        throw Failure("output base " + quoted(outBase) +
                      " is a device or pipe, not a file name to name the tile files after");
}

// A small mesh can name thousands of tiles (131 KB made 4,096 files, 529 MB): past
// these, the split is only written with --force.
constexpr std::size_t kMostTileFiles = 1000;
constexpr std::uint64_t kMostTileBytes = std::uint64_t{1} << 30;

void refuseRunawaySplit(const std::string& mesh, const meshfile::UvTileSplit& split) {
    const std::uint64_t files = split.tiles().size();
    const std::uint64_t bytes = files * split.tileFileSize();
    if (files <= kMostTileFiles && bytes <= kMostTileBytes) return;
    throw Failure("splitting " + quoted(mesh) + " would write " + std::to_string(files) +
                  " tile files of " + std::to_string(split.tileFileSize()) + " bytes, " +
                  std::to_string(bytes) + " bytes in all (more than " +
                  (files > kMostTileFiles ? "1000 files" : "1 GiB") +
                  "); nothing was written; add --force to write them");
}

// Every tile file is written under a temporary name first and renamed into place only
// when all of them are complete: a failure leaves none of them behind.
int writeTileSplit(const std::string& mesh, const std::string& outBase, bool force) {
    checkOutputBase(outBase);
    const meshfile::NeqBytes bytes = loadNeqOrFail(mesh);
    const std::optional<meshfile::UvTileSplit> split =
        meshfile::UvTileSplit::plan(meshfile::NeqView(bytes));
    if (!split) failWithoutBlock(mesh, "UV");
    if (!force) refuseRunawaySplit(mesh, *split);

    const std::string stem = tileFileStem(outBase);
    std::vector<std::string> paths;
    for (std::size_t k = 0; k < split->tiles().size(); ++k) {
        paths.push_back(meshfile::uvTileFilePath(stem, k));
        refuseOutputNamingAnInput(paths.back(), {mesh});
        refuseOutputOfAnotherKind(paths.back(), OutputKind::neqMesh, force);
    }
    std::vector<std::unique_ptr<PendingOutput>> outputs;
    for (std::size_t k = 0; k < paths.size(); ++k) {
        outputs.push_back(std::make_unique<PendingOutput>(paths[k]));
        const meshfile::NeqBytes image = split->tileImage(k);
        outputs.back()->write(
            std::string_view(reinterpret_cast<const char*>(image.data()), image.size()));
    }
    for (const auto& output : outputs)
        output->commit();

    status(mesh + ": wrote " + std::to_string(paths.size()) + " tile file" +
           (paths.size() == 1 ? "" : "s"));
    for (std::size_t k = 0; k < paths.size(); ++k)
        status("  " + paths[k] + "  " + split->tiles()[k].name);
    return kExitOk;
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kTilesCommand, args);
    parsed.requirePositionals(1, 2);
    const bool withBase = parsed.positional.size() == 2;
    if (parsed.has("--split") != withBase)
        throw UsageError(withBase ? "OUTBASE.NeQ needs --split" : "--split needs OUTBASE.NeQ");
    if (!withBase) return printTileList(parsed.positional[0], parsed.has("--json"));
    if (parsed.has("--json")) throw UsageError("--json lists tiles; it does not go with --split");
    if (parsed.positional[1] == "-")
        throw UsageError("OUTBASE.NeQ cannot be '-': the tile files are binary files named "
                         "after it, not one output");
    return writeTileSplit(parsed.positional[0], parsed.positional[1], parsed.has("--force"));
}

} // namespace

meshfile::UvTileScan listTilesOrFail(const std::string& mesh) {
    const meshfile::NeqBytes bytes = loadNeqOrFail(mesh);
    std::optional<meshfile::UvTileScan> scan = meshfile::scanUvTiles(meshfile::NeqView(bytes));
    if (!scan) failWithoutBlock(mesh, "UV");
    return std::move(*scan);
}

unsigned long countGroupsOrFail(const std::string& mesh) {
    const meshfile::NeqBytes bytes = loadNeqOrFail(mesh);
    const std::optional<std::size_t> groups =
        meshfile::countDistinctGroups(meshfile::NeqView(bytes));
    if (!groups) failWithoutBlock(mesh, "group");
    return static_cast<unsigned long>(*groups);
}

std::string tileFileStem(const std::string& outBase) {
    const std::string name = lastNameOf(outBase);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0) return outBase;
    return outBase.substr(0, outBase.size() - (name.size() - dot));
}

const Command kTilesCommand = {
    "tiles",
    "list the UV tiles of a NeQ file, or split it per tile",
    "FILE [--json] | FILE OUTBASE.NeQ --split [--force]",
    "Lists the UV tiles of the NeQ mesh FILE, in the order the split numbers them; \"*\" "
    "marks the tile of the last face. A face lies in the tile of the first (u, v) pair "
    "of its UV record; tile \"_uU_vV\" is the unit square from (U, V) to (U+1, V+1), a "
    "negative coordinate counting one tile further down (-0.25 lies in tile -1, -1.0 in "
    "tile -2); tiles are ordered by name as text (\"_u-1_v0\", \"_u0_v0\", \"_u10_v0\", "
    "\"_u2_v0\"). With OUTBASE.NeQ and --split, writes one NeQ file per tile instead, "
    "named OUTBASE without its extension, the tile's position from 0 and \".NeQ\" "
    "(\"out/head.NeQ\" gives \"out/head0.NeQ\", \"out/head1.NeQ\", ...; \"out/head\" the "
    "same). Each holds FILE up to and including the UV block header, every UV pair moved "
    "into the tile's square (-1, -1 for pairs outside it), then 16 zero bytes. The files "
    "appear together once all are written; existing ones are replaced.",
    {{"FILE", "NeQ mesh file with a UV block"},
     {"OUTBASE.NeQ", "name the tile files are derived from (with --split)"}},
    {{"--split", nullptr, "write one NeQ file per tile"},
     {"--force", nullptr,
      "replace a tile file even when it is not a NeQ mesh file, and write more than 1000 "
      "tile files or 1 GiB"},
     {"--json", nullptr, "print the list as one JSON object"}},
    run,
};

} // namespace neq::cli
