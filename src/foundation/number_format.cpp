#include "foundation/number_format.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace neq {
namespace {

// printf rounds the exact binary value m·2^e of a float (m < 2^24), not an
// approximation of it. With 128-bit integers every step of that rounding is exact
// integer arithmetic; targets without them (32-bit ones) let std::to_chars round, which
// is exact too but about three times slower.
#if defined(__SIZEOF_INT128__) && !defined(NEQBRIDGE_PORTABLE_FLOAT_FORMAT)
#define NEQBRIDGE_FLOAT_FORMAT_INT128 1
#else
#define NEQBRIDGE_FLOAT_FORMAT_INT128 0
#endif

#if NEQBRIDGE_FLOAT_FORMAT_INT128
__extension__ typedef unsigned __int128 Uint128;

// 5^n for every n the conversion can need (n <= 50 for the smallest subnormal).
constexpr int kPow5Count = 56;
constexpr std::array<Uint128, kPow5Count> makePow5() {
    std::array<Uint128, kPow5Count> table{};
    Uint128 power = 1;
    for (Uint128& entry : table) {
        entry = power;
        power *= 5;
    }
    return table;
}
constexpr std::array<Uint128, kPow5Count> kPow5 = makePow5();

// The common range (1e-12 <= |value| < 1e6) fits 64-bit products: m·5^17 < 2^64.
constexpr int kMaxPow5In64 = 17;

// floor(log10(2^n)) for every binary exponent a float can have.
constexpr int kMinBinaryExponent = -149;
constexpr int kMaxBinaryExponent = 127;
constexpr int floorLog10Pow2(int n) {
    // log10(2) to 15 places is ample for |n| < 1000.
    const long long scaled = static_cast<long long>(n) * 301029995663981LL;
    const long long unit = 1000000000000000LL;
    return static_cast<int>(scaled >= 0 ? scaled / unit : -((-scaled + unit - 1) / unit));
}
constexpr std::array<signed char, kMaxBinaryExponent - kMinBinaryExponent + 1> makeLog10Pow2() {
    std::array<signed char, kMaxBinaryExponent - kMinBinaryExponent + 1> table{};
    for (int n = kMinBinaryExponent; n <= kMaxBinaryExponent; ++n)
        table[static_cast<std::size_t>(n - kMinBinaryExponent)] =
            static_cast<signed char>(floorLog10Pow2(n));
    return table;
}
constexpr auto kLog10Pow2 = makeLog10Pow2();

// 10^n as the nearest double, for n from kMinPow10 up; picks the decimal exponent
// inside a binary octave. The digit loop below corrects any misjudgement, so these
// only need to be close.
constexpr int kMinPow10 = -44;
constexpr double kPow10[] = {
    1e-44, 1e-43, 1e-42, 1e-41, 1e-40, 1e-39, 1e-38, 1e-37, 1e-36, 1e-35, 1e-34, 1e-33,
    1e-32, 1e-31, 1e-30, 1e-29, 1e-28, 1e-27, 1e-26, 1e-25, 1e-24, 1e-23, 1e-22, 1e-21,
    1e-20, 1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9,
    1e-8,  1e-7,  1e-6,  1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,
    1e4,   1e5,   1e6,   1e7,   1e8,   1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,
    1e16,  1e17,  1e18,  1e19,  1e20,  1e21,  1e22,  1e23,  1e24,  1e25,  1e26,  1e27,
    1e28,  1e29,  1e30,  1e31,  1e32,  1e33,  1e34,  1e35,  1e36,  1e37,  1e38,  1e39};

#endif // NEQBRIDGE_FLOAT_FORMAT_INT128

constexpr char kDigitPairs[] = "00010203040506070809"
                               "10111213141516171819"
                               "20212223242526272829"
                               "30313233343536373839"
                               "40414243444546474849"
                               "50515253545556575859"
                               "60616263646566676869"
                               "70717273747576777879"
                               "80818283848586878889"
                               "90919293949596979899";

void putPair(char* out, unsigned value) {
    std::memcpy(out, kDigitPairs + 2 * value, 2);
}

constexpr std::uint32_t kSixDigitsMin = 100000;
constexpr std::uint32_t kSixDigitsEnd = 1000000;

// A positive value rounded to six significant digits: digits·10^(exponent-5) with
// digits in [100000, 999999].
struct SixDigits {
    std::uint32_t digits;
    int exponent;
};

// floor(value / 2^shift) and whether rounding to nearest, ties to even, goes up.
template <class Unsigned> std::uint64_t shiftRounded(Unsigned value, int shift, bool& roundUp) {
    if (shift <= 0) {
        roundUp = false;
        return static_cast<std::uint64_t>(value << -shift);
    }
    const Unsigned quotient = value >> shift;
    const Unsigned rest = value - (quotient << shift);
    const Unsigned half = Unsigned(1) << (shift - 1);
    roundUp = rest > half || (rest == half && (quotient & 1) != 0);
    return static_cast<std::uint64_t>(quotient);
}

#if NEQBRIDGE_FLOAT_FORMAT_INT128

// floor(numerator / denominator), rounding as above.
template <class Unsigned>
std::uint64_t divideRounded(Unsigned numerator, Unsigned denominator, bool& roundUp) {
    const Unsigned quotient = numerator / denominator;
    const Unsigned twiceRest = 2 * (numerator - quotient * denominator);
    roundUp = twiceRest > denominator || (twiceRest == denominator && (quotient & 1) != 0);
    return static_cast<std::uint64_t>(quotient);
}

// m·2^e scaled by 10^(5-k): its integer part and the rounding of the rest.
std::uint64_t scaleToSixDigits(std::uint32_t m, int e, int k, bool& roundUp) {
    const int s = 5 - k;
    if (s >= 0) {
        // m·2^e·10^s = m·5^s / 2^-(e+s)
        const int shift = -(e + s);
        if (s <= kMaxPow5In64 && shift < 64)
            return shiftRounded(m * static_cast<std::uint64_t>(kPow5[s]), shift, roundUp);
        return shiftRounded(m * kPow5[s], shift, roundUp);
    }
    // m·2^e / 10^t = m·2^(e-t) / 5^t
    const int t = -s;
    const int shift = e - t;
    if (shift < 0) return divideRounded(Uint128(m), kPow5[t] << -shift, roundUp);
    const Uint128 numerator = Uint128(m) << shift;
    if (numerator >> 64 == 0 && kPow5[t] >> 64 == 0)
        return divideRounded(static_cast<std::uint64_t>(numerator),
                             static_cast<std::uint64_t>(kPow5[t]), roundUp);
    return divideRounded(numerator, kPow5[t], roundUp);
}

// m·2^e (m > 0) rounded to six significant digits the way printf rounds.
SixDigits roundToSixDigits(std::uint32_t m, int e, double magnitude) {
    const int binaryExponent = 31 - __builtin_clz(m) + e;
    int k = kLog10Pow2[static_cast<std::size_t>(binaryExponent - kMinBinaryExponent)];
    k += magnitude >= kPow10[k + 1 - kMinPow10];
    for (;;) {
        bool roundUp = false;
        std::uint64_t digits = scaleToSixDigits(m, e, k, roundUp);
        if (digits >= kSixDigitsEnd) {
            ++k;
        } else if (digits < kSixDigitsMin) {
            --k;
        } else {
            digits += roundUp;
            if (digits == kSixDigitsEnd) return {kSixDigitsMin, k + 1};
            return {static_cast<std::uint32_t>(digits), k};
        }
    }
}

#else

// Six significant digits as to_chars prints them in "d.ddddde±XX" form.
SixDigits roundToSixDigits(std::uint32_t, int, double magnitude) {
    char text[32];
    const char* end =
        std::to_chars(text, text + sizeof text, magnitude, std::chars_format::scientific, 5).ptr;
    std::uint32_t digits = static_cast<std::uint32_t>(text[0] - '0');
    for (int i = 2; i < 7; ++i)
        digits = digits * 10 + static_cast<std::uint32_t>(text[i] - '0');
    int exponent = 0;
    for (const char* p = text + 9; p < end; ++p)
        exponent = exponent * 10 + (*p - '0');
    return {digits, text[8] == '-' ? -exponent : exponent};
}

#endif // NEQBRIDGE_FLOAT_FORMAT_INT128

// Digits kept after trailing zeros are dropped from the pairs hh mm ll.
int significantDigitCount(unsigned high, unsigned middle, unsigned low) {
    if (low != 0) return low % 10 != 0 ? 6 : 5;
    if (middle != 0) return middle % 10 != 0 ? 4 : 3;
    return high % 10 != 0 ? 2 : 1;
}

// The two characters of a pair 00..99 as a little-endian 16-bit value.
std::uint64_t pairCharacters(unsigned value) {
    std::uint16_t characters;
    std::memcpy(&characters, kDigitPairs + 2 * value, 2);
    return characters;
}

// Stores the eight characters of `text` (first character in the low byte).
void store8(char* out, std::uint64_t text) {
    std::memcpy(out, &text, 8);
}

// %g layout of six rounded digits: fixed notation for exponents -4..5, otherwise
// d.ddddde±XX; trailing zeros and a bare point dropped. The digits travel in one
// 64-bit register and reach `out` in 8-byte stores, which is why the caller's buffer
// needs kMaxFloatGChars of room (at most 12 characters are kept).
char* writeSixDigits(char* out, SixDigits value) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "digits are packed low byte first");
    // Two digits at a time from the fraction of digits / 10^4 in 32-bit fixed point;
    // 429497 = ceil(2^32 / 10^4) is exact for every value below 10^6.
    std::uint64_t scaled = value.digits * std::uint64_t{429497};
    const auto high = static_cast<unsigned>(scaled >> 32);
    scaled = static_cast<std::uint32_t>(scaled) * std::uint64_t{100};
    const auto middle = static_cast<unsigned>(scaled >> 32);
    scaled = static_cast<std::uint32_t>(scaled) * std::uint64_t{100};
    const auto low = static_cast<unsigned>(scaled >> 32);
    const std::uint64_t digits =
        pairCharacters(high) | pairCharacters(middle) << 16 | pairCharacters(low) << 32;
    const int count = significantDigitCount(high, middle, low);

    const int x = value.exponent;
    if (x >= 0 && x < 6) {
        const int integerDigits = x + 1;
        store8(out, digits);
        if (count <= integerDigits) return out + integerDigits;
        out[integerDigits] = '.';
        store8(out + integerDigits + 1, digits >> (8 * integerDigits));
        return out + count + 1;
    }
    if (x < 0 && x >= -4) {
        std::memcpy(out, "0.000", 5);
        out += 1 - x; // "0." and -x-1 zeros
        store8(out, digits);
        return out + count;
    }
    out[0] = static_cast<char>(digits);
    char* p = out + 1;
    if (count > 1) {
        *p = '.';
        store8(p + 1, digits >> 8);
        p += count;
    }
    p[0] = 'e';
    p[1] = x < 0 ? '-' : '+';
    putPair(p + 2, static_cast<unsigned>(x < 0 ? -x : x)); // |x| <= 45
    return p + 4;
}

