#include "neq_input.h"

#include "command.h"
#include "files.h"

#include "meshfile/neq_format.h"
#include "meshfile/obj_export_outcome.h"

#include <cerrno>
#include <optional>

namespace neq::cli {

meshfile::NeqBytes loadNeqOrFail(const std::string& path) {
    requireInputFile(path);
    meshfile::NeqBytes bytes;
    errno = 0;
    if (!meshfile::loadNeqFile(path.c_str(), bytes))
        throw Failure("cannot read input " + quoted(path) + ": " + reasonOf(errno) +
                      " (code -1760)");
    return bytes;
}

void warnUnlessFirstBlockIs(const meshfile::NeqView& file, std::uint32_t expectedTag,
                            const std::string& where) {
    const std::optional<std::uint32_t> tag = file.u32(meshfile::kFirstBlockOffset);
    if (tag == expectedTag) return;
    const std::string kind = meshfile::blockKindName(expectedTag);
    warn("expected the " + kind + " block (tag " + std::to_string(expectedTag) + ") at offset 32" +
         where + ", found " + meshfile::describeFoundTag(tag) + "; reading it as " + kind +
         "s anyway");
}

} // namespace neq::cli
