#include "demo_steps.h"

namespace neq::cli {

bool demoBlendSteps(DemoContext&) {
    return true;
}

} // namespace neq::cli
