// SPDX-License-Identifier: Apache-2.0

#include "base/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>
#include <system_error>

#include "base/fixed_decimal.h"
#include "base/multiversion.h"
#include "base/shortest_decimal.h"

namespace texturon {
namespace {

// Sign, the 309 digits of the largest double, the point and the decimals.
constexpr int kMostDecimals = 100;
constexpr std::size_t kBufferSize = 1 + 309 + 1 + kMostDecimals;
using NumberBuffer = std::array<char, kBufferSize>;

void AppendPadded(std::string& out, std::string_view text, int width, char fill = ' ') {
  const auto wanted = static_cast<std::size_t>(std::max(width, 0));
  const std::size_t padding = text.size() < wanted ? wanted - text.size() : 0;
  if (fill == '0' && text.starts_with('-')) {
    out.push_back('-');
    text.remove_prefix(1);
  }
  out.append(padding, fill);
  out.append(text);
}

std::string_view NonFiniteText(double value) {
  if (std::isnan(value)) return "nan";
  return value < 0.0 ? "-inf" : "inf";
}

std::string_view WriteNumber(NumberBuffer& buffer, double value, std::chars_format format, int decimals) {
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format,
                                     std::clamp(decimals, 0, kMostDecimals));
  return {buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data())};
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsHexDigit(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return IsDigit(c) || (lower >= 'a' && lower <= 'f');
}

std::size_t CountWhiteSpace(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
  return i;
}

// Whether an out-of-range number is too large rather than too small: the place of its first significant digit
// before or after the point, moved by the exponent.
bool IsTooLarge(std::string_view digits, char exponentLetter, bool hex) {
  std::int64_t place = 0;
  bool pointSeen = false;
  bool significant = false;
  std::size_t i = 0;
  for (; i < digits.size() && (digits[i] | 0x20) != exponentLetter; ++i) {
    if (digits[i] == '.') {
      pointSeen = true;
    } else {
      significant = significant || digits[i] != '0';
      if (!pointSeen && significant) ++place;
      if (pointSeen && !significant) --place;
    }
  }
  if (hex) place *= 4;
  std::int64_t exponent = 0;
  if (i < digits.size()) {
    const bool negative = i + 1 < digits.size() && digits[i + 1] == '-';
    for (const char c : digits.substr(i + 1)) {
      if (IsDigit(c)) exponent = std::min<std::int64_t>(exponent * 10 + (c - '0'), std::int64_t{1} << 40);
    }
    if (negative) exponent = -exponent;
  }
  return place + exponent > 0;
}

// Hexadecimal digits up to an exponent with two signs: the standard library's reader would take "p+-1" for an exponent.
std::string_view CutAtDoubleSign(std::string_view digits) {
  const std::size_t exponent = digits.find_first_not_of("0123456789abcdefABCDEF.");
  if (exponent == std::string_view::npos || (digits[exponent] | 0x20) != 'p') return digits;
  return digits.substr(exponent + 1, 2) == "+-" ? digits.substr(0, exponent) : digits;
}

std::size_t HexPrefixLength(std::string_view text) {
  if (text.size() < 3 || text[0] != '0' || (text[1] | 0x20) != 'x') return 0;
  const std::size_t digit = text[2] == '.' ? 3 : 2;
  return digit < text.size() && IsHexDigit(text[digit]) ? 2 : 0;
}

// Digits with or without a point and digits behind it, up to 15 in all and nothing that could belong to the number
// behind them: both the whole number that they make and the power of ten are exact in a double, so that their quotient
// is rounded once, as the library's reader does it in three times the time. Length 0: another kind of number, or none.
ParsedDouble ParseShortDecimal(std::string_view text) {
  constexpr std::ptrdiff_t kMostDigits = 15;
  static constexpr std::array<double, kMostDigits + 1> kPowers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const char* const start = text.data();
  const char* const end = start + std::min<std::size_t>(text.size(), kMostDigits + 2);
  const char* at = start;
  std::uint64_t whole = 0;
  const auto takeDigits = [&] {
    for (; at != end && IsDigit(*at); ++at) whole = whole * 10 + static_cast<std::uint64_t>(*at - '0');
  };
  takeDigits();
  if (at == start) return {};
  std::ptrdiff_t decimals = 0;
  bool hasPoint = false;
  if (at != end && *at == '.') {
    hasPoint = true;
    const char* const point = at++;
    takeDigits();
    decimals = at - point - 1;
    if (decimals == 0) return {};
  }
  if (at - start - (hasPoint ? 1 : 0) > kMostDigits) return {};
  if (at != start + text.size()) {
    const char lower = static_cast<char>(*at | 0x20);
    if (IsDigit(*at) || *at == '.' || (lower >= 'a' && lower <= 'z')) return {};
  }
  ParsedDouble result;
  result.value = static_cast<double>(whole) / kPowers[static_cast<std::size_t>(decimals)];
  result.length = static_cast<std::size_t>(at - start);
  return result;
}

// ---- eight characters at a time, the first in the lowest byte ----

using EightBytes = std::uint64_t;
constexpr EightBytes kEach = 0x0101010101010101;
constexpr EightBytes kTopBits = kEach * 0x80;
constexpr std::size_t kWord = sizeof(EightBytes);

TEXTURON_INLINE EightBytes LoadEight(const char* from) {
  EightBytes bytes;
  std::memcpy(&bytes, from, kWord);
  return bytes;
}

// How many of the bytes come before the first whose top bit is set.
TEXTURON_INLINE std::size_t BytesBefore(EightBytes topBits) {
  return static_cast<std::size_t>(std::countr_zero(topBits)) / 8;
}

TEXTURON_INLINE std::size_t CountDigits(EightBytes bytes) {
  const EightBytes apart = bytes ^ (kEach * '0');  // below 10 for digits
  return BytesBefore((((apart & ~kTopBits) + kEach * (0x80 - 10)) | apart) & kTopBits);
}

TEXTURON_INLINE std::size_t CountWhite(EightBytes bytes) {
  const EightBytes low = bytes & ~kTopBits;
  const EightBytes breaks = (low + kEach * (0x80 - '\t')) & ~(low + kEach * (0x80 - '\r' - 1));
  const EightBytes blanks = ~((low ^ (kEach * ' ')) + kEach * 0x7F);
  return BytesBefore((~(breaks | blanks) | bytes) & kTopBits);
}

// The number that eight digits make, as values: pairs, then fours, then all.
TEXTURON_INLINE std::uint64_t ValueOfEight(EightBytes digits) {
  const EightBytes pairs = digits * 10 + (digits >> 8);
  constexpr EightBytes kPairs = 0x000000FF000000FF;
  constexpr EightBytes kHundreds = 100 + (EightBytes{1'000'000} << 32);
  constexpr EightBytes kOnes = 1 + (EightBytes{10'000} << 32);
  return ((pairs & kPairs) * kHundreds + ((pairs >> 16) & kPairs) * kOnes) >> 32;
}

// The values of the first `count` digits, 1 to 8 of them, behind as many zeros as make them eight.
TEXTURON_INLINE EightBytes LastOfEight(EightBytes bytes, std::size_t count) {
  return (bytes - kEach * '0') << (8 * (kWord - count));
}

constexpr std::size_t kMostOfPlain = 1 + (kWord - 1) + 1 + kWord;  // characters that ReadPlain looks at

// A number of what measuring programs write, sign and up to seven digits on each side of the point, without a branch
// that the numbers decide, and to the same bits. Returns its end; null: another kind of number. What follows, other
// than a digit, is not looked at.
TEXTURON_INLINE const char* ReadPlain(const char* at, double& value) {
  static constexpr std::array<double, kWord> kPowers = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
  static constexpr std::array<std::uint64_t, kWord> kWholePowers = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};
  const bool isNegative = *at == '-';
  at += static_cast<std::size_t>(isNegative) | static_cast<std::size_t>(*at == '+');
  const EightBytes whole = LoadEight(at);
  const std::size_t wholeDigits = CountDigits(whole);
  if (wholeDigits - 1 >= kWord - 1) return nullptr;
  at += wholeDigits;
  if (*at != '.') return nullptr;
  const EightBytes rest = LoadEight(++at);
  const std::size_t decimals = CountDigits(rest);
  if (decimals - 1 >= kWord - 1) return nullptr;
  const EightBytes before = LastOfEight(whole, wholeDigits);
  const EightBytes behind = LastOfEight(rest, decimals);
  const std::uint64_t digits = wholeDigits + decimals <= kWord
                                   ? ValueOfEight(before >> (8 * decimals) | behind)
                                   : ValueOfEight(before) * kWholePowers[decimals] + ValueOfEight(behind);
  const double size = static_cast<double>(static_cast<std::int64_t>(digits)) / kPowers[decimals];
  value = std::bit_cast<double>(std::bit_cast<std::uint64_t>(size) | static_cast<std::uint64_t>(isNegative) << 63);
  return at + decimals;
}

// Whether a number may not end before it: it would be of another kind.
TEXTURON_INLINE bool ContinuesNumber(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return c == '.' || (lower >= 'a' && lower <= 'z');
}

// Length 0: another kind of number, or the text is about to end.
TEXTURON_INLINE ParsedDouble ParsePlainDecimal(std::string_view text) {
  if (std::endian::native != std::endian::little || text.size() < kWord + kMostOfPlain) return {};
  const std::size_t white = CountWhite(LoadEight(text.data()));
  if (white == kWord) return {};
  ParsedDouble result;
  const char* const end = ReadPlain(text.data() + white, result.value);
  if (end == nullptr || ContinuesNumber(*end)) return {};
  result.length = static_cast<std::size_t>(end - text.data());
  return result;
}

// Reads digits without sign or white space. Length 0: none.
ParsedDouble ParseMagnitude(std::string_view text) {
  if (const ParsedDouble quick = ParseShortDecimal(text); quick.found()) return quick;
  const std::size_t prefix = HexPrefixLength(text);
  const bool hex = prefix != 0;
  std::string_view digits = text.substr(prefix);
  if (hex) digits = CutAtDoubleSign(digits);
  ParsedDouble result;
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), result.value,
                                      hex ? std::chars_format::hex : std::chars_format::general);
  if (parsed.ec == std::errc::invalid_argument) return {};
  const auto used = static_cast<std::size_t>(parsed.ptr - digits.data());
  if (parsed.ec == std::errc::result_out_of_range) {
    const bool tooLarge = IsTooLarge(digits.substr(0, used), hex ? 'p' : 'e', hex);
    result.value = tooLarge ? std::numeric_limits<double>::infinity() : 0.0;
  }
  result.length = prefix + used;
  return result;
}

