#pragma once

// The Maya ASCII statements that put a blend-shape deformer on the base mesh: one
// weight per target, every weight 0 and aliased to its target's name, the tweak, group
// and set nodes it needs, and a script node that opens the blend-shape editor when the
// scene loads.

#include <string>
#include <vector>

namespace neq::blend {

// Appends the statements to `text`, every line ending in "\n". `baseName` names the
// base mesh ("{base}Shape", "{base}ShapeOrig", the "{base}:" shading nodes); each
// target name names its mesh ("{target}Shape") and its "{target}:" shading nodes.
// Names are written as given, without quoting or escaping.
void appendBlendStatements(std::string& text, const std::string& baseName,
                           const std::vector<std::string>& targetNames);

} // namespace neq::blend
