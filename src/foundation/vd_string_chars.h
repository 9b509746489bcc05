#pragma once

// Byte-level helpers shared by the VDString implementation files.

#include <cstddef>
#include <cstring>

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
