#include "args.h"
#include "cmd_tiles.h"
#include "command.h"
#include "json_text.h"

#include <cstdio>

namespace neq::cli {
namespace {

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kGroupsCommand, args);
    parsed.requirePositionals(1, 1);
    const std::string& path = parsed.positional[0];
    const unsigned long count = countGroupsOrFail(path);
    if (parsed.has("--json")) {
        std::printf("{\"file\":%s,\"groups\":%lu}\n", jsonString(path).c_str(), count);
        return kExitOk;
    }
    std::printf("%s: %lu distinct group%s\n", path.c_str(), count, count == 1 ? "" : "s");
    return kExitOk;
}

} // namespace

const Command kGroupsCommand = {
    "groups",
    "count the distinct groups of a NeQ file",
    "FILE [--json]",
    "Prints how many distinct polygroup identifiers the group block of the NeQ mesh "
    "FILE holds (one signed 16-bit identifier per face).",
    {{"FILE", "NeQ mesh file with a group block"}},
    {{"--json", nullptr, "print the count as one JSON object"}},
    run,
};

} // namespace neq::cli