// Whatever is no plain decimal.
TEXTURON_NOINLINE ParsedDouble ParseAnyDouble(std::string_view text) {
  std::size_t start = CountWhiteSpace(text);
  bool negative = false;
  if (start < text.size() && (text[start] == '-' || text[start] == '+')) negative = text[start++] == '-';
  if (start == text.size() || text[start] == '-') return {};
  ParsedDouble result = ParseMagnitude(text.substr(start));
  if (!result.found()) return {};
  result.length += start;
  if (negative) result.value = -result.value;
  return result;
}

struct ParsedMagnitude {
  std::uint64_t value = 0;  // not above 2^32
  bool negative = false;
  std::size_t length = 0;
};

ParsedMagnitude ParseInteger(std::string_view text) {
  constexpr std::uint64_t kTooLarge = std::uint64_t{1} << 32;
  ParsedMagnitude result;
  std::size_t i = CountWhiteSpace(text);
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) result.negative = text[i++] == '-';
  const std::size_t firstDigit = i;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    result.value = std::min(result.value * 10 + static_cast<std::uint64_t>(text[i] - '0'), kTooLarge);
  }
  if (i != firstDigit) result.length = i;
  return result;
}

}  // namespace

void AppendFixed(std::string& out, double value, int decimals, int width, char fill) {
  if (!std::isfinite(value)) return AppendPadded(out, NonFiniteText(value), width);
  std::array<char, kRoomForFixedDecimal> decimal;
  if (const std::size_t length = WriteFixedDecimal(value, decimals, decimal.data()); length != 0) {
    return AppendPadded(out, {decimal.data(), length}, width, fill);
  }
  NumberBuffer buffer;
  AppendPadded(out, WriteNumber(buffer, value, std::chars_format::fixed, decimals), width, fill);
}

