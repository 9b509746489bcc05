#include "command.h"

namespace neq::cli {
namespace {

int run(const std::vector<std::string>&) {
    printError("groups: not built yet");
    return kExitFailed;
}

} // namespace

const Command kGroupsCommand = {"groups", "count the distinct groups of a NeQ file",
                                "usage: neqbridge groups\n", run};

} // namespace neq::cli
