#include "args.h"
#include "command.h"
#include "files.h"
#include "pending_output.h"

#include "foundation/vd_string.h"
#include "uvmerge/maya_file_rewrite.h"

#include <chrono>
#include <cstdio>
#include <string>

namespace neq::cli {
namespace {

using uvmerge::MayaFileWeld;

// Throws the failure of a weld in words: which file, and why.
void failOn(const MayaFileWeld& weld, const std::string& input, const std::string& output) {
    switch (weld.failure) {
    case MayaFileWeld::Failure::none:
        return;
    case MayaFileWeld::Failure::read:
        throw Failure("cannot open input " + quoted(input) + ": " + weld.reason);
    case MayaFileWeld::Failure::refused:
        throw Failure("cannot weld " + quoted(input) + ": " + weld.reason);
    case MayaFileWeld::Failure::write:
        throw Failure("cannot write " + quoted(output) + ": " + weld.reason);
    case MayaFileWeld::Failure::nothingToWeld:
        throw Failure("nothing to weld in " + quoted(input) + ": " + weld.reason +
                      "; nothing was written");
    }
}

// The weld to `output` through a file that appears only when complete.
MayaFileWeld weldTo(const std::string& input, const std::string& output) {
    MayaFileWeld weld = uvmerge::rewriteMayaFile(input.c_str());
    failOn(weld, input, output);
    if (!weld.rewrite.welded) {
        weld.failure = MayaFileWeld::Failure::nothingToWeld;
        weld.reason = "it holds no UV or face statements to weld";
        failOn(weld, input, output);
    }
    PendingOutput pending(output);
    pending.write(weld.rewrite.text);
    pending.commit();
    return weld;
}

void printStats(const uvmerge::MayaUvRewrite& rewrite, double seconds) {
    std::printf("UVs before  %zu\nUVs after   %zu\nfaces       %zu\ntriangles   %zu\n"
                "time        %.3f s\n",
                rewrite.uvsBefore, rewrite.uvsAfter, rewrite.faces, rewrite.triangles, seconds);
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kMergeUvsCommand, args);
    parsed.requirePositionals(1, 1);
    const std::string& input = parsed.positional[0];
    const std::optional<std::string> output = parsed.value("-o");
    // As the host's entry: only a Maya ASCII scene is welded, never a file of another kind.
    if (!VDString(input.c_str()).endsWith(".ma", true))
        throw Failure("cannot weld " + quoted(input) +
                      ": only a Maya ASCII scene (named .ma) is welded; nothing was written");
    if (output) refuseOutputNamingAnInput(*output, {input});
    if (output) refuseOutputOfAnotherKind(*output, OutputKind::mayaScene, parsed.has("--force"));

    const auto start = std::chrono::steady_clock::now();
    MayaFileWeld weld =
        output ? weldTo(input, *output) : uvmerge::weldMayaFile(input.c_str(), nullptr, true);
    failOn(weld, input, input);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;

    const std::string& written = output ? *output : input;
    const uvmerge::MayaUvRewrite& rewrite = weld.rewrite;
    const std::string shown = written == "-" && output ? "standard output" : quoted(written);
    statusf("welded %s: %zu UVs -> %zu (%zu faces, %zu triangles)", shown.c_str(),
            rewrite.uvsBefore, rewrite.uvsAfter, rewrite.faces, rewrite.triangles);
    if (parsed.has("--stats")) printStats(rewrite, elapsed.count());
    return kExitOk;
}

} // namespace

const Command kMergeUvsCommand = {
    "merge-uvs",
    "weld split UVs in a Maya ASCII scene",
    "FILE.ma [-o OUT.ma] [--force] [--stats]",
    "Welds the UVs of the one mesh in the Maya ASCII scene FILE.ma, as the host's "
    "NeQMergeUVs does: corners of one vertex with exactly the same UV come to share it, "
    "while seams stay split. The scene is rewritten in place (through a temporary file "
    "renamed over it), or written to OUT.ma with FILE.ma left as it was. The translate, "
    "rotate and scale lines of the transform and everything after the \"// End of\" line "
    "are dropped. A scene outside the layout the weld reads, a scene with no UV or face "
    "statements to weld, or a file not named .ma is refused (exit 1) and left untouched.",
    {{"FILE.ma", "the scene to weld"}},
    {{"-o", "OUT.ma", "write the welded scene here instead (\"-\": standard output)"},
     {"--force", nullptr, "replace OUT.ma even when it is not a Maya ASCII scene"},
     {"--stats", nullptr, "print the UVs before and after, faces, triangles and the time"}},
    run,
};

} // namespace neq::cli
