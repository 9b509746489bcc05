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

// True when `name` can stand inside the double-quoted strings of the blend statements
// without ending them: no double quote, no backslash, no control character (below 0x20,
// or 0x7F). Anything else would let a file name add statements that Maya runs when the
// scene opens. Dots and the like are fine ("a.b", "Head.v1").
bool isQuotableNodeName(std::string_view name);

} // namespace neq::blend
