#pragma once

// Number text exactly as printf writes it, without printf's locale and stream cost.

#include <cstdint>

namespace neq {

// Longest text formatFloatG can produce, e.g. "-1.17549e-38".
constexpr int kMaxFloatGChars = 16;
// Longest text formatFloatFixed5 can produce: "-" and 39 digits, then ".00000".
constexpr int kMaxFloatFixed5Chars = 46;
// Longest text formatInt can produce, e.g. "-9223372036854775808".
constexpr int kMaxIntChars = 20;

// printf("%g", double(value)): six significant digits, trailing zeros dropped, the
// shorter of fixed and scientific notation; "inf", "-inf", "nan", "-nan" for the
// specials. Writes no NUL; returns the end. `out` must have room for kMaxFloatGChars
// bytes: the text is assembled in fixed-size pieces, so bytes between the returned
// end and out + kMaxFloatGChars may be overwritten.
char* formatFloatG(char* out, float value);

// printf("%.5f", double(value)): the exact value rounded to five decimals, ties to
// even; "-" for every negative value, also when it rounds to "-0.00000"; "inf", "-inf",
// "nan", "-nan" for the specials. Writes no NUL; returns the end. `out` must have room
// for kMaxFloatFixed5Chars bytes.
char* formatFloatFixed5(char* out, float value);

// printf("%d") / ("%lld"). Writes no NUL; returns the end. Writes only the digits.
char* formatInt(char* out, std::int64_t value);

} // namespace neq
