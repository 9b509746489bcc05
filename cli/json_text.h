#pragma once

#include <string>

namespace neq::cli {

// text as a JSON string: quoted, with quotes, backslashes and control bytes escaped.
std::string jsonString(const std::string& text);

} // namespace neq::cli
