#pragma once

// State kept between host calls for as long as the library is loaded: `folder`,
// `nameSet`, `UVTileStr`, `faceID` (declared with the public interface) and
// `s_startTimeVal` (set by the log service, foundation/vd_log.h). It starts
// empty and is emptied only by the entries that clear it. Calls arrive one at a time
// on the host's thread, so nothing here is locked.

#include "api/host_entry.h"
#include "foundation/vd_log.h"
