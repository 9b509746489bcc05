#include "foundation/vd_time_start.h"

timeval s_startTimeVal = {0, 0};
