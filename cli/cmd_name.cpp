#include "api/name_exports.h"
#include "args.h"
#include "command.h"

#include <cstdio>
#include <memory>

namespace neq::cli {
namespace {

const char kHelp[] =
    "usage: neqbridge name NAME...\n"
    "\n"
    "Runs each NAME, in order, through the unique-name registry the host reaches with\n"
    "CheckName, starting from an empty registry, and prints the unique name it gets,\n"
    "one per line.\n"
    "\n"
    "Spaces and dashes become \"_\". A name handed out before gets \"_copy\" and the\n"
    "first free number from 1; a name that already contains \"_copy\" keeps the text up\n"
    "to its first \"_copy\" and gets the number there:\n"
    "\n"
    "  neqbridge name Head \"my head\" Head Head_copy1 my-head\n"
    "  Head\n"
    "  my_head\n"
    "  Head_copy1\n"
    "  Head_copy2\n"
    "  my_head_copy1\n"
    "\n"
    "Names that start with \"-\" go after \"--\".\n";

int run(const std::vector<std::string>& args) {
    ParsedArgs parsed;
    std::string error;
    if (!parseArgs(args, {}, {}, parsed, error)) return usageError(kNameCommand, error);
    if (parsed.positional.empty()) return usageError(kNameCommand, "no names given");

    NameSetClear();
    for (std::string& name : parsed.positional) {
        const std::unique_ptr<char[]> unique(NameCheck(name.data()));
        std::fputs(unique.get(), stdout);
        std::fputc('\n', stdout);
    }
    return std::fflush(stdout) == 0 ? kExitOk : kExitFailed;
}

} // namespace

const Command kNameCommand = {"name", "run names through the unique-name registry", kHelp, run};

} // namespace neq::cli
