#pragma once

// Typed exports over NeQ mesh files: field readers, face IDs, colours, OBJ export.

#include "foundation/export.h"

NEQBRIDGE_API unsigned int readUnInt(char b0, char b1, char b2, char b3);
NEQBRIDGE_API int readSignInt(char b0, char b1, char b2, char b3);
NEQBRIDGE_API float readaFloat(char b0, char b1, char b2, char b3);
NEQBRIDGE_API int readShort(char b0, char b1);
NEQBRIDGE_API int readanInt(char b);
