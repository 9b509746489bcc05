#pragma once

// Number text exactly as printf writes it, without printf's locale and stream cost.

#include <cstdint>

namespace neq {

// Longest text formatFloatG can produce, e.g. "-1.17549e-38".
constexpr int kMaxFloatGChars = 16;
// Longest text formatInt can produce, e.g. "-9223372036854775808".
constexpr int kMaxIntChars = 20;

// printf("%g", double(value)): six significant digits, trailing zeros dropped, the
// shorter of fixed and scientific notation; "inf", "-inf", "nan", "-nan" for the
// specials. Writes no NUL; returns the end. `out` must have room for kMaxFloatGChars
// bytes: the text is assembled in fixed-size pieces, so bytes between the returned
// end and out + kMaxFloatGChars may be overwritten.
char* formatFloatG(char* out, float value);

// printf("%d") / ("%lld"). Writes no NUL; returns the end. Writes only the digits.
char* formatInt(char* out, std::int64_t value);

} // namespace neq
