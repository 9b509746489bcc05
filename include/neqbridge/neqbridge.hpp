// neqbridge for host-side C++ code: the host entries (neqbridge.h) and the functions
// and module state exported under their C++ names. Text a function returns as char*
// is allocated with new[]; release it with delete[]. The module state uses the
// standard library's types, so build against the same C++ standard library as the
// library was (libstdc++ on Linux, libc++ on macOS).
#pragma once

#include "neqbridge/neqbridge.h"

#include <dirent.h>
#include <sys/time.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

// --- NeQ mesh files -------------------------------------------------------------------

// Fills faceID from the faces of a base mesh at a subdivision level: the number of
// entries; -1760 the file cannot be opened.
float GetFaceIDsNeq(const char* path, double level);
// OBJ export of a subdivided mesh grouped by faceID: 0 written (faceID consumed); -18
// faceID empty; -1760 input not openable; -2 output not openable or not completely
// written; otherwise the block tag found where another was expected (-1: end of file).
float writeOBJfromNeq(const char* inPath, char* outPath);
// Writes the RGB block of the mesh to outPath: 0; -1760 input; -2 output.
float ReadVertColorNeq(const char* path, char* outPath);
// Number of UV tiles; buffer receives the tile of the last UV record. -17 cannot open,
// -18 no UV block.
float GetUVTile(const char* path, char* buffer);
// Writes one NeQ file per UV tile next to base and lists the tiles in UVTileStr: the
// tile count; -1760 cannot open; -18 no UV block; 1500 + k + 1 when file k fails.
float GetUVsFromNeQ(const char* path, char* base);
// Copies entry index of UVTileStr into buffer.
void getUVTileString(int index, char* buffer);
// Empties UVTileStr.
void clearUVTileString();
// Number of distinct groups: -17 cannot open, -18 no group block.
float GetUVGroup(const char* path);
// Little-endian field readers: four bytes, two bytes, one byte.
unsigned int readUnInt(char b0, char b1, char b2, char b3);
int readSignInt(char b0, char b1, char b2, char b3);
float readaFloat(char b0, char b1, char b2, char b3);
int readShort(char b0, char b1);
int readanInt(char b);

// --- Blend-shape scenes ---------------------------------------------------------------

// What addBlendFile and endBlendFile do once their pointers are checked.
float addBlend(const char* targetPath, char* basePath);
float finishBlend(const char* basePath);

// --- Names, folders and files ---------------------------------------------------------

// The unique form of name, now reserved (new[]); null when memory ran out.
char* NameCheck(char* name);
void NameSetClear();
// True when the last path component has no ".": a name test, not a file-system one.
bool IsDirectory(char* path);
// Removes the files of a folder named path followed by a backslash; false when it
// cannot be opened.
bool ClearFolder(std::string path);
// Creates one folder whose parent exists.
bool createFolder(const char* path);
// The users' home folders ("/Users" on macOS, "/home" on Linux), new[]; or null.
char* getSharedFolder();
// The file a chooser returned (new[]), or null when cancelled or unavailable.
char* runCocoaOpenFileBrowser(const char* title);
// vsnprintf into buffer; a negative size counts as 0.
int vdSprintf_s(char* buffer, int size, const char* fmt, ...);
// Writes nothing; kept for old callers.
void vdSprintf(char* buffer, char* fmt, ...);

// --- Module state (one instance for the whole process) --------------------------------

// The open directory stream of the folder listing entries, or null.
extern DIR* folder;
// Every name handed out since the registry was last cleared.
extern std::set<std::string> nameSet;
// One list shared by UV tile names and blend-target names.
extern std::vector<std::string> UVTileStr;
// For each base face, how many subdivided faces come from it.
extern std::vector<std::uint32_t> faceID;
// Start time stamp of the log service.
extern timeval s_startTimeVal;
