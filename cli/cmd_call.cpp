#include "command.h"

namespace neq::cli {
namespace {

int run(const std::vector<std::string>&) {
    printError("call: not built yet");
    return kExitFailed;
}

} // namespace

const Command kCallCommand = {"call", "call a host entry of the shared library, as the host does",
                              "usage: neqbridge call\n", run};

} // namespace neq::cli
