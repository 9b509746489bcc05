#include "bridge/vd_neq_app.h"

void VDNeQApp::clear() {
    *this = VDNeQApp();
}
