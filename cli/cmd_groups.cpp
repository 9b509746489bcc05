#include "cmd_tiles.h"
#include "command.h"

#include <cstdio>

namespace neq::cli {
namespace {

const char kHelp[] = "usage: neqbridge groups FILE\n"
                     "\n"
                     "Prints how many distinct polygroup identifiers the group block of the\n"
                     "NeQ mesh FILE holds (one signed 16-bit identifier per face).\n"
                     "\n"
                     "options:\n"
                     "  -h, --help  show this text\n"
                     "\n"
                     "Exit status: 0 on success; 1 when FILE cannot be opened or has no group\n"
                     "block; 2 for a wrong command line.\n";

int printGroupCount(const std::string& path) {
    float groups = 0.0f;
    if (!countGroupsOrReport(path, groups)) return kExitFailed;
    const auto count = static_cast<unsigned long>(groups);
    std::printf("%s: %lu distinct group%s\n", path.c_str(), count, count == 1 ? "" : "s");
    return kExitOk;
}

int run(const std::vector<std::string>& args) {
    if (args.empty()) return usageError(kGroupsCommand, "missing FILE");
    if (args.size() > 1) return usageError(kGroupsCommand, "too many arguments");
    if (args[0].size() > 1 && args[0][0] == '-')
        return usageError(kGroupsCommand, "unknown option " + args[0]);
    return printGroupCount(args[0]);
}

} // namespace

const Command kGroupsCommand = {"groups", "count the distinct groups of a NeQ file", kHelp, run};

} // namespace neq::cli
