#include "uvmerge/maya_number_scan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <utility>

namespace neq::test {
namespace {

using namespace uvmerge;
using Read = std::pair<double, std::size_t>; // the value and the characters consumed

template <class Scan> Read scan(const std::string& line, Scan scanner) {
    LineCursor cursor{line.data(), line.data() + line.size()};
    const double value = scanner(cursor);
    return {value, static_cast<std::size_t>(cursor.pos - line.data())};
}

// The scanners done digit by digit: a real in double arithmetic (the last point counts),
// an integer (no point) with its magnitude held at 2^31; 0 when the line ends inside it.
double plainNumber(const std::string& text, bool real) {
    double sign = 1, mantissa = 0, divisor = 0;
    for (char c : text) {
        if (c >= '0' && c <= '9') {
            mantissa = mantissa * 10 + (c - '0');
            if (!real) mantissa = std::min(mantissa, 2147483648.0);
            divisor *= 10;
        } else if (c == '+' || c == '-') {
            sign = c == '-' ? -1 : 1;
        } else if (c == '.' && real) {
            divisor = 1;
        } else {
            const double value = divisor > 0 ? sign * mantissa / divisor : sign * mantissa;
            return real ? value : std::min(value, 2147483647.0);
        }
    }
    return 0;
}

// Numbers of every shape: long and short digit runs, points and signs anywhere, an end
// of line in the middle of a number.
std::string randomNumber(std::mt19937& random) {
    static const char kChars[] = "0123456789012345678901234567890123456789.+-;";
    std::uniform_int_distribution<int> length(0, 30), pick(0, sizeof kChars - 2), coin(0, 9);
    std::string text = coin(random) == 0 ? "-" : "";
    const int size = length(random);
    const bool messy = coin(random) < 3;
    const int point = std::uniform_int_distribution<int>(-1, size)(random);
    for (int i = 0; i < size; ++i)
        text += std::string(i == point, '.') +
                (messy ? kChars[pick(random)] : static_cast<char>('0' + pick(random) % 10));
    return coin(random) != 0 ? text + ';' : text;
}

// One worked example of each rule; the comparisons below cover every shape.
TEST(MayaNumberScan, SignsAnywhereNoExponentAndZeroAtTheLineEnd) {
    EXPECT_EQ(scan(" \t1-2;", scanInt), Read(-12, 5));  // the ";" stays
    EXPECT_EQ(scan("2.5.5;", scanReal), Read(25.5, 5)); // the last point counts
    EXPECT_EQ(scan("1e-3 ", scanReal), Read(1, 1));
    EXPECT_EQ(scan("123", scanInt), Read(0, 3)); // ran into the end of the line
    EXPECT_EQ(scan("-2147483648 ", scanInt), Read(-2147483648.0, 11)); // saturated magnitudes
    EXPECT_EQ(scan("2147483648 ", scanInt), Read(2147483647, 10));
}

// Integer mantissas divided once and the shortcuts for usual forms match the digit-by-digit
// results: random shapes, alone or followed by more text, and every split of up to 17
// digits around the point (15 fit the integer mantissa).
TEST(MayaNumberScan, ScannersMatchDigitByDigitArithmetic) {
    const auto check = [](const std::string& number, const std::string& after) {
        const std::string line = number + after;
        if (line.empty() || line[0] == ' ' || line[0] == '\t') return; // no number there
        const Read real = scan(line, scanReal), integer = scan(line, scanInt);
        const float value = static_cast<float>(real.first);
        const float plain = static_cast<float>(plainNumber(line, true));
        ASSERT_EQ(std::memcmp(&value, &plain, sizeof value), 0) << line;
        ASSERT_EQ(integer.first, plainNumber(line, false)) << line;
        // Both stop at the first character no number of their kind is made of.
        const auto stop = [&line](const char* chars) {
            const std::size_t at = line.find_first_not_of(chars);
            return at == std::string::npos ? line.size() : at;
        };
        ASSERT_EQ(real.second, stop("0123456789.+-")) << line;
        ASSERT_EQ(integer.second, stop("0123456789+-")) << line;
    };
    std::mt19937 random(11);
    for (int i = 0; i < 300000; ++i) {
        check(randomNumber(random), "");
        check(randomNumber(random), "x0.12345 6 7 8 9 10 11 12 13 14");
    }
    const std::string digits = "98765432109876543210";
    for (const char* sign : {"", "-", "+"})
        for (std::size_t whole = 0; whole <= 17; ++whole)
            for (std::size_t fraction = 0; fraction <= 17; ++fraction)
                for (const char* end : {";", " ", ".", "+", "-", "e", "\t"})
                    for (const std::string& pad : {std::string(), std::string("x"),
                                                   std::string("1234567"), std::string(20, ' ')}) {
                        const std::string text = digits.substr(0, whole) + "." +
                                                 digits.substr(20 - fraction, fraction) + end;
                        check(sign + text, pad);
                        check(sign + digits.substr(0, whole) + end, pad);
                    }
}

TEST(MayaNumberScan, SkippingNumbersAndSeeingTheRestReadAsZero) {
    std::string line = "  +1.5-2 x";
    LineCursor cursor{line.data(), line.data() + line.size()};
    EXPECT_FALSE(restReadsAsZero(cursor));
    skipNumber(cursor);
    EXPECT_EQ(cursor.pos, line.data() + 8);
    EXPECT_TRUE(restReadsAsZero(cursor)); // "x" ends every number at once
    cursor.pos = cursor.end;
    EXPECT_TRUE(restReadsAsZero(cursor));
}

} // namespace
} // namespace neq::test
