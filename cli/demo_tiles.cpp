#include "demo_steps.h"

namespace neq::cli {

bool demoTileSteps(DemoContext&) {
    return true;
}

} // namespace neq::cli
