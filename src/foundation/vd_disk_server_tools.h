#pragma once

// The argument vectors the disk server hands to the desktop's tools. Internal to the
// library.

#include "foundation/vd_string.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace neq::diskserver {

// A path given to a tool as an operand: the volume prefix dropped, and "./" put in
// front of a path that begins with "-", which the tool would take for an option.
std::string operandPath(const VDString& path);

// "osascript -e LINE -e LINE ... ARGUMENTS": a fixed script whose run handler reads
// the arguments from its argv, so no text is ever spliced into script source. The
// first argument must not begin with "-", or osascript would read it as an option.
std::vector<std::string> osascriptCommand(std::initializer_list<const char*> scriptLines,
                                          std::vector<std::string> arguments);

} // namespace neq::diskserver
