#include "command.h"

namespace neq::cli {
namespace {

int run(const std::vector<std::string>&) {
    printError("colors: not built yet");
    return kExitFailed;
}

} // namespace

const Command kColorsCommand = {"colors", "write the RGB colour block of a NeQ file",
                                "usage: neqbridge colors\n", run};

} // namespace neq::cli
