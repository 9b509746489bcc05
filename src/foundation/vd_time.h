#pragma once

// VDTimeService: the processor clock in milliseconds and a sleep.

#include "foundation/export.h"

#include <ctime>

class NEQBRIDGE_API VDTimeService {
  public:
    // The processor clock (std::clock).
    static std::clock_t clock();
    // Processor time in milliseconds: clock() * 1000 / 1000000.
    static int getCurTimeInMS();
    // Waits ms milliseconds.
    static void sleep(unsigned int ms);
};
