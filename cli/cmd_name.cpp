#include "args.h"
#include "command.h"
#include "neqbridge/neqbridge.hpp"

#include <cstdio>
#include <memory>

namespace neq::cli {
namespace {

int run(const std::vector<std::string>& args) {
    ParsedArgs parsed = parseArgs(kNameCommand, args);
    parsed.requirePositionals(1, parsed.positional.size());
    NameSetClear();
    for (std::string& name : parsed.positional) {
        const std::unique_ptr<char[]> unique(NameCheck(name.data()));
        std::fputs(unique.get(), stdout);
        std::fputc('\n', stdout);
    }
    return kExitOk;
}

} // namespace

const Command kNameCommand = {
    "name",
    "run names through the unique-name registry",
    "NAME...",
    "Runs each NAME, in order, through the unique-name registry the host reaches with "
    "CheckName, starting from an empty registry, and prints the unique name it gets, one "
    "per line. Spaces and dashes become \"_\"; a name handed out before gets \"_copy\" and "
    "the first free number from 1, and a name that already contains \"_copy\" keeps the "
    "text up to its first \"_copy\" (\"Head\", \"Head\", \"Head_copy1\" give \"Head\", "
    "\"Head_copy1\", \"Head_copy2\"). Names that start with \"-\" go after \"--\".",
    {{"NAME...", "one or more proposed names"}},
    {},
    run,
};

} // namespace neq::cli