char* writeText(char* out, const char* text) {
    const std::size_t size = std::strlen(text);
    std::memcpy(out, text, size);
    return out + size;
}

// Integers are written two digits at a time from a 32.32 fixed-point fraction
// n / 10^k: the integer part is the leading digit or pair, and each multiplication of
// the fraction by 100 brings the next pair into the integer part. The multipliers are
// rounded up so that truncation never loses a digit; each is exact over its range
// (checked for every 32-bit value).

// One digit or a pair, without a leading zero.
char* writeLeading(char* out, unsigned value) {
    if (value < 10) {
        *out = static_cast<char>('0' + value);
        return out + 1;
    }
    putPair(out, value);
    return out + 2;
}

char* writeFollowingPairs(char* out, std::uint64_t fixed, int pairs) {
    for (int i = 0; i < pairs; ++i, out += 2) {
        fixed = static_cast<std::uint32_t>(fixed) * std::uint64_t{100};
        putPair(out, static_cast<unsigned>(fixed >> 32));
    }
    return out;
}

// value / 10^6 for value < 10^8, leading zeros kept.
std::uint64_t fixedOverMillion(std::uint32_t value) {
    return (value * std::uint64_t{281474977} >> 16) + 1;
}

char* writeEightDigits(char* out, std::uint32_t value) {
    const std::uint64_t fixed = fixedOverMillion(value);
    putPair(out, static_cast<unsigned>(fixed >> 32));
    return writeFollowingPairs(out + 2, fixed, 3);
}

