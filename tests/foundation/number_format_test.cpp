#include "foundation/number_format.h"

#include "support/case_table.h"

#include <gtest/gtest.h>

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

std::uint32_t bitsOf(float value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::string formatG(float value) {
    char text[neq::kMaxFloatGChars]; // exactly the promised room, so ASan sees any overrun
    return std::string(text, neq::formatFloatG(text, value));
}

// Compares every value with printf and reports the first few differences.
template <class Value, class Format>
void expectSameAsPrintf(const std::vector<Value>& values, Format format, const char* printfFormat) {
    int mismatches = 0;
    for (Value value : values) {
        char expected[64];
        std::snprintf(expected, sizeof expected, printfFormat, value);
        const std::string got = format(value);
        if (got != expected && ++mismatches <= 10)
            ADD_FAILURE() << "value " << expected << " formatted as " << got;
    }
    EXPECT_EQ(mismatches, 0) << "of " << values.size() << " values";
}

// Over a million values: random bit patterns, mesh-like decimals, sixth-digit ties and
// their neighbours, ulps around powers of ten (notation switches, exponent carries),
// whole numbers, subnormals and the specials.
std::vector<float> millionFloats() {
    std::mt19937 random(20261121);
    std::uniform_int_distribution<std::uint32_t> anyBits;
    std::uniform_int_distribution<int> digitCount(1, 8), fractionDigits(0, 6);
    std::uniform_int_distribution<int> sixDigits(100000, 999999), exponent(-46, 32);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const float kInf = std::numeric_limits<float>::infinity();
    std::vector<float> values;
    char text[32];
    for (int i = 0; i < 300000; ++i) {
        values.push_back(floatFromBits(anyBits(random)));
        const double digits = std::floor(unit(random) * std::pow(10.0, digitCount(random)));
        values.push_back(static_cast<float>(digits / std::pow(10.0, fractionDigits(random))) *
                         (i % 2 ? -1.0f : 1.0f));
    }
    for (int i = 0; i < 50000; ++i) {
        std::snprintf(text, sizeof text, "%d5e%d", sixDigits(random), exponent(random));
        const float tie = std::strtof(text, nullptr);
        for (float value : {tie, -tie, std::nextafter(tie, 0.0f), std::nextafter(tie, kInf)})
            values.push_back(value);
    }
    for (int n = -46; n <= 39; ++n)
        for (const char* mantissa : {"1", "9.999995", "9.99999", "5", "1.000005"}) {
            std::snprintf(text, sizeof text, "%se%d", mantissa, n);
            const std::uint32_t centre = bitsOf(std::strtof(text, nullptr));
            for (std::uint32_t offset = 0; offset <= 8; ++offset)
                for (std::uint32_t bits : {centre + offset, centre - offset}) {
                    values.push_back(floatFromBits(bits & 0x7FFFFFFFu));
                    values.push_back(floatFromBits(bits | 0x80000000u));
                }
        }
    for (int i = -70000; i <= 70000; ++i)
        values.push_back(i);
    for (std::uint32_t i = 0; i < 20000; ++i) // where floats stop being whole-number dense
        values.push_back(static_cast<float>((1u << 24) - 10000 + i * 3));
    for (std::uint32_t i = 1; i < 50000; ++i) // subnormals of either sign
        values.push_back(floatFromBits((i * 167u) | ((i & 1u) << 31)));
    for (std::uint32_t bits : {1u, 2u, 0x7FFFFFu, 0x800000u, 0x7F800000u, 0xFF800000u, 0x7FC00000u,
                               0xFFC00000u, 0x7F800001u, 0xFF800001u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        values.push_back(floatFromBits(bits));
    return values;
}

TEST(NumberFormat, FloatMatchesPrintf) {
    const std::vector<float> values = millionFloats();
    ASSERT_GE(values.size(), 1000000u);
    expectSameAsPrintf(values, formatG, "%g");
}

std::string formatFixed5(float value) {
    char text[neq::kMaxFloatFixed5Chars]; // exactly the promised room
    return std::string(text, neq::formatFloatFixed5(text, value));
}

TEST(NumberFormat, WorkedExamples) {
    for (const auto& row : neq::test::readCaseTable("foundation/number_format_cases.txt")) {
        const float value = std::strtof(row[1].c_str(), nullptr);
        EXPECT_EQ(row[0] == "g" ? formatG(value) : formatFixed5(value), row[2]) << row[1];
    }
}

// The same values, plus floats exactly on a half hundred-thousandth (odd multiples of
// 2^-6), neighbours of k + 0.5 hundred-thousandths, and both sides of 2^46, where the
// exact 64-bit path hands over to std::to_chars.
TEST(NumberFormat, FloatFixed5MatchesPrintf) {
    std::vector<float> values = millionFloats();
    for (int k = 1; k < 40000; k += 2)
        for (float sign : {1.0f, -1.0f})
            values.push_back(sign * static_cast<float>(k) / 64.0f);
    std::mt19937 random(5);
    std::uniform_int_distribution<int> hundredThousandths(0, 9999999);
    for (int i = 0; i < 100000; ++i) {
        const float half = (static_cast<float>(hundredThousandths(random)) + 0.5f) / 100000.0f;
        for (float value : {half, std::nextafter(half, 0.0f), std::nextafter(half, 1e9f)})
            values.push_back(value);
    }
    for (int offset = -2000; offset <= 2000; ++offset)
        values.push_back(floatFromBits(bitsOf(70368744177664.0f) + offset)); // 2^46
    expectSameAsPrintf(values, formatFixed5, "%.5f");
}

TEST(NumberFormat, IntMatchesPrintf) {
    std::vector<long long> values = {0, INT_MIN, INT_MAX, UINT_MAX, LLONG_MIN, LLONG_MAX};
    for (long long power = 1; power <= LLONG_MAX / 10; power *= 10)
        for (long long near : {power - 1, power, power + 1}) {
            values.push_back(near);
            values.push_back(-near);
        }
    for (int i = -5000; i <= 5000; ++i)
        values.push_back(i);
    std::mt19937_64 random(42);
    for (int i = 0; i < 100000; ++i) // every length, either sign
        values.push_back(static_cast<long long>(random()) >> (i % 64));
    expectSameAsPrintf(
        values,
        [](long long value) {
            char text[neq::kMaxIntChars];
            return std::string(text, neq::formatInt(text, value));
        },
        "%lld");
}

} // namespace
