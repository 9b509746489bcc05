#pragma once

// Kept only for code outside the library that still includes it.

#include "meshfile/obj_export.h"
