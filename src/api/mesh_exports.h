#pragma once

// Typed exports over NeQ mesh files: field readers, face IDs, colours, OBJ export.

#include "foundation/export.h"

NEQBRIDGE_API unsigned int readUnInt(char b0, char b1, char b2, char b3);
NEQBRIDGE_API int readSignInt(char b0, char b1, char b2, char b3);
NEQBRIDGE_API float readaFloat(char b0, char b1, char b2, char b3);
NEQBRIDGE_API int readShort(char b0, char b1);
NEQBRIDGE_API int readanInt(char b);

// OBJ export of a subdivided mesh, grouped by the face IDs that GetFaceIDsNeq recorded
// in `faceID`: 0 written (and `faceID` consumed), -18 `faceID` empty, -1760 input not
// openable, -2 output not openable or not completely written, -1 if memory runs out,
// otherwise the block tag found where another was expected (-1 when the file ends
// before that tag). Every failure leaves `faceID` as it was.
NEQBRIDGE_API float writeOBJfromNeq(const char* inPath, char* outPath);

// Fills `faceID` from the faces of a base mesh at a subdivision level. Returns the
// number of entries, -1760 if the file cannot be opened, -1 if memory runs out.
NEQBRIDGE_API float GetFaceIDsNeq(const char* path, double level);

// Writes the RGB block of a colour-block-first NeQ file to outPath: 0, -1760 input not
// openable, -2 output not openable or not completely written, -1 if memory runs out.
NEQBRIDGE_API float ReadVertColorNeq(const char* path, char* outPath);
