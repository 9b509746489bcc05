// printf-style formatting of VDString and the two plain-buffer formatters.

#include "foundation/vd_string.h"

#include <cstdarg>
#include <cstdio>

namespace {

// Formatted text is limited to what fits this buffer with its terminator.
constexpr int kPrintBufferSize = 512;

void printInto(VDString& target, const char* fmt, va_list args) {
    char buffer[kPrintBufferSize];
    if (fmt == nullptr || std::vsnprintf(buffer, sizeof buffer, fmt, args) < 0) buffer[0] = '\0';
    target.set(buffer);
}

} // namespace

void VDString::print(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    printInto(*this, fmt, args);
    va_end(args);
}

VDString VDString::format(const char* fmt, ...) {
    VDString result;
    va_list args;
    va_start(args, fmt);
    printInto(result, fmt, args);
    va_end(args);
    return result;
}

VDString VDString::int2String(int value) {
    return format("%d", value);
}

void VDString::printShortCount(int n) {
    const int millions = n / 1000000;
    const int rest = n % 1000000;
    const int thousands = rest / 1000;
    // Tenths are truncated, not rounded.
    if (millions >= 1) {
        print("%d.%dm", millions, thousands / 100);
    } else if (thousands >= 1) {
        print("%d.%dk", thousands, (rest % 1000) / 100);
    } else {
        print("%d", rest % 1000);
    }
}

void vdSprintf(char*, char*, ...) {}

int vdSprintf_s(char* buffer, int size, const char* fmt, ...) {
    // vsnprintf takes an unsigned size: a negative one (or no buffer) must not turn
    // into "unbounded".
    const std::size_t bound = (buffer == nullptr || size < 0) ? 0 : static_cast<std::size_t>(size);
    va_list args;
    va_start(args, fmt);
    const int written = std::vsnprintf(buffer, bound, fmt, args);
    va_end(args);
    return written;
}
