#pragma once

// Kept only for code outside the library that still includes it.

#include "bridge/vd_neq_app.h"
