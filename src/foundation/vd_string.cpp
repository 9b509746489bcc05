#include "foundation/vd_string.h"

#include "foundation/vd_string_chars.h"

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
