#include "args.h"
#include "command.h"
#include "files.h"
#include "neq_input.h"
#include "pending_output.h"

#include "api/result_codes.h"
#include "meshfile/face_ids.h"
#include "meshfile/neq_file.h"
#include "meshfile/obj_export.h"

#include <cerrno>
#include <numeric>
#include <string>

namespace neq::cli {
namespace {

// 4^level faces per quad must fit the 32-bit face IDs: level 15 gives 2^30.
constexpr long long kMaxLevel = 15;

std::vector<std::uint32_t> readBaseFaceIds(const std::string& basePath, double level) {
    const meshfile::NeqBytes bytes = loadWithBlockFirst(basePath, meshfile::kFaceTag, "BASE");
    const meshfile::NeqView file(bytes);
    std::vector<std::uint32_t> faceIds;
    if (meshfile::readFaceIds(file, level, faceIds) == 0)
        throw Failure("no face IDs: " + quoted(basePath) +
                      " has no face records, so the faces cannot be grouped" +
                      codeDetail(api::kNoBlock));
    return faceIds;
}

// Face IDs that ask for more faces than the subdivided mesh has would read on past its
// face records and invent faces; fewer would drop faces. Either way the meshes do not
// belong together at this level, which is worth saying before anything is written.
void requireMatchingFaceCount(const meshfile::NeqView& file,
                              const std::vector<std::uint32_t>& faceIds, long long level,
                              const std::string& basePath, const std::string& subdividedPath) {
    const std::optional<std::uint64_t> faceBlock = meshfile::locateObjExportBlocks(file).faceBlock;
    if (!faceBlock || file.u32(*faceBlock) != meshfile::kFaceTag)
        return; // not laid out for the export: the export itself says where
    const std::uint64_t claimed = file.u32(*faceBlock + meshfile::kBlockCountOffset).value_or(0);
    const std::uint64_t records = file.recordsThatFit(*faceBlock + meshfile::kBlockHeaderSize,
                                                      claimed, meshfile::kFaceRecordSize);
    const std::uint64_t wanted = std::accumulate(faceIds.begin(), faceIds.end(), std::uint64_t{0});
    if (wanted == records) return;
    throw Failure("the meshes do not match at level " + std::to_string(level) + ": the " +
                  std::to_string(faceIds.size()) + " faces of " + quoted(basePath) + " become " +
                  std::to_string(wanted) + " faces, but " + quoted(subdividedPath) + " has " +
                  std::to_string(records) +
                  " face records; check --level and that SUBDIVIDED is BASE subdivided");
}

std::string describeMismatch(const meshfile::TagMismatch& mismatch) {
    std::string text = std::string("expected the ") + meshfile::blockKindName(mismatch.expected) +
                       " block (tag " + std::to_string(mismatch.expected) + ")";
    if (!mismatch.offset)
        return text + ", but the file ends before the length and count fields that locate it";
    return text + " at offset " + std::to_string(*mismatch.offset) + ", found " +
           meshfile::describeFoundTag(mismatch.found);
}

void reportExportFailure(const meshfile::ExportOutcome& outcome, const std::string& subdividedPath,
                         const PendingOutput& output, int error) {
    if (outcome.status != meshfile::ExportStatus::TagMismatch) output.failWrite(error);
    const std::string code =
        outcome.mismatch.found ? std::to_string(*outcome.mismatch.found) : std::string("-1");
    throw Failure("cannot export " + quoted(subdividedPath) + ": " +
                  describeMismatch(outcome.mismatch) + "; nothing was written (code " + code + ")");
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kObjCommand, args);
    parsed.requirePositionals(3, 3);
    const long long level =
        parsed.integer("--level", 1, 1, kMaxLevel, "a whole number of subdivision levels");
    const std::string& basePath = parsed.positional[0];
    const std::string& subdividedPath = parsed.positional[1];
    const std::string& outPath = parsed.positional[2];
    refuseOutputNamingAnInput(outPath, {basePath, subdividedPath});
    refuseOutputOfAnotherKind(outPath, OutputKind::objText, parsed.has("--force"));

    const std::vector<std::uint32_t> faceIds =
        readBaseFaceIds(basePath, static_cast<double>(level));
    const meshfile::NeqBytes bytes = loadInExportLayout(subdividedPath, "SUBDIVIDED");
    const meshfile::NeqView file(bytes);
    requireMatchingFaceCount(file, faceIds, level, basePath, subdividedPath);

    PendingOutput output(outPath);
    errno = 0;
    const meshfile::ExportOutcome outcome =
        meshfile::exportObj(file, output.writePath().c_str(), faceIds);
    if (outcome.status != meshfile::ExportStatus::Written)
        reportExportFailure(outcome, subdividedPath, output, errno);
    output.commit();
    status("wrote " + output.shownName() + ": " + std::to_string(outcome.vertices) + " vertices, " +
           std::to_string(outcome.colours) + " colours, " + std::to_string(outcome.faces) +
           " faces in " + std::to_string(outcome.faceGroups) + " face groups");
    return kExitOk;
}

} // namespace

const Command kObjCommand = {
    "obj",
    "export a subdivided NeQ mesh as OBJ, grouped by base face",
    "BASE SUBDIVIDED OUT.obj [--level N] [--force]",
    "Writes the subdivided mesh SUBDIVIDED as the Wavefront OBJ file OUT.obj, the way "
    "the host plug-in does: the vertices, the RGB colour block, and the faces grouped "
    "under \"#FaceID i\" comments naming the base face i of BASE each run came from (a "
    "quad becomes 4^N faces, a triangle 3*4^(N-1)). BASE and SUBDIVIDED must match at "
    "level N, or nothing is written. Both may hold their blocks in any order: the tool "
    "finds them by tag and hands the export the layout it reads (a file already in that "
    "layout is used as it is). Note: the header line \"#Face count\" prints the "
    "length field of SUBDIVIDED's colour block, not the number of faces; the host's OBJ "
    "files have always carried that value there, so it is kept.",
    {{"BASE", "NeQ file of the base mesh, with a face block"},
     {"SUBDIVIDED", "NeQ file of the subdivided mesh: vertex, colour and face blocks"},
     {"OUT.obj", "the OBJ file, replaced once complete; \"-\" for standard output"}},
    {{"--level", "N", "subdivision levels from BASE to SUBDIVIDED, 1 to 15 (default 1)"},
     {"--force", nullptr, "replace OUT.obj even when it is not an OBJ file"}},
    run,
};

} // namespace neq::cli
