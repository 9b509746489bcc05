#include "foundation/vd_string.h"

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>

using neq::vdstring::textLength;
using neq::vdstring::upperCase;

namespace {

// Constant-initialised (the default constructor is constexpr), so it is usable from
// any other static initialiser.
const VDString kEmptyString;

// Walks a and b until a difference, the end of a, or limit bytes. fold maps a byte to
// the value that is compared.
template <class Fold> int compareBytes(const char* a, const char* b, int limit, Fold fold) {
    if (limit <= 0) limit = 0x7FFFFFFF;
    if (a == nullptr) return (b != nullptr && *b != '\0') ? -1 : 0;
    if (b == nullptr) return *a != '\0' ? 1 : 0;
    for (int i = 0; i < limit; ++i) {
        const auto ca = fold(a[i]);
        const auto cb = fold(b[i]);
        if (ca != cb) return ca < cb ? -1 : 1;
        if (a[i] == '\0') return 0;
    }
    return 0;
}

} // namespace

VDString& VDString::operator=(const VDString& other) {
    set(other.text_);
    return *this;
}

VDString& VDString::operator=(VDString&& other) noexcept {
    if (this != &other) {
        delete[] text_;
        text_ = other.text_;
        other.text_ = nullptr;
    }
    return *this;
}

const VDString& VDString::emptyString() {
    return kEmptyString;
}

int VDString::length() const {
    return static_cast<int>(textLength(text_));
}

std::size_t VDString::getDynMemoryUsed() const {
    return text_ ? std::strlen(text_) + 1 : 0;
}

void VDString::adopt(char* block) {
    delete[] text_;
    text_ = block;
}

void VDString::releaseIfEmpty() {
    if (text_ != nullptr && *text_ == '\0') clear();
}

void VDString::clear() {
    adopt(nullptr);
}

void VDString::set(const char* text) {
    // Copy before releasing the old block: text may point into it.
    char* block = nullptr;
    if (text != nullptr && *text != '\0') {
        const std::size_t size = std::strlen(text) + 1;
        block = new char[size];
        std::memcpy(block, text, size);
    }
    adopt(block);
}

void VDString::create(const char* begin, const char* end) {
    char* block = nullptr;
    if (begin != nullptr && end > begin && *begin != '\0') {
        const std::size_t count = static_cast<std::size_t>(end - begin);
        block = new char[count + 1];
        std::memcpy(block, begin, count);
        block[count] = '\0';
    }
    adopt(block);
}

void VDString::create(int count, char c) {
    char* block = nullptr;
    if (count > 0 && c != '\0') {
        block = new char[static_cast<std::size_t>(count) + 1];
        std::memset(block, c, static_cast<std::size_t>(count));
        block[count] = '\0';
    }
    adopt(block);
}

VDString VDString::concat(const char* a, std::size_t aLength, const char* b, std::size_t bLength,
                          const char* c, std::size_t cLength) {
    VDString result;
    const std::size_t total = aLength + bLength + cLength;
    if (total == 0) return result;
    char* block = new char[total + 1];
    // memcpy needs valid pointers even for zero counts; empty parts may be null.
    if (aLength) std::memcpy(block, a, aLength);
    if (bLength) std::memcpy(block + aLength, b, bLength);
    if (cLength) std::memcpy(block + aLength + bLength, c, cLength);
    block[total] = '\0';
    result.adopt(block);
    return result;
}

VDString VDString::operator+(const VDString& right) const {
    return concat(text_, textLength(text_), right.text_, textLength(right.text_));
}

VDString operator+(const char* left, const VDString& right) {
    return VDString::concat(left, textLength(left), right.text_, textLength(right.text_));
}

VDString& VDString::operator+=(const VDString& right) {
    *this = *this + right;
    return *this;
}

VDString& VDString::toUpper() {
    if (text_ != nullptr)
        for (char* p = text_; *p != '\0'; ++p)
            *p = static_cast<char>(upperCase(*p));
    return *this;
}

VDString VDString::subString(int start, int end) const {
    const int size = length();
    if (end == -1 || end > size) end = size;
    if (start < 0) start = 0; // not a valid request; read it as "from the start"
    VDString result;
    if (start < size && end > start) result.create(text_ + start, text_ + end);
    return result;
}

void VDString::cutTo(int n) {
    if (n <= 0 || isEmpty()) return;
    const std::size_t size = std::strlen(text_);
    if (static_cast<std::size_t>(n) < size) {
        std::memmove(text_, text_ + n, size - static_cast<std::size_t>(n) + 1);
    } else {
        clear();
    }
}

VDString VDString::quoted() const {
    return concat("\"", 1, text_, textLength(text_), "\"", 1);
}

VDString VDString::quoted(const VDString& quote) const {
    const std::size_t quoteLength = textLength(quote.text_);
    return concat(quote.text_, quoteLength, text_, textLength(text_), quote.text_, quoteLength);
}

VDString VDString::unquoted() const {
    const int size = length();
    if (size > 0 && text_[0] == '"' && text_[size - 1] == '"') return subString(1, size - 1);
    return *this;
}

