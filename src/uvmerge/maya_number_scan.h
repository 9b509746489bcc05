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

// Signs and digits; sign x value. Digit runs beyond the int range saturate: they read
// as 2147483647, or -2147483648 with a minus sign.
int scanInt(LineCursor& cursor);

// Signs, digits and points; sign x mantissa / divisor in double precision, stored as a
// float. A point sets the divisor to 1 and every digit multiplies it by 10 (before any
// point it stays 0 and is not used). Runs of more than about 308 digits overflow the
// double: they read as infinity, or as NaN when the point comes before the overflow.
float scanReal(LineCursor& cursor);

// Skips blanks and then the characters of one number ("+", "-", "." and digits).
void skipNumber(LineCursor& cursor);

} // namespace neq::uvmerge