// The leading digit or pair of `fixed`, then `pairs` more.
char* writeFixed(char* out, std::uint64_t fixed, int pairs) {
    return writeFollowingPairs(writeLeading(out, static_cast<unsigned>(fixed >> 32)), fixed, pairs);
}

char* writeDecimal(char* out, std::uint32_t value) {
    if (value < 100) return writeLeading(out, value);
    if (value < 10000) return writeFixed(out, value * std::uint64_t{42949673}, 1); // / 10^2
    if (value < 1000000) return writeFixed(out, value * std::uint64_t{429497}, 2); // / 10^4
    if (value < 100000000) return writeFixed(out, fixedOverMillion(value), 3);
    const std::uint32_t high = value / 100000000;
    return writeEightDigits(writeLeading(out, high), value - high * 100000000);
}

char* writeDecimal(char* out, std::uint64_t value) {
    if (value >> 32 == 0) return writeDecimal(out, static_cast<std::uint32_t>(value));
    const std::uint64_t upper = value / 100000000;
    return writeEightDigits(writeDecimal(out, upper),
                            static_cast<std::uint32_t>(value - upper * 100000000));
}

// Writes the sign of a negative value, and the whole text of an infinity or a NaN
// (returning true). Otherwise |value| = m·2^e with m < 2^24; m is 0 for both zeros.
bool writeSignOrSpecial(char*& out, float value, std::uint32_t& m, int& e) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    if (bits >> 31) *out++ = '-';
    const std::uint32_t biasedExponent = (bits >> 23) & 0xFF;
    const std::uint32_t fraction = bits & 0x7FFFFF;
    if (biasedExponent == 0xFF) {
        out = writeText(out, fraction != 0 ? "nan" : "inf");
        return true;
    }
    m = fraction;
    e = -149; // subnormal: no implicit leading bit
    if (biasedExponent != 0) {
        m |= 0x800000;
        e = static_cast<int>(biasedExponent) - 150;
    }
    return false;
}

