#include "command.h"

namespace neq::cli {
namespace {

int run(const std::vector<std::string>&) {
    printError("tiles: not built yet");
    return kExitFailed;
}

} // namespace

const Command kTilesCommand = {"tiles", "list the UV tiles of a NeQ file, or split it per tile",
                               "usage: neqbridge tiles\n", run};

} // namespace neq::cli
