#include "foundation/number_format.h"

#include <charconv>

namespace neq {

char* formatFloatG(char* out, float value) {
    return std::to_chars(out, out + kMaxFloatGChars, static_cast<double>(value),
                         std::chars_format::general, 6)
        .ptr;
}

char* formatInt(char* out, std::int64_t value) {
    return std::to_chars(out, out + kMaxIntChars, value).ptr;
}

} // namespace neq
