#pragma once

// The number scanners of the Maya ASCII rewrite. They work on one line at a time and
// read numbers the way the host's scenes have always been read: signs may stand
// anywhere in a number ("1-2" is -12), "e" ends a number (no exponents), and a number
// that runs into the end of the line without a character to end it reads as 0 (data
// lines end with ";", which ends their last number). Every scanner first skips blanks
// (space and tab) and never consumes the character that ends its number.

#include <cstddef>

namespace neq::uvmerge {

// The unread part of one line: [pos, end), without its terminator.
struct LineCursor {
    const char* pos;
    const char* end;

    bool atEnd() const { return pos == end; }
    std::size_t remaining() const { return static_cast<std::size_t>(end - pos); }
};

inline bool isBlank(char c) {
    return c == ' ' || c == '\t';
}
inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
// Characters a number may be made of; "." only counts for reals and skipped numbers.
inline bool isNumberChar(char c) {
    return isDigit(c) || c == '+' || c == '-' || c == '.';
}

inline void skipBlanks(LineCursor& cursor) {
    while (cursor.pos != cursor.end && isBlank(*cursor.pos))
        ++cursor.pos;
}

// After skipping blanks: true when every further number on the line reads as 0 without
// moving the cursor (the line is used up, or stands at a character no number starts with).
inline bool restReadsAsZero(LineCursor& cursor) {
    skipBlanks(cursor);
    return cursor.atEnd() || !isNumberChar(*cursor.pos);
}

namespace detail {
// The scanners for every form a number may take; the inline ones below read the usual
// forms ("-12", "0.125") themselves and leave the rest to these.
int scanAnyInt(LineCursor& cursor);
float scanAnyReal(LineCursor& cursor);
extern const double kExactPow10[16];
} // namespace detail

// Signs and digits; sign x value. Digit runs beyond the int range saturate: they read
// as 2147483647, or -2147483648 with a minus sign.
inline int scanInt(LineCursor& cursor) {
    skipBlanks(cursor);
    const char* p = cursor.pos;
    const char* const end = cursor.end;
    const bool negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+')) ++p;
    // At most nine digits fit an int whatever they are.
    const char* const digitsEnd = end - p > 9 ? p + 9 : end;
    int value = 0;
    for (; p != digitsEnd; ++p) {
        const unsigned digit = static_cast<unsigned>(*p - '0');
        if (digit > 9) break;
        value = value * 10 + static_cast<int>(digit);
    }
    if (p == end || isDigit(*p) || *p == '+' || *p == '-') return detail::scanAnyInt(cursor);
    cursor.pos = p;
    return negative ? -value : value;
}

// Signs, digits and points; sign x mantissa / divisor in double precision, stored as a
// float. A point sets the divisor to 1 and every digit multiplies it by 10 (before any
// point it stays 0 and is not used). Runs of more than about 308 digits overflow the
// double: they read as infinity, or as NaN when the point comes before the overflow.
inline float scanReal(LineCursor& cursor) {
    skipBlanks(cursor);
    const char* p = cursor.pos;
    const char* const end = cursor.end;
    const bool negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+')) ++p;
    // Up to 15 digits the mantissa is exact in an integer and in a double alike. The
    // digits before the point and those after it are gathered by two tight loops.
    const auto gatherDigits = [end](const char*& at, long long& value, std::ptrdiff_t most) {
        const char* const from = at;
        const char* const stop = end - at > most ? at + most : end;
        for (; at != stop; ++at) {
            const unsigned digit = static_cast<unsigned>(*at - '0');
            if (digit > 9) break;
            value = value * 10 + digit;
        }
        return static_cast<int>(at - from);
    };
    long long mantissa = 0;
    const int digits = gatherDigits(p, mantissa, 15);
    int fractionDigits = -1;
    if (digits < 15 && p != end && *p == '.')
        fractionDigits = gatherDigits(++p, mantissa, 15 - digits);
    if (p == end || isNumberChar(*p)) return detail::scanAnyReal(cursor);
    cursor.pos = p;
    const double value = (negative ? -1.0 : 1.0) * static_cast<double>(mantissa);
    return static_cast<float>(fractionDigits < 0 ? value
                                                 : value / detail::kExactPow10[fractionDigits]);
}

// Skips blanks and then the characters of one number ("+", "-", "." and digits).
inline void skipNumber(LineCursor& cursor) {
    skipBlanks(cursor);
    while (cursor.pos != cursor.end && isNumberChar(*cursor.pos))
        ++cursor.pos;
}

} // namespace neq::uvmerge
