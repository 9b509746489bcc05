#pragma once

// Kept only for code outside the library that still includes it: the typed exports
// are declared once, in the public interface.

#include "api/host_entry.h"