void AppendScientific(std::string& out, double value, int decimals, int width) {
  if (!std::isfinite(value)) return AppendPadded(out, NonFiniteText(value), width);
  NumberBuffer buffer;
  const std::string_view written = WriteNumber(buffer, value, std::chars_format::scientific, decimals);
  const std::size_t firstExponentDigit = written.rfind('e') + 2;
  std::string text(written);
  if (written.size() - firstExponentDigit == 2) text.insert(firstExponentDigit, 1, '0');
  AppendPadded(out, text, width);
}

void AppendShortest(std::string& out, double value) {
  std::array<char, kRoomForShortestDecimal> decimal;
  if (const std::size_t length = WriteShortestDecimal(value, decimal.data()); length != 0) {
    out.append(decimal.data(), length);
    return;
  }
  if (!std::isfinite(value)) {
    out.append(NonFiniteText(value));
    return;
  }
  NumberBuffer buffer;
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  out.append(buffer.data(), written.ptr);
}

void AppendInteger(std::string& out, std::int64_t value, int width, char fill) {
  std::array<char, 24> buffer;
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  const auto length = static_cast<std::size_t>(written.ptr - buffer.data());
  AppendPadded(out, {buffer.data(), length}, width, fill);
}

std::string FixedText(double value, int decimals, int width, char fill) {
  std::string text;
  AppendFixed(text, value, decimals, width, fill);
  return text;
}

