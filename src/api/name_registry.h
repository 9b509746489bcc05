#pragma once

// The unique-name registry: turns a proposed object name into one without spaces or
// dashes that has not been handed out since the registry was last emptied.

#include "foundation/vd_string.h"

#include <set>
#include <string>

namespace neq::api {

// Spaces and dashes become "_". A name already in `issued` gets a "_copy" suffix and
// the first free counter from 1: "Head" -> "Head_copy1", "Head_copy2"... The stem ends
// at the first "_copy" anywhere in the name, so a clash of "Leg_copying" gives
// "Leg_copy1". The answer is added to `issued`. A null name is the empty name.
VDString reserveUniqueName(std::set<std::string>& issued, const char* proposed);

} // namespace neq::api
