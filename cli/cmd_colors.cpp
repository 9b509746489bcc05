#include "command.h"
#include "neq_input.h"

#include "meshfile/neq_format.h"
#include "meshfile/obj_export_outcome.h"
#include "meshfile/rgb_block.h"

#include <cstdio>
#include <string>

namespace neq::cli {
namespace {

const char kHelp[] =
    "usage: neqbridge colors FILE OUT.txt\n"
    "\n"
    "Writes the vertex colours of the NeQ file FILE to OUT.txt as the RGB block that\n"
    "OBJ exports carry: a comment line, then lines \"#RGB  rrggbb rrggbb ...\" of up to\n"
    "32 colours in lower-case hexadecimal, then \"# End of RGB block\". This is what the\n"
    "host's ReadVertColorNeq writes.\n"
    "\n"
    "  FILE     NeQ file whose first block (offset 32) is the colour block. Its tag is\n"
    "           not checked: whatever block stands there is read as colours, with a\n"
    "           warning when its tag is not the colour tag 35001.\n"
    "  OUT.txt  created or replaced.\n"
    "\n"
    "A colour count larger than the file holds stops at the end of the file.\n"
    "\n"
    "exit status: 0 written, 1 failed (message on stderr), 2 wrong command line\n"
    "\n"
    "example: neqbridge colors mesh_colours.neq colours.txt\n";

int run(const std::vector<std::string>& args) {
    if (args.size() != 2)
        return usageError(kColorsCommand,
                          args.size() < 2 ? "missing arguments" : "too many arguments");
    const std::string& inPath = args[0];
    const std::string& outPath = args[1];
    meshfile::NeqBytes bytes;
    if (!loadNeqOrReport(inPath, bytes)) return kExitFailed;
    const meshfile::NeqView file(bytes);
    warnUnlessFirstBlockIs(file, meshfile::kColourTag, "");
    const meshfile::ExportOutcome outcome = meshfile::exportColours(file, outPath.c_str());
    if (outcome.status != meshfile::ExportStatus::Written) {
        printError(meshfile::describeFailure(outcome, inPath, outPath));
        return kExitFailed;
    }
    std::printf("wrote %s: %llu colours\n", outPath.c_str(),
                static_cast<unsigned long long>(outcome.colours));
    return kExitOk;
}

} // namespace

const Command kColorsCommand = {"colors", "write the RGB colour block of a NeQ file", kHelp, run};

} // namespace neq::cli