std::string SignificantText(double value, int figures) {
  char text[64];
  const auto end = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::general, figures);
  return {text, end.ptr};
}

std::string ReadoutText(double value, int decimals) {
  std::string text = FixedText(value, decimals);
  if (text.find_first_not_of("-0.") == std::string::npos && text.starts_with('-')) text.erase(0, 1);
  return text;
}

std::string ScientificText(double value, int decimals, int width) {
  std::string text;
  AppendScientific(text, value, decimals, width);
  return text;
}

std::string ShortestText(double value) {
  std::string text;
  AppendShortest(text, value);
  return text;
}

std::string OrdinalText(std::int64_t value) {
  const std::int64_t tens = value % 100;
  const bool isTeen = tens >= 11 && tens <= 13;
  const char* const ending = isTeen            ? "th"
                             : value % 10 == 1 ? "st"
                             : value % 10 == 2 ? "nd"
                             : value % 10 == 3 ? "rd"
                                               : "th";
  return IntegerText(value) + ending;
}

std::string IntegerText(std::int64_t value, int width, char fill) {
  std::string text;
  AppendInteger(text, value, width, fill);
  return text;
}

ParsedDouble ParseDouble(std::string_view text) {
  const ParsedDouble plain = ParsePlainDecimal(text);
  return plain.found() ? plain : ParseAnyDouble(text);
}

ParsedDecimals ParsePlainDecimals(std::string_view text, std::span<double> values) {
  constexpr std::size_t kLooksAt = kWord + kMostOfPlain + kWord;  // with the characters behind a number
  if (std::endian::native != std::endian::little || text.size() < kLooksAt) return {};
  const char* const last = text.data() + (text.size() - kLooksAt);
  const char* at = text.data();
  std::size_t white = CountWhite(LoadEight(at));
  std::size_t count = 0;
  std::ptrdiff_t width = 0;  // that all numbers have in many files
  while (count < values.size() && at <= last && white != kWord) {
    // The next number is read where it begins if this one is as long as the one before: the processor need not wait.
    const char* const next = at + std::min(width, last - at);
    const std::size_t nextWhite = CountWhite(LoadEight(next));
    double nextValue = 0.0;
    const char* const nextEnd = nextWhite < kWord ? ReadPlain(next + nextWhite, nextValue) : nullptr;
    double value = 0.0;
    const char* const end = ReadPlain(at + white, value);
    if (end == nullptr) break;
    white = end == next ? nextWhite : CountWhite(LoadEight(end));
    if (white == 0 && ContinuesNumber(*end)) break;
    values[count++] = value;
    width = end - at;
    at = end;
    if (end != next || nextEnd == nullptr || count == values.size()) continue;
    white = CountWhite(LoadEight(nextEnd));
    if (white == 0 && ContinuesNumber(*nextEnd)) break;
    values[count++] = nextValue;
    at = nextEnd;
  }
  return {count, static_cast<std::size_t>(at - text.data())};
}

ParsedInt32 ParseInt32(std::string_view text) {
  const ParsedMagnitude parsed = ParseInteger(text);
  const auto value = static_cast<std::int64_t>(parsed.value);
  constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  return {static_cast<std::int32_t>(std::clamp(parsed.negative ? -value : value, kLeast, kMost)), parsed.length};
}

ParsedInt32 ParseUnsigned32(std::string_view text) {
  const ParsedMagnitude parsed = ParseInteger(text);
  if (parsed.value > std::numeric_limits<std::uint32_t>::max()) return {-1, parsed.length};
  const auto magnitude = static_cast<std::uint32_t>(parsed.value);
  return {static_cast<std::int32_t>(parsed.negative ? 0U - magnitude : magnitude), parsed.length};
}

}  // namespace texturon
