// SPDX-License-Identifier: Apache-2.0

#include "base/shortest_decimal.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "base/eight_digits.h"
#include "base/multiversion.h"

// After R. Giulietti, "The Schubfach way to render doubles": of the interval that reads back to a double, scaled by a
// power of ten so that it holds at least two whole numbers and few, the ends and the double itself are needed only as
// whole numbers and one sticky bit. In the range that is taken here the powers are 10 to 10^20, which 128 bits hold
// exactly.

namespace texturon {
namespace {

struct Wide {
  std::uint64_t high = 0;
  std::uint64_t low = 0;
};

TEXTURON_INLINE Wide Product(std::uint64_t a, std::uint64_t b) {
#if defined(__SIZEOF_INT128__)
  __extension__ using Whole = unsigned __int128;
  const Whole product = static_cast<Whole>(a) * b;
  return {static_cast<std::uint64_t>(product >> 64), static_cast<std::uint64_t>(product)};
#else
  const std::uint64_t lowA = a & 0xFFFFFFFFu, highA = a >> 32, lowB = b & 0xFFFFFFFFu, highB = b >> 32;
  const std::uint64_t first = lowA * lowB;
  const std::uint64_t middle = highA * lowB + (first >> 32);
  const std::uint64_t other = lowA * highB + (middle & 0xFFFFFFFFu);
  return {highA * highB + (middle >> 32) + (other >> 32), other << 32 | (first & 0xFFFFFFFFu)};
#endif
}

constexpr int kGreatestPower = 20;

/// Powers of ten, shifted so far up that the top bit is set.
constexpr std::array<Wide, kGreatestPower + 1> kPowers = [] {
  std::array<Wide, kGreatestPower + 1> powers{};
  Wide power{std::uint64_t{1} << 63, 0};
  for (Wide& entry : powers) {
    entry = power;
    // Times 10 / 16: an eighth of it and half of it.
    Wide half{power.high >> 1, power.high << 63 | power.low >> 1};
    const Wide eighth{power.high >> 3, power.high << 61 | power.low >> 3};
    half.low += eighth.low;
    half.high += eighth.high + (half.low < eighth.low ? 1 : 0);
    while ((half.high >> 63) == 0) half = {half.high << 1 | half.low >> 63, half.low << 1};
    power = half;
  }
  return powers;
}();

/// power x factor / 2^128, its last bit set where digits are cut off.
TEXTURON_INLINE std::uint64_t Scaled(const Wide& power, std::uint64_t factor) {
  const std::uint64_t carried = Product(power.low, factor).high;
  Wide product = Product(power.high, factor);
  product.low += carried;
  product.high += static_cast<std::uint64_t>(product.low < carried);
  return product.high | static_cast<std::uint64_t>(product.low > 1);
}

/// digits x 10^exponent.
struct Decimal {
  std::uint64_t digits;
  int exponent;
};

/// The shortest decimal of significand x 2^exponent; the nearest of several.
TEXTURON_INLINE Decimal ShortestOf(std::uint64_t significand, int exponent, bool isPowerOfTwo) {
  const auto power = (exponent * 1262611 - (isPowerOfTwo ? 524031 : 0)) >> 22;  // log10 of the interval's length
  const int shift = exponent + ((-power * 1741647) >> 19) + 1;
  const Wide& scale = kPowers[static_cast<std::size_t>(-power)];
  const std::uint64_t isOdd = significand & 1u;  // then the ends of the interval read back to the neighbours
  const std::uint64_t lowest = Scaled(scale, (4 * significand - (isPowerOfTwo ? 1 : 2)) << shift) + isOdd;
  const std::uint64_t middle = Scaled(scale, (4 * significand) << shift);
  const std::uint64_t highest = Scaled(scale, (4 * significand + 2) << shift) - isOdd;
  const std::uint64_t whole = middle / 4;
  const std::uint64_t tens = whole / 10;
  // Chosen without a branch: which it is changes from number to number.
  const auto holdsTens = static_cast<std::uint64_t>(lowest <= 40 * tens);
  const auto holdsNextTens = static_cast<std::uint64_t>(40 * tens + 40 <= highest);
  const auto holdsWhole = static_cast<std::uint64_t>(lowest <= 4 * whole);
  const auto holdsNext = static_cast<std::uint64_t>(4 * whole + 4 <= highest);
  const auto isNextNearer = static_cast<std::uint64_t>(middle + (whole & 1u) > 4 * whole + 2);
  const std::uint64_t isOneHeld = holdsWhole ^ holdsNext;
  const std::uint64_t fine = whole + ((isOneHeld & holdsNext) | (~isOneHeld & isNextNearer));
  const std::uint64_t takesTens = holdsTens ^ holdsNextTens;
  const std::uint64_t coarse = tens + holdsNextTens;
  return {fine ^ ((fine ^ coarse) & (0 - takesTens)), power + static_cast<int>(takesTens)};
}

}  // namespace

std::size_t WriteShortestDecimal(double value, char* out) {
  constexpr double kLeast = 1e-4;
  constexpr double kTooLarge = 1e15;
  constexpr std::uint64_t kHidden = std::uint64_t{1} << 52;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const double size = std::bit_cast<double>(bits & ~(std::uint64_t{1} << 63));
  if (std::endian::native != std::endian::little || !(size >= kLeast && size < kTooLarge)) return 0;
  const std::uint64_t fraction = bits & (kHidden - 1);
  const int exponent = static_cast<int>((bits >> 52) & 0x7FFu) - 1075;
  Decimal decimal = ShortestOf(fraction | kHidden, exponent, fraction == 0);
  while (decimal.digits % 10 == 0) {
    decimal.digits /= 10;
    ++decimal.exponent;
  }
  if (decimal.exponent >= 0 || decimal.digits < 10) return 0;

  constexpr std::size_t kWidth = 24;
  constexpr std::size_t kMostBefore = 16;  // the point
  char text[2 * kWidth] = {};              // zeros, the digits, and what may be copied behind them
  constexpr std::uint64_t kEightDigits = 100'000'000;
  const std::uint64_t upper = decimal.digits / kEightDigits;
  std::memset(text, '0', 7);
  text[7] = static_cast<char>('0' + upper / kEightDigits);  // 17 digits at most
  WriteEight(text + 8, upper % kEightDigits);
  WriteEight(text + 16, decimal.digits % kEightDigits);
  const auto decimals = static_cast<std::size_t>(-decimal.exponent);
  const std::size_t digits = CountDigits(decimal.digits);
  const std::size_t before = digits > decimals ? digits - decimals : 1;
  char* at = out;
  *at = '-';
  at += bits >> 63;
  const char* const point = text + kWidth - decimals;
  std::memcpy(at, point - before, kMostBefore);  // a copy of a length that is known is two instructions
  at += before;
  *at++ = '.';
  std::memcpy(at, point, kWidth);
  return static_cast<std::size_t>(at + decimals - out);
}

}  // namespace texturon
