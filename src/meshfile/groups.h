#pragma once

// Polygroups of a NeQ mesh: one signed 16-bit group identifier per face, in the group
// block.

#include "meshfile/neq_file.h"

#include <cstddef>
#include <optional>

namespace neq::meshfile {

// The number of distinct values in the group block, or nullopt when there is none. A
// count that claims more records than the buffer holds is clamped to those present.
std::optional<std::size_t> countDistinctGroups(const NeqView& file);

// Loads the file and counts its groups. Returns Done with the count, CannotOpen, or
// NoBlock when it has no group block.
ReadOutcome countGroupsInFile(const char* path);

} // namespace neq::meshfile
