#include "neq_input.h"

#include "command.h"

#include "meshfile/neq_format.h"
#include "meshfile/obj_export_outcome.h"

#include <optional>

namespace neq::cli {

bool loadNeqOrReport(const std::string& path, meshfile::NeqBytes& bytes) {
    if (meshfile::loadNeqFile(path.c_str(), bytes)) return true;
    meshfile::ExportOutcome outcome;
    outcome.status = meshfile::ExportStatus::CannotOpenInput;
    printError(meshfile::describeFailure(outcome, path, ""));
    return false;
}

void warnUnlessFirstBlockIs(const meshfile::NeqView& file, std::uint32_t expectedTag,
                            const std::string& where) {
    const std::optional<std::uint32_t> tag = file.u32(meshfile::kFirstBlockOffset);
    if (tag == expectedTag) return;
    const std::string kind = meshfile::blockKindName(expectedTag);
    printError("warning: expected the " + kind + " block (tag " + std::to_string(expectedTag) +
               ") at offset 32" + where + ", found " + meshfile::describeFoundTag(tag) +
               "; reading it as " + kind + "s anyway");
}

} // namespace neq::cli
