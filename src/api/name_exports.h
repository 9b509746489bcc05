#pragma once

// Typed exports over the unique-name registry held in the module's `nameSet`.

#include "foundation/export.h"

// The unique form of name, now reserved; allocated with new[] and owned by the caller.
// A null name is the empty name. Null when memory ran out.
NEQBRIDGE_API char* NameCheck(char* name);
// Empties the registry: every name may be handed out again.
NEQBRIDGE_API void NameSetClear();
