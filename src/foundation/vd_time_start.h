#pragma once

// The time of day at which the log service was initialised. It is module state the
// host can read as a data symbol, but it belongs to the foundation layer that sets it,
// so the layers above include it from here.

#include "foundation/export.h"

#include <sys/time.h>

// Zero until VDLogServer::init records the current time of day.
extern NEQBRIDGE_API timeval s_startTimeVal;
