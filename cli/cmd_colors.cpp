#include "args.h"
#include "command.h"
#include "files.h"
#include "neq_input.h"
#include "pending_output.h"

#include "meshfile/neq_file.h"
#include "meshfile/rgb_block.h"
#include "tooling/neq_inspect.h"

#include <cerrno>
#include <string>

namespace neq::cli {
namespace {

// The colour block found by its tag; a file in the OBJ export's layout, where the block
// walk does not reach it, gives the block the export reads.
meshfile::NeqBytes loadColours(const std::string& path) {
    const meshfile::NeqBytes bytes = loadNeqOrFail(path);
    const meshfile::NeqView file(bytes);
    const meshfile::ObjLayoutInfo layout = meshfile::describeObjLayout(file);
    if (!meshfile::findBlock(file, meshfile::kColourTag) && layout.ready()) {
        meshfile::NeqBytes laid(bytes.begin(), bytes.begin() + meshfile::kFirstBlockOffset);
        laid.insert(laid.end(), bytes.begin() + static_cast<std::ptrdiff_t>(*layout.colourBlock),
                    bytes.end());
        return laid;
    }
    return loadWithBlockFirst(path, meshfile::kColourTag, "input");
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kColorsCommand, args);
    parsed.requirePositionals(2, 2);
    const std::string& inPath = parsed.positional[0];
    const std::string& outPath = parsed.positional[1];
    refuseOutputNamingAnInput(outPath, {inPath});
    refuseOutputOfAnotherKind(outPath, OutputKind::colourText, parsed.has("--force"));

    const meshfile::NeqBytes bytes = loadColours(inPath);
    const meshfile::NeqView file(bytes);
    PendingOutput output(outPath);
    errno = 0;
    const meshfile::ExportOutcome outcome =
        meshfile::exportColours(file, output.writePath().c_str());
    if (outcome.status != meshfile::ExportStatus::Written) output.failWrite(errno);
    output.commit();
    status("wrote " + output.shownName() + ": " + std::to_string(outcome.colours) + " colours");
    return kExitOk;
}

} // namespace

const Command kColorsCommand = {
    "colors",
    "write the RGB colour block of a NeQ file",
    "FILE OUT.txt [--force]",
    "Writes the vertex colours of the NeQ file FILE to OUT.txt as the RGB block that OBJ "
    "exports carry, as the host's ReadVertColorNeq does: a comment line, lines "
    "\"#RGB  rrggbb rrggbb ...\" of up to 32 colours in lower-case hexadecimal, then "
    "\"# End of RGB block\". The colour block is found by its tag, in a file of any block "
    "order or in the OBJ export's layout; a file without one is refused. A count larger "
    "than the file holds stops at the end of the file.",
    {{"FILE", "NeQ file with a colour block"},
     {"OUT.txt", "the text file, replaced once complete; \"-\" for standard output"}},
    {{"--force", nullptr, "replace OUT.txt even when it is not colour text"}},
    run,
};

} // namespace neq::cli