// Five decimals of a float m·2^e computed exactly in 64 bits: m·10^5 = m·5^5·2^5 is
// below 2^36, so every exponent up to kMaxFixed5Exponent leaves the scaled value below
// 2^63; larger floats (from about 7e13 on) go through std::to_chars, which is exact too.
constexpr int kMaxFixed5Exponent = 22;

char* writeFixed5Large(char* out, float magnitude) {
    char* const limit = out + kMaxFloatFixed5Chars;
    return std::to_chars(out, limit, static_cast<double>(magnitude), std::chars_format::fixed, 5)
        .ptr;
}

} // namespace

char* formatFloatFixed5(char* out, float value) {
    std::uint32_t m;
    int e;
    if (writeSignOrSpecial(out, value, m, e)) return out;
    if (e > kMaxFixed5Exponent) return writeFixed5Large(out, std::fabs(value));
    // value·10^5 = m·5^5·2^(e+5), rounded to an integer, ties to even.
    const std::uint64_t scaled = m * std::uint64_t{3125};
    const int shift = e + 5;
    std::uint64_t hundredThousandths = 0;
    if (shift > -40) { // below that, scaled < 2^36 is under half a unit: 0
        bool roundUp = false;
        hundredThousandths = shiftRounded(scaled, -shift, roundUp) + roundUp;
    }
    const std::uint64_t whole = hundredThousandths / 100000;
    out = writeDecimal(out, whole);
    *out++ = '.';
    const auto decimals = static_cast<std::uint32_t>(hundredThousandths - whole * 100000);
    // Five digits with leading zeros: the first of decimals / 10^4, then two pairs.
    return writeFixed(out, decimals * std::uint64_t{429497}, 2);
}

char* formatFloatG(char* out, float value) {
    std::uint32_t m;
    int e;
    if (writeSignOrSpecial(out, value, m, e)) return out;
    if (m == 0) {
        *out = '0';
        return out + 1;
    }
    return writeSixDigits(out, roundToSixDigits(m, e, static_cast<double>(std::fabs(value))));
}

char* formatInt(char* out, std::int64_t value) {
    std::uint64_t magnitude = static_cast<std::uint64_t>(value);
    if (value < 0) {
        *out++ = '-';
        magnitude = 0 - magnitude;
    }
    return writeDecimal(out, magnitude);
}

} // namespace neq
