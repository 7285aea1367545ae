// SPDX-License-Identifier: Apache-2.0

#include "base/number_text.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support/golden.h"

namespace texturon {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Line by line: 0.125 and 2.5 are ties, which go to the even digit, as both digits are exactly as far.
TEST(NumberText, Writing) {
  std::string list;
  const auto write = [&list](const auto&... texts) { ((list += "[" + texts + "]\n"), ...); };
  write(FixedText(0.8, 6), FixedText(-1e-9, 6), FixedText(-0.0, 2), FixedText(0.125, 2), FixedText(2.5, 0),
        FixedText(-0.1234567, 6, 12), FixedText(1234567.5, 6, 3), FixedText(7.5, 5, 9, '0'), FixedText(-7.5, 5, 9, '0'),
        FixedText(1e22, 1), FixedText(kInfinity, 6), FixedText(-kInfinity, 6, 6), FixedText(-kNaN, 6, 5, ' '),
        ScientificText(1.23456, 6), ScientificText(-5e-7, 6), ScientificText(1e300, 3, 12), ScientificText(0.0, 12),
        ScientificText(9.9999999, 6), ScientificText(kNaN, 6), ShortestText(0.1), ShortestText(kInfinity),
        IntegerText(-7, 3, '0'), IntegerText(7, 2, '0'), IntegerText(123, 2, '0'), IntegerText(42, 5),
        ReadoutText(-0.00004, 4), ReadoutText(-0.00005001, 4), ReadoutText(-10.0, 1));
  EXPECT_TRUE(MatchesGolden("base/written_numbers.txt", list));
}

TEST(NumberText, DecimalsAreRoundedOnce) {
  // Around the length up to which a quotient of two exact doubles gives the number, against the library's own reader.
  std::mt19937_64 random(4);
  const std::string_view ends[] = {"", " ", ".", "e1", "E", "x", ",5", "\r\n", "f", ".5", "e-3", "-"};
  const std::string_view starts[] = {"", " ", "\r\n   ", "-", "\t-", "       ", "        -"};
  for (int k = 0; k < 40'000; ++k) {
    const std::string_view start = starts[random() % std::size(starts)];
    const bool isNegative = start.ends_with('-');
    std::string text;
    for (std::size_t n = random() % 12; n > 0; --n) text += static_cast<char>('0' + random() % 10);
    if (random() % 4 != 0) text += '.';
    for (std::size_t n = random() % 12; n > 0; --n) text += static_cast<char>('0' + random() % 10);
    text += ends[random() % std::size(ends)];
    double expected = 0.0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), expected);
    if (text.size() > 1 && text[0] == '0' && text[1] == 'x') continue;  // hexadecimal here
    if (text.starts_with('-')) continue;
    const auto digits = static_cast<std::size_t>(read.ptr - text.data());
    if (isNegative && digits != 0) expected = -expected;
    // Numbers in front of a long text and at its end are read in two ways.
    for (const std::string_view rest : {"", "\r\n    0.123456\r\n   -0.25"}) {
      if (!rest.empty() && digits == 0) continue;
      const std::string whole = std::string(start) + text + std::string(rest);
      const ParsedDouble parsed = ParseDouble(whole);
      ASSERT_EQ(parsed.length, digits == 0 ? 0 : start.size() + digits) << whole;
      ASSERT_EQ(std::bit_cast<std::uint64_t>(parsed.value), std::bit_cast<std::uint64_t>(expected)) << whole;
    }
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

/// Each text as a double, a signed and an unsigned integer, with the characters that were used.
TEST(NumberText, Reading) {
  std::ifstream file(GoldenFolder() / "base/read_numbers.txt");
  std::string list;
  for (std::string line; std::getline(file, line);) {
    const std::string text = line.substr(0, line.find(" |"));
    const ParsedDouble number = ParseDouble(text);
    const auto whole = ParseInt32(text);
    const auto unsignedWhole = ParseUnsigned32(text);
    list += text + " | " + ShortestText(number.value) + " of " + IntegerText(static_cast<std::int64_t>(number.length)) +
            " | " + IntegerText(whole.value) + ", " + IntegerText(unsignedWhole.value) + " of " +
            IntegerText(static_cast<std::int64_t>(whole.length)) + "\n";
    EXPECT_EQ(number.usable(), number.length != 0 && std::isfinite(number.value)) << text;
    EXPECT_EQ(unsignedWhole.length, whole.length) << text;
  }
  EXPECT_TRUE(MatchesGolden("base/read_numbers.txt", list));
  for (const std::string_view text : {"nan", "NaN(7)", "-nan"}) {
    const ParsedDouble parsed = ParseDouble(text);
    EXPECT_TRUE(std::isnan(parsed.value) && parsed.length == text.size() && !parsed.usable()) << text;
  }
  EXPECT_TRUE(std::signbit(ParseDouble("-0").value));
  EXPECT_EQ(ParseDouble(" \t\r\n\v\f-0.25abc").length, 11U);
  const double least = -std::numeric_limits<double>::max();
  EXPECT_EQ(ParseDouble(FixedText(least, 100)).value, least);
  EXPECT_EQ(ParseDouble(std::string(400, '9')).value, kInfinity);
  EXPECT_EQ(ParseDouble("0." + std::string(400, '0') + "1").value, 0.0);
  EXPECT_EQ(ParseDouble("0x." + std::string(400, '0') + "1p500").value, 0.0);
}

TEST(ParsePlainDecimals, GivesWhatParseDoubleGivesNumberByNumber) {
  std::mt19937 random(11);
  constexpr std::string_view kEnds[] = {"\r\n", " ", "\t", ";", "e3 ", ".", "mm ", "        \n"};
  for (int k = 0; k < 2000; ++k) {
    std::string text;
    for (int n = 0; n < 12; ++n) {
      const double value = (static_cast<double>(random() % 2'000'001) - 1e6) * (k % 4 == 0 ? 1e-5 : 1e-2);
      text += FixedText(value, k % 3 == 0 ? static_cast<int>(1 + random() % 8) : 6, k % 2 == 0 ? 12 : 0);
      text += kEnds[k % 5 == 0 ? random() % std::size(kEnds) : 0];
    }
    text.append(40, ' ');
    std::array<double, 9> values{};
    const ParsedDecimals parsed = ParsePlainDecimals(text, values);
    std::size_t at = 0;
    for (std::size_t n = 0; n < parsed.count; ++n) {
      const ParsedDouble one = ParseDouble(std::string_view(text).substr(at));
      ASSERT_EQ(one.value, values[n]) << text;
      at += one.length;
    }
    ASSERT_EQ(parsed.length, at) << text;
    ASSERT_TRUE(parsed.count == values.size() || k % 5 == 0 || k % 3 == 0) << text;
  }
}

}  // namespace
}  // namespace texturon
