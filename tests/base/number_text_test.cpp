// SPDX-License-Identifier: Apache-2.0

#include "base/number_text.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace texturon {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// 0.125 and 2.5: ties go to the even digit, as both digits are exactly as far.
TEST(NumberText, Writing) {
  struct Case {
    std::string text;
    std::string expected;
  };
  const Case cases[] = {{FixedText(0.8, 6), "0.800000"},
                        {FixedText(-1e-9, 6), "-0.000000"},
                        {FixedText(-0.0, 2), "-0.00"},
                        {FixedText(0.125, 2), "0.12"},
                        {FixedText(2.5, 0), "2"},
                        {FixedText(-0.1234567, 6, 12), "   -0.123457"},
                        {FixedText(1234567.5, 6, 3), "1234567.500000"},
                        {FixedText(7.5, 5, 9, '0'), "007.50000"},
                        {FixedText(-7.5, 5, 9, '0'), "-07.50000"},
                        {FixedText(1e22, 1), "10000000000000000000000.0"},
                        {FixedText(kInfinity, 6), "inf"},
                        {FixedText(-kInfinity, 6, 6), "  -inf"},
                        {FixedText(-kNaN, 6, 5, ' '), "  nan"},
                        {ScientificText(1.23456, 6), "1.234560e+000"},
                        {ScientificText(-5e-7, 6), "-5.000000e-007"},
                        {ScientificText(1e300, 3, 12), "  1.000e+300"},
                        {ScientificText(0.0, 12), "0.000000000000e+000"},
                        {ScientificText(9.9999999, 6), "1.000000e+001"},
                        {ScientificText(kNaN, 6), "nan"},
                        {ShortestText(0.1), "0.1"},
                        {ShortestText(kInfinity), "inf"},
                        {IntegerText(-7, 3, '0'), "-07"},
                        {IntegerText(7, 2, '0'), "07"},
                        {IntegerText(123, 2, '0'), "123"},
                        {IntegerText(42, 5), "   42"},
                        {ReadoutText(-0.00004, 4), "0.0000"},
                        {ReadoutText(-0.00005001, 4), "-0.0001"},
                        {ReadoutText(-10.0, 1), "-10.0"}};
  for (const Case& c : cases) EXPECT_EQ(c.text, c.expected);
}

TEST(NumberText, DecimalsAreRoundedOnce) {
  // Around the length up to which a quotient of two exact doubles gives the number, against the library's own reader.
  std::mt19937_64 random(4);
  const std::string_view ends[] = {"", " ", ".", "e1", "E", "x", ",5", "\r\n", "f", ".5", "e-3", "-"};
  for (int k = 0; k < 40'000; ++k) {
    std::string text;
    for (std::size_t n = random() % 12; n > 0; --n) text += static_cast<char>('0' + random() % 10);
    if (random() % 4 != 0) text += '.';
    for (std::size_t n = random() % 12; n > 0; --n) text += static_cast<char>('0' + random() % 10);
    text += ends[random() % std::size(ends)];
    double expected = 0.0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), expected);
    const ParsedDouble parsed = ParseDouble(text);
    if (text.size() > 1 && text[0] == '0' && text[1] == 'x') continue;  // hexadecimal here
    ASSERT_EQ(parsed.length, static_cast<std::size_t>(read.ptr - text.data())) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(parsed.value), std::bit_cast<std::uint64_t>(expected)) << text;
  }
}

TEST(NumberText, ShortestReadsBackToTheSameBits) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const auto value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    const std::string text = ShortestText(value);
    const ParsedDouble parsed = ParseDouble(text);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(parsed.value), std::bit_cast<std::uint64_t>(value)) << text;
    ASSERT_EQ(parsed.length, text.size());
  }
}

