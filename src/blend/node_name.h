#pragma once

#include <string>
#include <string_view>

namespace neq::blend {

// The node a scene file holds is named after the file: its name without folder and
// last extension ("/tmp/Smile.ma" gives "Smile").
std::string nodeNameOf(std::string path);

// True when a node named `name` loads without complaint: letters, digits, "_" and ":"
// namespace separators only, not empty, not starting with a digit. The blend scene
// writes names as given either way; this only lets tools warn before they do.
bool isPlainNodeName(std::string_view name);

} // namespace neq::blend