int VDString::convertToInt() const {
    const char* p = c_str();
    const bool negative = *p == '-';
    if (*p == '+' || *p == '-') ++p;
    // Unsigned arithmetic: overflow wraps instead of being undefined.
    unsigned int value = 0;
    for (; *p >= '0' && *p <= '9'; ++p)
        value = value * 10u + static_cast<unsigned int>(*p - '0');
    return static_cast<int>(negative ? 0u - value : value);
}

int VDString::cmp(const char* a, const char* b, int limit) {
    return compareBytes(a, b, limit, [](char c) { return static_cast<signed char>(c); });
}

int VDString::cmpNoCase(const char* a, const char* b, int limit) {
    return compareBytes(a, b, limit, upperCase);
}

bool VDString::startsWith(const char* s, bool noCase) const {
    const std::size_t sLength = textLength(s);
    if (sLength == 0) return true;
    // Only as much of this string as s needs is measured.
    if (text_ == nullptr || ::strnlen(text_, sLength) < sLength) return false;
    const int limit = static_cast<int>(sLength);
    return (noCase ? cmpNoCase(text_, s, limit) : cmp(text_, s, limit)) == 0;
}

bool VDString::endsWith(const char* s, bool noCase) const {
    const std::size_t sLength = textLength(s);
    const std::size_t size = textLength(text_);
    if (sLength > size) return false;
    if (sLength == 0) return true;
    const char* tail = text_ + (size - sLength);
    const int limit = static_cast<int>(sLength);
    return (noCase ? cmpNoCase(tail, s, limit) : cmp(tail, s, limit)) == 0;
}

// Character-set searches and edits of VDString. Each call builds one membership
// table from its set, so every byte costs one lookup.

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

// printf-style formatting of VDString and the two plain-buffer formatters.

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

// Path helpers of VDString. Separators are "/" and "\" alike.

using neq::vdstring::textLength;
using neq::vdstring::upperCase;

namespace {

constexpr char kSeparators[] = "/\\";

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

// Case and separator folding for path prefixes.
unsigned char pathByte(char c) {
    return isSeparator(c) ? '/' : upperCase(c);
}

} // namespace

bool VDString::isInPath(const char* prefix) const {
    const std::size_t prefixLength = textLength(prefix);
    if (prefixLength == 0) return true;
    if (text_ == nullptr) return false;
    for (std::size_t i = 0; i < prefixLength; ++i) {
        if (text_[i] == '\0') return false; // shorter than the prefix
        if (pathByte(text_[i]) != pathByte(prefix[i])) return false;
    }
    return true;
}

VDString VDString::getFileName() const {
    VDString name;
    if (text_ == nullptr) return name;
    const char* end = text_ + std::strlen(text_);
    const char* nameEnd = end;
    const char* start = end;
    // Backwards to the last separator; the first dot met ends the name.
    for (; start > text_ && !isSeparator(start[-1]); --start)
        if (start[-1] == '.' && nameEnd == end) nameEnd = start - 1;
    name.create(start, nameEnd);
    return name;
}

VDString& VDString::makePathValid() {
    if (startsWith("!:")) {
        cutTo(2);
    } else if (startsWith("file:", true)) {
        cutTo(5);
    }
    const int size = length();
    if (size > 0 && isSeparator(text_[size - 1])) {
        text_[size - 1] = '\0';
        releaseIfEmpty();
    }
    return *this;
}

const char* VDString::getValidFilePath() const {
    if (text_ == nullptr) return "";
    const char* colon = std::strchr(text_, ':');
    const char* path = colon ? colon + 1 : text_;
    const char* slash = std::strchr(path, '/');
    return slash ? slash : path;
}

VDString& VDString::fileNameAdvance() {
    if (isEmpty()) {
        set("1");
        return *this;
    }
    const int size = length();
    const char* dot = std::strrchr(text_, '.');
    const int dotAt = dot ? static_cast<int>(dot - text_) : -1;
    // The number sits before the extension, unless the last dot is in a folder name.
    const int numberEnd = dotAt > findLastCharOf(kSeparators) ? dotAt - 1 : size - 1;
    int pos = numberEnd;
    while (pos >= 0 && text_[pos] == '9')
        --pos;
    if (pos >= 0 && text_[pos] >= '0' && text_[pos] <= '8') {
        ++text_[pos];
        std::memset(text_ + pos + 1, '0', static_cast<std::size_t>(numberEnd - pos));
        return *this;
    }
    // No digit to carry into: "1" goes in front of the run of nines, which become 0s.
    const int insertAt = pos + 1;
    const int nines = numberEnd - pos;
    char* block = new char[static_cast<std::size_t>(size) + 2];
    std::memcpy(block, text_, static_cast<std::size_t>(insertAt));
    block[insertAt] = '1';
    std::memset(block + insertAt + 1, '0', static_cast<std::size_t>(nines));
    std::memcpy(block + numberEnd + 2, text_ + numberEnd + 1,
                static_cast<std::size_t>(size - numberEnd)); // the tail and its terminator
    adopt(block);
    return *this;
}

// Pattern searches of VDString. findFirst is exact; findNext, findPrev and findLast
// are deliberately single passes that never backtrack (see the header).

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
