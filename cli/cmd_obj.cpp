#include "command.h"

namespace neq::cli {
namespace {

int run(const std::vector<std::string>&) {
    printError("obj: not built yet");
    return kExitFailed;
}

} // namespace

const Command kObjCommand = {"obj", "export a subdivided NeQ mesh as OBJ, grouped by base face",
                             "usage: neqbridge obj\n", run};

} // namespace neq::cli
