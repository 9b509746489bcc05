#include "demo_steps.h"

namespace neq::cli {

bool demoMeshSteps(DemoContext&) {
    return true;
}

} // namespace neq::cli
