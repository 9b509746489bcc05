#include "command.h"
#include "demo_steps.h"

#include "platform/directories.h"

#include <cstdio>
#include <cstdlib>

namespace neq::cli {
namespace {

const char kHelp[] = "usage: neqbridge demo [DIR]\n"
                     "\n"
                     "Runs the library on a built-in sample mesh and writes what it makes into\n"
                     "DIR (default: a new folder under /tmp), then prints what it wrote.\n";

int run(const std::vector<std::string>& args) {
    if (args.size() > 1) return usageError(kDemoCommand, "too many arguments");
    DemoContext context;
    if (args.empty()) {
        char pattern[] = "/tmp/neqbridge-demo-XXXXXX";
        if (::mkdtemp(pattern) == nullptr) {
            printError("cannot create a folder under /tmp");
            return kExitFailed;
        }
        context.dir = pattern;
    } else {
        context.dir = args[0];
        platform::makeDirectory(context.dir.c_str()); // an existing folder is fine
    }
    if (context.dir.empty() || context.dir.back() != '/') context.dir += '/';
    std::printf("neqbridge demo: writing into %s\n", context.dir.c_str());
    const bool ok = demoMeshSteps(context) && demoTileSteps(context) && demoBlendSteps(context);
    return ok ? kExitOk : kExitFailed;
}

} // namespace

const Command kDemoCommand = {"demo", "run the library on a built-in sample mesh", kHelp, run};

} // namespace neq::cli
