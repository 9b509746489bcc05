#pragma once

// VDString: the program's own byte string. One owned, NUL-terminated heap block and
// nothing else: no cached length, no capacity, no small-string buffer. The null
// pointer is the empty string, and every operation that produces an empty result
// leaves the null pointer rather than a block holding a lone NUL. Case folding is
// ASCII only.
//
// Pattern and character-set arguments come in two forms: a VDString, or a plain
// NUL-terminated text (null meaning empty) so that literals cost no allocation.
// Character indices are ints; -1 means "not found".

#include "foundation/export.h"

#include <cstddef>
#include <cstring>

class VDString;
// Plain text + VDString. Declared ahead so the class can befriend the exported name.
NEQBRIDGE_API VDString operator+(const char* left, const VDString& right);

class NEQBRIDGE_API VDString {
  public:
    constexpr VDString() noexcept = default;
    explicit VDString(const char* text) { set(text); }
    VDString(const VDString& other) { set(other.text_); }
    VDString(VDString&& other) noexcept : text_(other.text_) { other.text_ = nullptr; }
    VDString& operator=(const VDString& other);
    VDString& operator=(VDString&& other) noexcept;
    ~VDString() { delete[] text_; }

    // One shared empty instance for the whole program.
    static const VDString& emptyString();

    // --- access --------------------------------------------------------------------
    // The characters, or null when empty.
    const char* getString() const { return text_; }
    // The characters, or "" when empty: always safe to hand to C functions.
    const char* c_str() const { return text_ ? text_ : ""; }
    bool isEmpty() const { return text_ == nullptr || *text_ == '\0'; }
    int length() const;
    // The byte at index (0 <= index <= length(); the terminator reads as 0).
    char operator[](int index) const { return text_ ? text_[index] : '\0'; }
    bool operator==(const VDString& other) const { return cmp(text_, other.text_) == 0; }
    bool operator!=(const VDString& other) const { return !(*this == other); }

    // Size of the object itself, and of the heap block it owns (0 when empty).
    std::size_t getMemoryUsed() const { return sizeof(*this); }
    std::size_t getDynMemoryUsed() const;

    // --- building ------------------------------------------------------------------
    void set(const char* text);
    void set(const VDString& other) { set(other.text_); }
    void clear();
    // The bytes [begin, end); empty when begin is null or the range is not positive.
    void create(const char* begin, const char* end);
    // count copies of c; empty when count <= 0.
    void create(int count, char c);

    VDString operator+(const VDString& right) const;
    VDString& operator+=(const VDString& right);

    // Upper-cases a..z in place; returns the string itself.
    VDString& toUpper();
    // Bytes [start, end); end -1 or past the length means the length. Empty when start
    // is at or past the length; a negative start counts as 0.
    VDString subString(int start, int end = -1) const;
    // Drops the first n characters (keeps the tail); n >= length leaves it empty.
    void cutTo(int n);
    VDString quoted() const;
    VDString quoted(const VDString& quote) const;
    // Without the surrounding double quotes when it both starts and ends with one.
    VDString unquoted() const;
    // Optional sign, then decimal digits up to the first non-digit. No whitespace is
    // skipped and overflow wraps.
    int convertToInt() const;
    static VDString int2String(int value);
    // True when this path begins with prefix, ignoring case and treating "/" and "\"
    // as the same character.
    bool isInPath(const VDString& prefix) const { return isInPath(prefix.text_); }
    bool isInPath(const char* prefix) const;

    // --- comparison ----------------------------------------------------------------
    // -1, 0 or 1. limit <= 0 means no limit. A null side equals an empty one. cmp
    // compares signed bytes, cmpNoCase upper-cased unsigned bytes.
    static int cmp(const char* a, const char* b, int limit = 0);
    static int cmpNoCase(const char* a, const char* b, int limit = 0);

    bool startsWith(const VDString& s, bool noCase = false) const {
        return startsWith(s.text_, noCase);
    }
    bool startsWith(const char* s, bool noCase = false) const;
    bool endsWith(const VDString& s, bool noCase = false) const {
        return endsWith(s.text_, noCase);
    }
    bool endsWith(const char* s, bool noCase = false) const;

    // --- pattern searches ----------------------------------------------------------
    // findFirst is the exact search. findNext, findPrev and findLast are single passes
    // that never backtrack: after a partial match they restart only when the failing
    // byte equals the pattern's first (last) byte exactly, whatever noCase says. So
    // they can miss matches, and matches too close to the end (findNext) or the start
    // (findPrev, findLast) of the string are not reported. Callers depend on this.
    int findFirst(const VDString& p, bool noCase = false) const {
        return findFirst(p.text_, noCase);
    }
    int findFirst(const char* p, bool noCase = false) const;
    int findNext(const VDString& p, int from, bool noCase = false) const {
        return findNext(p.text_, from, noCase);
    }
    int findNext(const char* p, int from, bool noCase = false) const;
    // from <= 0 finds nothing; from past length-plen is clipped to length-plen+1.
    int findPrev(const VDString& p, int from, bool noCase = false) const {
        return findPrev(p.text_, from, noCase);
    }
    int findPrev(const char* p, int from, bool noCase = false) const;
    int findLast(const VDString& p, bool noCase = false) const { return findLast(p.text_, noCase); }
    int findLast(const char* p, bool noCase = false) const;

