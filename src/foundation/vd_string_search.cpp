// Pattern searches of VDString. findFirst is exact; findNext, findPrev and findLast
// are deliberately single passes that never backtrack (see the header).

#include "foundation/vd_string.h"

#include "foundation/vd_string_chars.h"

using neq::vdstring::sameByte;
using neq::vdstring::textLength;

namespace {

bool matchesAt(const char* subject, const char* pattern, int patternLength, bool noCase) {
    for (int i = 0; i < patternLength; ++i)
        if (!sameByte(subject[i], pattern[i], noCase)) return false;
    return true;
}

// The forward pass: pos runs from `pos` to `last` inclusive. The bound is on the
// scanning position, not on the match's start, so a match that ends after `last` is
// never reported. A mismatch restarts at 1 only when the byte is exactly the
// pattern's first byte.
int scanForward(const char* subject, const char* pattern, int patternLength, int pos, int last,
                bool noCase) {
    int matched = 0;
    for (; pos <= last; ++pos) {
        if (sameByte(subject[pos], pattern[matched], noCase)) {
            if (matched == patternLength - 1) return pos - matched;
            ++matched;
        } else {
            matched = subject[pos] == pattern[0] ? 1 : 0;
        }
    }
    return -1;
}

// The mirror pass, from `pos` down while pos >= patternLength, so a match starting
// below patternLength is never reported.
int scanBackward(const char* subject, const char* pattern, int patternLength, int pos,
                 bool noCase) {
    const char lastByte = pattern[patternLength - 1];
    int k = patternLength - 1;
    for (; pos >= patternLength; --pos) {
        if (sameByte(subject[pos], pattern[k], noCase)) {
            if (k == 0) return pos;
            --k;
        } else {
            k = subject[pos] == lastByte ? patternLength - 2 : patternLength - 1;
        }
    }
    return -1;
}

} // namespace

int VDString::findFirst(const char* p, bool noCase) const {
    const int patternLength = static_cast<int>(textLength(p));
    const int size = length();
    // An empty pattern is found nowhere, like in the other searches.
    if (patternLength == 0 || patternLength > size) return -1;
    for (int start = 0; start <= size - patternLength; ++start)
        if (matchesAt(text_ + start, p, patternLength, noCase)) return start;
    return -1;
}

int VDString::findNext(const char* p, int from, bool noCase) const {
    const int patternLength = static_cast<int>(textLength(p));
    const int last = length() - patternLength;
    if (patternLength == 0 || last < 0) return -1;
    if (from < 0) from = 0; // not a valid request; read it as "from the start"
    return scanForward(text_, p, patternLength, from, last, noCase);
}

int VDString::findPrev(const char* p, int from, bool noCase) const {
    const int patternLength = static_cast<int>(textLength(p));
    if (from <= 0 || patternLength == 0) return -1;
    const int last = length() - patternLength;
    if (from > last) from = last + 1;
    return scanBackward(text_, p, patternLength, from, noCase);
}

int VDString::findLast(const char* p, bool noCase) const {
    const int patternLength = static_cast<int>(textLength(p));
    if (patternLength == 0) return -1;
    // Starts on the terminator, which never matches; the bound of scanBackward
    // decides which matches near the start are missed.
    return scanBackward(text_, p, patternLength, length(), noCase);
}

bool VDString::findFirstTag(const char* open, const char* close, int& start, int& end,
                            bool noCase) const {
    const int openLength = static_cast<int>(textLength(open));
    const int closeLength = static_cast<int>(textLength(close));
    if (isEmpty() || openLength == 0 || closeLength == 0) return false;
    const int size = length();
    if (start < 0) start = 0;
    if (start >= size) return false;
    if (end > size) end = size;
    if (end <= start) return false;
    const int openAt = findNext(open, start, noCase);
    if (openAt < 0) {
        start = -1;
        return false;
    }
    start = openAt + openLength;
    if (start < end) {
        const int closeAt = findNext(close, start, noCase);
        if (closeAt >= 0 && closeAt + closeLength <= end) {
            end = closeAt;
            return true;
        }
    }
    return false;
}
