#include "command.h"

namespace neq::cli {
namespace {

int run(const std::vector<std::string>&) {
    printError("blend: not built yet");
    return kExitFailed;
}

} // namespace

const Command kBlendCommand = {"blend", "assemble a blend-shape scene from target scenes",
                               "usage: neqbridge blend\n", run};

} // namespace neq::cli
