#include "args.h"
#include "command.h"
#include "neq_input.h"

#include "meshfile/face_ids.h"
#include "meshfile/neq_format.h"
#include "meshfile/obj_export.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <string>

namespace neq::cli {
namespace {

const char kHelp[] =
    "usage: neqbridge obj BASE SUBDIVIDED OUT.obj [--level N]\n"
    "\n"
    "Writes the subdivided mesh SUBDIVIDED as the Wavefront OBJ file OUT.obj, the way the\n"
    "host plug-in does: first the face IDs are read from the base mesh BASE (for each base\n"
    "face, how many faces it becomes after N subdivision levels), then OUT.obj gets the\n"
    "vertices, the RGB colour block, and the faces grouped under \"#FaceID i\" comments\n"
    "naming the base face i each run of faces came from.\n"
    "\n"
    "  BASE        NeQ file whose first block (offset 32) is the base mesh's face block.\n"
    "  SUBDIVIDED  NeQ file laid out for the export: the vertex block at offset 32, one\n"
    "              more block, the colour block 4 bytes after that block's end, and the\n"
    "              face block straight after the colour records.\n"
    "  OUT.obj     created or replaced. If SUBDIVIDED is not laid out as above, the export\n"
    "              stops where the layout breaks and OUT.obj keeps what was written.\n"
    "\n"
    "options:\n"
    "  --level N   subdivision levels between BASE and SUBDIVIDED (default 1). Each quad\n"
    "              becomes 4^N faces and each triangle 3*4^(N-1): 4 and 3 at level 1, 16\n"
    "              and 12 at level 2. Level 0 gives empty groups.\n"
    "\n"
    "Errors name the result code the host would see: -1760 an input file cannot be\n"
    "opened, -2 OUT.obj cannot be created or written, -18 BASE has no faces, and a block\n"
    "tag (e.g. 20001) when SUBDIVIDED has another block where the export expects one.\n"
    "\n"
    "exit status: 0 written, 1 failed (message on stderr), 2 wrong command line\n"
    "\n"
    "example: neqbridge obj base.neq level2.neq out.obj --level 2\n";

bool parseLevel(const std::string& text, double& level) {
    char* end = nullptr;
    level = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' && std::isfinite(level);
}

// Reads the face IDs from BASE; false after printing why not.
bool readBaseFaceIds(const std::string& basePath, double level,
                     std::vector<std::uint32_t>& faceIds) {
    meshfile::NeqBytes bytes;
    if (!loadNeqOrReport(basePath, bytes)) return false;
    const meshfile::NeqView file(bytes);
    warnUnlessFirstBlockIs(file, meshfile::kFaceTag, " of " + basePath);
    if (meshfile::readFaceIds(file, level, faceIds) == 0) {
        printError("no face IDs: " + basePath +
                   " has no face records in its first block, so the faces cannot be grouped "
                   "(code -18)");
        return false;
    }
    return true;
}

// A mismatch between base and subdivided mesh still writes a valid file; say so.
void warnIfGroupsShort(const meshfile::ExportOutcome& outcome, std::uint64_t wantedGroups,
                       std::uint64_t wantedFaces, const ParsedArgs& parsed) {
    if (outcome.faceGroups == wantedGroups && outcome.faces == wantedFaces) return;
    printError("warning: the face IDs of " + parsed.positional[0] + " ask for " +
               std::to_string(wantedFaces) + " faces in " + std::to_string(wantedGroups) +
               " groups, but " + parsed.positional[1] + " gave " + std::to_string(outcome.faces) +
               " faces in " + std::to_string(outcome.faceGroups) +
               " groups; check --level and that it is BASE subdivided");
}

int run(const std::vector<std::string>& args) {
    ParsedArgs parsed;
    std::string error;
    if (!parseArgs(args, {"--level"}, {}, parsed, error)) return usageError(kObjCommand, error);
    if (parsed.positional.size() != 3)
        return usageError(kObjCommand, parsed.positional.size() < 3 ? "missing arguments"
                                                                    : "too many arguments");
    double level = 1.0;
    if (parsed.values.count("--level") && !parseLevel(parsed.values["--level"], level))
        return usageError(kObjCommand,
                          "--level needs a number, not '" + parsed.values["--level"] + "'");
    const std::string& subdividedPath = parsed.positional[1];
    const std::string& outPath = parsed.positional[2];

    std::vector<std::uint32_t> faceIds;
    if (!readBaseFaceIds(parsed.positional[0], level, faceIds)) return kExitFailed;
    const std::uint64_t wantedGroups = faceIds.size();
    const std::uint64_t wantedFaces =
        std::accumulate(faceIds.begin(), faceIds.end(), std::uint64_t{0});

    const meshfile::ExportOutcome outcome =
        meshfile::exportObj(subdividedPath.c_str(), outPath.c_str(), faceIds);
    if (outcome.status != meshfile::ExportStatus::Written) {
        printError(meshfile::describeFailure(outcome, subdividedPath, outPath));
        return kExitFailed;
    }
    warnIfGroupsShort(outcome, wantedGroups, wantedFaces, parsed);
    std::printf("wrote %s: %llu vertices, %llu colours, %llu faces in %llu face groups\n",
                outPath.c_str(), static_cast<unsigned long long>(outcome.vertices),
                static_cast<unsigned long long>(outcome.colours),
                static_cast<unsigned long long>(outcome.faces),
                static_cast<unsigned long long>(outcome.faceGroups));
    return kExitOk;
}

} // namespace

const Command kObjCommand = {"obj", "export a subdivided NeQ mesh as OBJ, grouped by base face",
                             kHelp, run};

} // namespace neq::cli
