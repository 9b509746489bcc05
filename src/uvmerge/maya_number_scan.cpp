#include "uvmerge/maya_number_scan.h"

#include <climits>
#include <cstdint>

namespace neq::uvmerge {

// 10^k for k up to 22 is exact, as repeated multiplication by 10 makes it.
const double detail::kExactPow10[16] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

namespace {

using detail::kExactPow10;

// Up to this many digits the mantissa is an exact integer in a double, so gathering it
// in an integer and converting once gives the double that digit-by-digit arithmetic
// would.
constexpr int kExactDigits = 15;

// The rest of a real whose digits no longer fit an exact integer: the same steps in
// double arithmetic, from the state gathered so far.
float finishLongReal(LineCursor& cursor, const char* p, double sign, double mantissa,
                     double divisor) {
    for (; p != cursor.end; ++p) {
        const char c = *p;
        if (isDigit(c)) {
            mantissa = mantissa * 10.0 + (c - '0');
            divisor *= 10.0;
        } else if (c == '.') {
            divisor = 1.0;
        } else if (c == '+' || c == '-') {
            sign = c == '-' ? -1.0 : 1.0;
        } else {
            cursor.pos = p;
            return static_cast<float>(divisor > 0.0 ? sign * mantissa / divisor : sign * mantissa);
        }
    }
    cursor.pos = p;
    return 0.0f;
}

} // namespace

int detail::scanAnyInt(LineCursor& cursor) {
    constexpr std::uint64_t kSaturated = std::uint64_t{1} << 31;
    std::uint64_t value = 0;
    bool negative = false;
    for (const char* p = cursor.pos; p != cursor.end; ++p) {
        const char c = *p;
        if (isDigit(c)) {
            value = value * 10 + static_cast<std::uint64_t>(c - '0');
            if (value > kSaturated) value = kSaturated;
        } else if (c == '+' || c == '-') {
            negative = c == '-';
        } else {
            cursor.pos = p;
            if (negative) return static_cast<int>(-static_cast<std::int64_t>(value));
            return value > INT_MAX ? INT_MAX : static_cast<int>(value);
        }
    }
    cursor.pos = cursor.end;
    return 0;
}

float detail::scanAnyReal(LineCursor& cursor) {
    std::uint64_t mantissa = 0;
    int digits = 0;
    int fractionDigits = -1; // digits since the last point; -1 before any point
    double sign = 1.0;
    for (const char* p = cursor.pos; p != cursor.end; ++p) {
        const char c = *p;
        if (isDigit(c)) {
            if (digits == kExactDigits)
                return finishLongReal(cursor, p, sign, static_cast<double>(mantissa),
                                      fractionDigits < 0 ? 0.0 : kExactPow10[fractionDigits]);
            mantissa = mantissa * 10 + static_cast<std::uint64_t>(c - '0');
            ++digits;
            if (fractionDigits >= 0) ++fractionDigits;
        } else if (c == '.') {
            fractionDigits = 0;
        } else if (c == '+' || c == '-') {
            sign = c == '-' ? -1.0 : 1.0;
        } else {
            cursor.pos = p;
            const double value = sign * static_cast<double>(mantissa);
            return static_cast<float>(fractionDigits < 0 ? value
                                                         : value / kExactPow10[fractionDigits]);
        }
    }
    cursor.pos = cursor.end;
    return 0.0f;
}

} // namespace neq::uvmerge
