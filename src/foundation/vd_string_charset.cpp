// Character-set searches and edits of VDString. Each call builds one membership
// table from its set, so every byte costs one lookup.

#include "foundation/vd_string.h"

#include "foundation/vd_string_chars.h"

#include <climits>
#include <cstring>

using neq::vdstring::CharSet;

namespace {

// First index >= from whose membership equals `inSet`. A from past the end finds
// nothing; a negative from counts as 0.
int scanNext(const char* text, const char* set, int from, bool inSet) {
    if (text == nullptr) return -1;
    if (from < 0) from = 0;
    const std::size_t start = static_cast<std::size_t>(from);
    if (::strnlen(text, start) < start) return -1;
    const CharSet members(set);
    for (const char* p = text + start; *p != '\0'; ++p)
        if (members.has(*p) == inSet) return static_cast<int>(p - text);
    return -1;
}

// Last index <= from whose membership equals `inSet`; from past the end starts at
// the last character.
int scanPrev(const char* text, const char* set, int from, bool inSet) {
    if (text == nullptr || from < 0) return -1;
    const std::size_t measured = ::strnlen(text, static_cast<std::size_t>(from) + 1);
    int pos = measured <= static_cast<std::size_t>(from) ? static_cast<int>(measured) - 1 : from;
    const CharSet members(set);
    for (; pos >= 0; --pos)
        if (members.has(text[pos]) == inSet) return pos;
    return -1;
}

// Replaces every byte whose membership equals `inSet` by c.
void replaceWhere(char* text, const char* set, bool inSet, char c) {
    const CharSet members(set);
    for (char* p = text; *p != '\0'; ++p)
        if (members.has(*p) == inSet) *p = c;
}

// Deletes every byte whose membership equals `inSet`, compacting in place.
void removeWhere(char* text, const char* set, bool inSet) {
    const CharSet members(set);
    char* kept = text;
    for (const char* p = text; *p != '\0'; ++p)
        if (members.has(*p) != inSet) *kept++ = *p;
    *kept = '\0';
}

} // namespace

int VDString::findNextCharOf(const char* set, int from) const {
    return scanNext(text_, set, from, true);
}

int VDString::findNextCharNotOf(const char* set, int from) const {
    return scanNext(text_, set, from, false);
}

int VDString::findPrevCharOf(const char* set, int from) const {
    return scanPrev(text_, set, from, true);
}

int VDString::findPrevCharNotOf(const char* set, int from) const {
    return scanPrev(text_, set, from, false);
}

int VDString::findLastCharOf(const char* set) const {
    return scanPrev(text_, set, INT_MAX - 1, true);
}

int VDString::findLastCharNotOf(const char* set) const {
    return scanPrev(text_, set, INT_MAX - 1, false);
}

void VDString::replaceCharsOf(const char* set, char c) {
    if (isEmpty()) return;
    replaceWhere(text_, set, true, c);
    releaseIfEmpty(); // c may be the terminator
}

void VDString::replaceCharsNotOf(const char* set, char c) {
    if (isEmpty()) return;
    replaceWhere(text_, set, false, c);
    releaseIfEmpty();
}

void VDString::removeCharsOf(const char* set) {
    if (isEmpty()) return;
    removeWhere(text_, set, true);
    releaseIfEmpty();
}

void VDString::removeCharsNotOf(const char* set) {
    if (isEmpty()) return;
    removeWhere(text_, set, false);
    releaseIfEmpty();
}
