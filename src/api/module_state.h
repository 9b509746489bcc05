#pragma once

// State kept between host calls for as long as the library is loaded. It starts
// empty and is emptied only by the entries that clear it. Calls arrive one at a
// time on the host's thread, so nothing here is locked.

#include "foundation/export.h"
#include "foundation/vd_time_start.h"

#include <dirent.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

// The one open directory stream of the folder listing entries, or null.
extern NEQBRIDGE_API DIR* folder;
// Every name handed out by NameCheck since the registry was last cleared.
extern NEQBRIDGE_API std::set<std::string> nameSet;
// One list shared by UV tile names and blend-target names.
extern NEQBRIDGE_API std::vector<std::string> UVTileStr;
// For each base face, how many subdivided faces come from it.
extern NEQBRIDGE_API std::vector<std::uint32_t> faceID;
// s_startTimeVal, the log service's start time, comes from foundation/vd_time_start.h.
