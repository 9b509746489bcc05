#include "args.h"
#include "command.h"
#include "files.h"
#include "neq_input.h"
#include "pending_output.h"

#include "meshfile/neq_format.h"
#include "meshfile/rgb_block.h"

#include <cerrno>
#include <string>

namespace neq::cli {
namespace {

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kColorsCommand, args);
    parsed.requirePositionals(2, 2);
    const std::string& inPath = parsed.positional[0];
    const std::string& outPath = parsed.positional[1];
    refuseOutputNamingAnInput(outPath, {inPath});

    const meshfile::NeqBytes bytes = loadNeqOrFail(inPath);
    const meshfile::NeqView file(bytes);
    warnUnlessFirstBlockIs(file, meshfile::kColourTag, "");
    PendingOutput output(outPath);
    errno = 0;
    const meshfile::ExportOutcome outcome =
        meshfile::exportColours(file, output.writePath().c_str());
    if (outcome.status != meshfile::ExportStatus::Written) output.failWrite(errno);
    output.commit();
    status("wrote " + outPath + ": " + std::to_string(outcome.colours) + " colours");
    return kExitOk;
}

} // namespace

const Command kColorsCommand = {
    "colors",
    "write the RGB colour block of a NeQ file",
    "FILE OUT.txt",
    "Writes the vertex colours of the NeQ file FILE to OUT.txt as the RGB block that OBJ "
    "exports carry, as the host's ReadVertColorNeq does: a comment line, lines "
    "\"#RGB  rrggbb rrggbb ...\" of up to 32 colours in lower-case hexadecimal, then "
    "\"# End of RGB block\". Whatever block stands first in FILE is read as colours, with "
    "a warning when it is not the colour block; a count larger than the file holds "
    "stops at the end of the file.",
    {{"FILE", "NeQ file whose first block (offset 32) is the colour block"},
     {"OUT.txt", "the text file; created, or replaced once it is complete"}},
    {},
    run,
};

} // namespace neq::cli