TEST(NumberText, ReadingDoubles) {
  struct Case {
    std::string_view text;
    double value;
    std::size_t length;
  };
  const Case cases[] = {{"1.5", 1.5, 3},
                        {" \t\r\n\v\f-0.25abc", -0.25, 11},
                        {"+3.", 3.0, 3},
                        {".5", 0.5, 2},
                        {"1e3", 1000.0, 3},
                        {"1e", 1.0, 1},
                        {"1e+", 1.0, 1},
                        {"1.5e-2x", 0.015, 6},
                        {"0,8", 0.0, 1},
                        {"1.2.3", 1.2, 3},
                        {"", 0.0, 0},
                        {"   ", 0.0, 0},
                        {"-", 0.0, 0},
                        {".", 0.0, 0},
                        {"e5", 0.0, 0},
                        {"abc", 0.0, 0},
                        {"+-1", 0.0, 0},
                        {"--1", 0.0, 0},
                        {"- 1", 0.0, 0},
                        {"0x10", 16.0, 4},
                        {"-0X1.8p1", -3.0, 8},
                        {"0x.8", 0.5, 4},
                        {"0x", 0.0, 1},
                        {"0x.", 0.0, 1},
                        {"0x-1", 0.0, 1},
                        {"0xg", 0.0, 1},
                        {"0x1p", 1.0, 3},
                        {"0x1p+-1", 1.0, 3},
                        {"0x1p-1075", 0.0, 9},
                        {"0x1p1024", kInfinity, 8},
                        {"inf", kInfinity, 3},
                        {"-Infinity!", -kInfinity, 9},
                        {"INFINI", kInfinity, 3},
                        {"1e999", kInfinity, 5},
                        {"-1e99999999999999999999", -kInfinity, 23},
                        {"1e-999", 0.0, 6},
                        {"0e999", 0.0, 5},
                        {"0.00000001e400", kInfinity, 14},
                        {"100000000e-400", 0.0, 14},
                        {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min(), 23},
                        {"1.7976931348623157e308", std::numeric_limits<double>::max(), 22},
                        {"9007199254740993", 9007199254740992.0, 16}};
  for (const Case& c : cases) {
    const ParsedDouble parsed = ParseDouble(c.text);
    EXPECT_EQ(parsed.value, c.value) << c.text;
    EXPECT_EQ(parsed.length, c.length) << c.text;
    EXPECT_EQ(parsed.usable(), c.length != 0 && std::isfinite(c.value)) << c.text;
  }
  for (const std::string_view text : {"nan", "NaN(7)", "-nan"}) {
    const ParsedDouble parsed = ParseDouble(text);
    EXPECT_TRUE(std::isnan(parsed.value) && parsed.length == text.size() && !parsed.usable()) << text;
  }
  EXPECT_TRUE(std::signbit(ParseDouble("-0").value));
  const double least = -std::numeric_limits<double>::max();
  EXPECT_EQ(ParseDouble(FixedText(least, 100)).value, least);
  EXPECT_EQ(ParseDouble(std::string(400, '9')).value, kInfinity);
  EXPECT_EQ(ParseDouble("0." + std::string(400, '0') + "1").value, 0.0);
  EXPECT_EQ(ParseDouble("0x." + std::string(400, '0') + "1p500").value, 0.0);
}

TEST(NumberText, ReadingIntegers) {
  struct Case {
    std::string_view text;
    std::int32_t asSigned;
    std::int32_t asUnsigned;
    std::size_t length;
  };
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  const Case cases[] = {{"42", 42, 42, 2},
                        {"  -1", -1, -1, 4},
                        {"+7.9", 7, 7, 2},
                        {"0x10", 0, 0, 1},
                        {"abc", 0, 0, 0},
                        {"-", 0, 0, 0},
                        {"", 0, 0, 0},
                        {"2147483647", kMost, kMost, 10},
                        {"2147483648", kMost, kLeast, 10},
                        {"-2147483648", kLeast, kLeast, 11},
                        {"-2147483649", kLeast, kMost, 11},
                        {"4294967295", kMost, -1, 10},
                        {"4294967296", kMost, -1, 10},
                        {"-4294967296", kLeast, -1, 11},
                        {"99999999999999999999999", kMost, -1, 23},
                        {"-99999999999999999999999", kLeast, -1, 24}};
  for (const Case& c : cases) {
    EXPECT_EQ(ParseInt32(c.text).value, c.asSigned) << c.text;
    EXPECT_EQ(ParseUnsigned32(c.text).value, c.asUnsigned) << c.text;
    EXPECT_EQ(ParseInt32(c.text).length, c.length) << c.text;
    EXPECT_EQ(ParseUnsigned32(c.text).length, c.length) << c.text;
  }
}

}  // namespace
}  // namespace texturon
