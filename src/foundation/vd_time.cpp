#include "foundation/vd_time.h"

#include <cerrno>

std::clock_t VDTimeService::clock() {
    return std::clock();
}

int VDTimeService::getCurTimeInMS() {
    // The clock counts microseconds on the targets this was written for; the divisor
    // is kept as written rather than taken from CLOCKS_PER_SEC.
    return static_cast<int>(static_cast<long long>(clock()) * 1000 / 1000000);
}

void VDTimeService::sleep(unsigned int ms) {
    // nanosleep rather than usleep: usleep may refuse a second or more.
    timespec remaining{static_cast<std::time_t>(ms / 1000),
                       static_cast<long>(ms % 1000) * 1000000L};
    while (::nanosleep(&remaining, &remaining) != 0 && errno == EINTR) {
    }
}
