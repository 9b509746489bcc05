#include "foundation/number_format.h"

#include <gtest/gtest.h>

#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

float floatFromBits(std::uint32_t bits) {
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

std::string printfG(float value) {
    char text[64];
    const int size = std::snprintf(text, sizeof text, "%g", static_cast<double>(value));
    return std::string(text, static_cast<std::size_t>(size));
}

std::string formatG(float value) {
    char text[neq::kMaxFloatGChars]; // exactly the promised room, so ASan sees any overrun
    return std::string(text, neq::formatFloatG(text, value));
}

std::string formatI(std::int64_t value) {
    char text[neq::kMaxIntChars];
    return std::string(text, neq::formatInt(text, value));
}

std::uint32_t bitsOf(float value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// Compares every value and reports the first few differences with their bit patterns.
template <class Value, class Format, class Reference>
void expectSameText(const std::vector<Value>& values, Format format, Reference reference) {
    int mismatches = 0;
    for (Value value : values) {
        const std::string expected = reference(value);
        const std::string got = format(value);
        if (got == expected) continue;
        if (++mismatches <= 10) ADD_FAILURE() << "value " << expected << " formatted as " << got;
    }
    EXPECT_EQ(mismatches, 0) << "of " << values.size() << " values";
}

void expectFloatsMatchPrintf(const std::vector<float>& values) {
    expectSameText(values, formatG, printfG);
}

// Decimal-looking values as a mesh exporter sees them: a few integer digits, a few
// fraction digits, either sign.
std::vector<float> meshCoordinates(std::mt19937& random, std::size_t count) {
    static const double kPow10[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};
    std::uniform_int_distribution<int> totalDigits(1, 8);
    std::uniform_int_distribution<int> fractionDigits(0, 6);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::vector<float> values;
    for (std::size_t i = 0; i < count; ++i) {
        const double digits = std::floor(unit(random) * kPow10[totalDigits(random)]);
        const double decimal = digits / kPow10[fractionDigits(random)];
        values.push_back(static_cast<float>(i % 2 == 0 ? decimal : -decimal));
    }
    return values;
}

// Decimal ties of the sixth digit (d.dddddd5·10^n) and their float neighbours: where the
// exact binary value decides between rounding up and down.
std::vector<float> nearSixDigitTies(std::mt19937& random, std::size_t count) {
    std::uniform_int_distribution<int> digits(100000, 999999);
    std::uniform_int_distribution<int> exponent(-40, 38);
    std::vector<float> values;
    char text[32];
    for (std::size_t i = 0; i < count; ++i) {
        std::snprintf(text, sizeof text, "%d5e%d", digits(random), exponent(random) - 6);
        const float tie = std::strtof(text, nullptr);
        values.push_back(tie);
        values.push_back(std::nextafter(tie, 0.0f));
        values.push_back(std::nextafter(tie, std::numeric_limits<float>::infinity()));
        values.push_back(-tie);
    }
    return values;
}

// Powers of ten, the carry values 9.999995·10^n and a few ulps around each: notation
// switches (1e-05 / 0.0001, 100000 / 1e+06) and exponent carries live here.
std::vector<float> powerOfTenNeighbours() {
    std::vector<float> values;
    char text[32];
    for (int n = -46; n <= 39; ++n) {
        for (const char* mantissa : {"1", "9.999995", "9.99999", "5", "1.000005"}) {
            std::snprintf(text, sizeof text, "%se%d", mantissa, n);
            const std::uint32_t centre = bitsOf(std::strtof(text, nullptr));
            for (std::uint32_t offset = 0; offset <= 8; ++offset)
                for (std::uint32_t bits : {centre + offset, centre - offset})
                    for (std::uint32_t sign : {0u, 0x80000000u})
                        values.push_back(floatFromBits((bits & 0x7FFFFFFFu) | sign));
        }
    }
    return values;
}

TEST(NumberFormat, FloatGoldens) {
    const struct {
        float value;
        const char* text;
    } kCases[] = {
        {0.5f, "0.5"},
        {1234567.0f, "1.23457e+06"},
        {1e-7f, "1e-07"},
        {100000.0f, "100000"},
        {1000000.0f, "1e+06"},
        {-0.25f, "-0.25"},
        {0.0001f, "0.0001"},
        {0.00001f, "1e-05"},
        {999999.5f, "1e+06"},
        {0.0f, "0"},
        {-0.0f, "-0"},
        {3.4028235e38f, "3.40282e+38"},
        {1.4e-45f, "1.4013e-45"},
        {-12.3456f, "-12.3456"},
        {std::numeric_limits<float>::infinity(), "inf"},
        {-std::numeric_limits<float>::infinity(), "-inf"},
        {std::numeric_limits<float>::quiet_NaN(), "nan"},
        {-std::numeric_limits<float>::quiet_NaN(), "-nan"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(formatG(c.value), c.text) << "bits " << bitsOf(c.value);
}

TEST(NumberFormat, FloatMatchesPrintf) {
    std::mt19937 random(20261121);
    std::vector<float> values;

    std::uniform_int_distribution<std::uint32_t> anyBits;
    for (int i = 0; i < 300000; ++i)
        values.push_back(floatFromBits(anyBits(random)));

    const std::vector<float> coordinates = meshCoordinates(random, 300000);
    values.insert(values.end(), coordinates.begin(), coordinates.end());

    const std::vector<float> ties = nearSixDigitTies(random, 50000);
    values.insert(values.end(), ties.begin(), ties.end());

    const std::vector<float> powers = powerOfTenNeighbours();
    values.insert(values.end(), powers.begin(), powers.end());

    // Whole numbers, including the range where floats stop being whole-number dense.
    for (int i = -70000; i <= 70000; ++i)
        values.push_back(static_cast<float>(i));
    for (std::uint32_t i = 0; i < 20000; ++i)
        values.push_back(static_cast<float>((1u << 24) - 10000 + i * 3));

    // Subnormals: the smallest, the largest, and a spread between.
    std::uniform_int_distribution<std::uint32_t> subnormalBits(1, 0x7FFFFF);
    for (std::uint32_t bits : {1u, 2u, 3u, 0x7FFFFFu, 0x400000u, 0x800000u, 0x7FFFFEu})
        values.push_back(floatFromBits(bits)), values.push_back(-floatFromBits(bits));
    for (int i = 0; i < 50000; ++i)
        values.push_back(floatFromBits(subnormalBits(random)));

    // Zeros, infinities, quiet and signalling NaNs of either sign.
    for (std::uint32_t bits : {0x00000000u, 0x80000000u, 0x7F800000u, 0xFF800000u, 0x7FC00000u,
                               0xFFC00000u, 0x7F800001u, 0xFF800001u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        values.push_back(floatFromBits(bits));

    ASSERT_GE(values.size(), 1000000u);
    expectFloatsMatchPrintf(values);
}

// The library once formatted with std::to_chars(general, 6); keep the proof that it is
// printf's text too, for finite values.
TEST(NumberFormat, ToCharsGeneralSixMatchesPrintf) {
    std::mt19937 random(7);
    std::uniform_int_distribution<std::uint32_t> anyBits;
    std::vector<float> values = powerOfTenNeighbours();
    for (int i = 0; i < 100000; ++i)
        values.push_back(floatFromBits(anyBits(random)));
    std::vector<float> finite;
    for (float value : values)
        if (std::isfinite(value)) finite.push_back(value);
    expectSameText(
        finite,
        [](float value) {
            char text[64];
            return std::string(text,
                               std::to_chars(text, text + sizeof text, static_cast<double>(value),
                                             std::chars_format::general, 6)
                                   .ptr);
        },
        printfG);
}

TEST(NumberFormat, IntMatchesPrintf) {
    std::vector<std::int64_t> values = {
        0,       1,       -1,          9,           10,       -10,       99,        100,
        INT_MIN, INT_MAX, INT_MIN + 1, INT_MAX - 1, UINT_MAX, LLONG_MIN, LLONG_MAX, LLONG_MIN + 1};
    for (std::int64_t power = 1; power <= LLONG_MAX / 10; power *= 10)
        for (std::int64_t near : {power - 1, power, power + 1})
            values.push_back(near), values.push_back(-near);
    for (int i = -5000; i <= 5000; ++i)
        values.push_back(i);
    std::mt19937_64 random(42);
    std::uniform_int_distribution<std::int64_t> any64(LLONG_MIN, LLONG_MAX);
    std::uniform_int_distribution<std::int32_t> any32(INT_MIN, INT_MAX);
    for (int i = 0; i < 100000; ++i) {
        values.push_back(any64(random));
        values.push_back(any32(random));
        values.push_back(any64(random) >> (i % 64)); // every length
    }
    expectSameText(values, formatI, [](std::int64_t value) {
        char text[32];
        return std::string(text, static_cast<std::size_t>(std::snprintf(
                                     text, sizeof text, "%lld", static_cast<long long>(value))));
    });
}

} // namespace
