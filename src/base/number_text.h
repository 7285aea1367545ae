// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace texturon {

// The one place where numbers become text and text becomes numbers. Nothing here looks at the process's locale: the
// decimal sign is always a point.

/// Appends `value` in fixed notation with `decimals` (0 to 100) places, padded on the left to `width` with blanks
/// or, between sign and digits, with zeros. Correctly rounded at any size; minus zero keeps its sign; "inf", "-inf" and
/// "nan", padded with blanks, where the value is not finite.
void AppendFixed(std::string& out, double value, int decimals, int width = 0, char fill = ' ');
/// The same in scientific notation with an exponent of at least three digits: 1.234560e+000.
void AppendScientific(std::string& out, double value, int decimals, int width = 0);
/// The shortest text that reads back to the same double.
void AppendShortest(std::string& out, double value);
/// Appends a decimal integer, padded as in AppendFixed.
void AppendInteger(std::string& out, std::int64_t value, int width = 0, char fill = ' ');

std::string FixedText(double value, int decimals, int width = 0, char fill = ' ');
/// The same for people, to whom -0.00 is 0.00.
std::string ReadoutText(double value, int decimals);
std::string ScientificText(double value, int decimals, int width = 0);
std::string ShortestText(double value);
/// So many significant figures, trailing zeros left out; with an exponent where that is shorter.
std::string SignificantText(double value, int figures);
/// 2nd, 3rd, 11th.
std::string OrdinalText(std::int64_t value);
std::string IntegerText(std::int64_t value, int width = 0, char fill = ' ');

/// A number read from the start of a text. `length` counts the characters used, leading white space included; 0 means
/// that there was no number (`value` is then 0).
struct ParsedDouble {
  double value = 0.0;
  std::size_t length = 0;

  bool found() const { return length != 0; }
  /// What a reader of measured data takes: a number that is neither infinite nor NaN.
  bool usable() const { return found() && std::isfinite(value); }
};

/// Reads the longest number at the start of `text` as the C library does in the "C" locale: leading white space, a
/// sign, decimal or 0x hexadecimal digits with an optional exponent, inf, infinity, nan and nan(...) in any case.
/// Beyond the range the value is infinite, below it zero or denormal; correctly rounded between.
ParsedDouble ParseDouble(std::string_view text);

/// How many numbers a text began with, and the characters that they took.
struct ParsedDecimals {
  std::size_t count = 0;
  std::size_t length = 0;
};

/// Reads numbers one after another, as ParseDouble does, with white space or other ends between them, up to as many as
/// `values` holds or to the first that is not written plainly: a sign, one to seven digits, point, one to seven digits.
/// Near the end of the text none is.
ParsedDecimals ParsePlainDecimals(std::string_view text, std::span<double> values);

struct ParsedInt32 {
  std::int32_t value = 0;
  std::size_t length = 0;

  bool found() const { return length != 0; }
};

/// Reads a decimal integer after white space and a sign; beyond the range the value is that range's end.
ParsedInt32 ParseInt32(std::string_view text);

/// Reads an unsigned 32-bit decimal integer and stores its bits into a signed one: a minus sign negates modulo 2^32, so
/// that "-1" is -1 and "4294967295" is -1 too. Beyond the range, whatever the sign, the value is the largest unsigned
/// number, which is -1.
ParsedInt32 ParseUnsigned32(std::string_view text);

}  // namespace texturon
