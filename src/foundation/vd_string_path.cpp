// Path helpers of VDString. Separators are "/" and "\" alike.

#include "foundation/vd_string.h"

#include "foundation/vd_string_chars.h"

#include <cstring>

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
