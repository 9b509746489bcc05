#pragma once

#include <string_view>

namespace neq::blend {

// True when a node named `name` loads without complaint: letters, digits, "_" and ":"
// namespace separators only, not empty, not starting with a digit. The blend scene
// writes names as given either way; this only lets tools warn before they do.
bool isPlainNodeName(std::string_view name);

} // namespace neq::blend