    // The text between the first open found from start and the next close that ends
    // at or before end: on success start is the index just after open and end the
    // index of close. start is changed on some failures (-1 when open is missing).
    bool findFirstTag(const VDString& open, const VDString& close, int& start, int& end,
                      bool noCase = false) const {
        return findFirstTag(open.text_, close.text_, start, end, noCase);
    }
    bool findFirstTag(const char* open, const char* close, int& start, int& end,
                      bool noCase = false) const;
    // Searching for tags backwards is not supported: always false.
    bool findLastTag(const VDString&, const VDString&, int&, int&, bool = false) const {
        return false;
    }

    // --- character sets --------------------------------------------------------------
    // Index of the first (last) byte that is (is not) in set; the Next/Prev forms start
    // at from, inclusive.
    int findFirstCharOf(const VDString& set) const { return findFirstCharOf(set.text_); }
    int findFirstCharOf(const char* set) const { return findNextCharOf(set, 0); }
    int findLastCharOf(const VDString& set) const { return findLastCharOf(set.text_); }
    int findLastCharOf(const char* set) const;
    int findNextCharOf(const VDString& set, int from) const {
        return findNextCharOf(set.text_, from);
    }
    int findNextCharOf(const char* set, int from) const;
    int findPrevCharOf(const VDString& set, int from) const {
        return findPrevCharOf(set.text_, from);
    }
    int findPrevCharOf(const char* set, int from) const;
    int findFirstCharNotOf(const VDString& set) const { return findFirstCharNotOf(set.text_); }
    int findFirstCharNotOf(const char* set) const { return findNextCharNotOf(set, 0); }
    int findLastCharNotOf(const VDString& set) const { return findLastCharNotOf(set.text_); }
    int findLastCharNotOf(const char* set) const;
    int findNextCharNotOf(const VDString& set, int from) const {
        return findNextCharNotOf(set.text_, from);
    }
    int findNextCharNotOf(const char* set, int from) const;
    int findPrevCharNotOf(const VDString& set, int from) const {
        return findPrevCharNotOf(set.text_, from);
    }
    int findPrevCharNotOf(const char* set, int from) const;

    // In-place edits: replace or delete the bytes that are (are not) in set.
    void replaceCharsOf(const VDString& set, char c) { replaceCharsOf(set.text_, c); }
    void replaceCharsOf(const char* set, char c);
    void replaceCharsNotOf(const VDString& set, char c) { replaceCharsNotOf(set.text_, c); }
    void replaceCharsNotOf(const char* set, char c);
    void removeCharsOf(const VDString& set) { removeCharsOf(set.text_); }
    void removeCharsOf(const char* set);
    void removeCharsNotOf(const VDString& set) { removeCharsNotOf(set.text_); }
    void removeCharsNotOf(const char* set);

    // --- formatting ------------------------------------------------------------------
    // printf-style into a 512-byte buffer: at most 511 characters, the rest is cut.
    void print(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    static VDString format(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
    // 1234567 -> "1.2m", 45678 -> "45.6k", 999 -> "999" (tenths truncated).
    void printShortCount(int n);
    // The time text is not produced: the string is always left empty.
    void printTime(unsigned long, bool) { clear(); }

    // --- paths -------------------------------------------------------------------------
    // The last path component without its extension.
    VDString getFileName() const;
    // Drops a leading "!:" or "file:" and one trailing "/" or "\".
    VDString& makePathValid();
    // A pointer into this string's own characters: the part after the first ":", from
    // its first "/". Points at "" when the string is empty.
    const char* getValidFilePath() const;
    // The next numbered name: "img19.png" -> "img20.png", "a99" -> "a100",
    // "name.png" -> "name1.png", "" -> "1".
    VDString& fileNameAdvance();

  private:
    // Takes ownership of a block allocated with new[] (null allowed).
    void adopt(char* block);
    // After an in-place edit: an empty result gives its block back.
    void releaseIfEmpty();
    friend VDString operator+(const char* left, const VDString& right);
    static VDString concat(const char* a, std::size_t aLength, const char* b, std::size_t bLength,
                           const char* c = nullptr, std::size_t cLength = 0);

    char* text_ = nullptr;
};

// Kept for callers that were never switched over to vdSprintf_s: writes nothing.
NEQBRIDGE_API void vdSprintf(char* buffer, char* fmt, ...);
// vsnprintf(buffer, size, fmt, ...); a negative size counts as 0.
NEQBRIDGE_API int vdSprintf_s(char* buffer, int size, const char* fmt, ...)
    __attribute__((format(printf, 3, 4)));

// Byte-level helpers shared by the VDString implementation files.

namespace neq::vdstring {

// Null is the empty text.
inline std::size_t textLength(const char* text) {
    return text ? std::strlen(text) : 0;
}

// The one case-folding table: a..z map to A..Z, every other byte to itself.
struct UpperCaseTable {
    unsigned char map[256] = {};
    constexpr UpperCaseTable() {
        for (int c = 0; c < 256; ++c)
            map[c] = static_cast<unsigned char>(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c);
    }
};
inline constexpr UpperCaseTable kUpperCase{};

inline unsigned char upperCase(char c) {
    return kUpperCase.map[static_cast<unsigned char>(c)];
}

inline bool sameByte(char a, char b, bool noCase) {
    return noCase ? upperCase(a) == upperCase(b) : a == b;
}

// Membership flags for the bytes of a set text, built once per call so each test
// is one lookup. The terminator is never a member.
class CharSet {
  public:
    explicit CharSet(const char* set) {
        if (set == nullptr) return;
        for (; *set != '\0'; ++set)
            member_[static_cast<unsigned char>(*set)] = true;
    }
    bool has(char c) const { return member_[static_cast<unsigned char>(c)]; }

  private:
    bool member_[256] = {};
};

} // namespace neq::vdstring
