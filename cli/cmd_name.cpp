#include "command.h"

namespace neq::cli {
namespace {

int run(const std::vector<std::string>&) {
    printError("name: not built yet");
    return kExitFailed;
}

} // namespace

const Command kNameCommand = {"name", "run names through the unique-name registry",
                              "usage: neqbridge name\n", run};

} // namespace neq::cli
