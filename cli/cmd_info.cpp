#include "command.h"

namespace neq::cli {
namespace {

int run(const std::vector<std::string>&) {
    printError("info: not built yet");
    return kExitFailed;
}

} // namespace

const Command kInfoCommand = {"info", "list the blocks of a NeQ file", "usage: neqbridge info\n",
                              run};

} // namespace neq::cli
