#pragma once

// The unique-name registry: turns a proposed object name into one without spaces or
// dashes that has not been handed out since the registry was last emptied.

#include "foundation/vd_string.h"

#include <cstddef>
#include <set>
#include <string>
#include <unordered_map>

namespace neq::api {

// Where the search for a free "_copy" counter resumes, per stem. Names leave the
// registry only when it is emptied, so every counter below a stem's resume point stays
// taken and the first free one is found without trying them again: repeating one name
// costs the same on every call instead of growing with its copies.
struct CopyCounterHints {
    std::unordered_map<std::string, int> resumeAt;
    std::size_t issuedSeen = 0; // the registry's size after the last call
};

// Spaces and dashes become "_". A name already in `issued` gets a "_copy" suffix and
// the first free counter from 1: "Head" -> "Head_copy1", "Head_copy2"... The stem ends
// at the first "_copy" anywhere in the name, so a clash of "Leg_copying" gives
// "Leg_copy1". The answer is added to `issued`. A null name is the empty name.
// `hints` belong to `issued`: empty them with it. Should `issued` shrink behind their
// back they are dropped, and a hint is only used while the counter before it is taken.
VDString reserveUniqueName(std::set<std::string>& issued, CopyCounterHints& hints,
                           const char* proposed);

} // namespace neq::api
