// SPDX-License-Identifier: Apache-2.0

#include "base/fixed_decimal.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "base/eight_digits.h"

namespace texturon {

std::size_t WriteFixedDecimal(double value, int decimals, char* out) {
  __extension__ using Whole = unsigned __int128;
  constexpr double kTooLarge = 1 << 30;
  constexpr std::array<std::uint64_t, 10> kTens = {1,       10,        100,        1'000,       10'000,
                                                   100'000, 1'000'000, 10'000'000, 100'000'000, 1'000'000'000};
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const double size = std::bit_cast<double>(bits & ~(std::uint64_t{1} << 63));
  if (std::endian::native != std::endian::little || !(size < kTooLarge) || decimals < 0 || decimals > 9) return 0;

  // size = fraction 2^-shift; times a power of ten it has fewer than 83 digits before the shift, and below 60 after it.
  const std::uint64_t field = bits >> 52 & 0x7FF;
  const std::uint64_t fraction = (bits & ((std::uint64_t{1} << 52) - 1)) | std::uint64_t{field != 0} << 52;
  const std::uint64_t shift = 1075 - field;
  std::uint64_t digits = 0;
  constexpr std::uint64_t kNothingLeft = 84;
  if (shift < kNothingLeft) {
    const Whole scaled = Whole{fraction} * kTens[static_cast<std::size_t>(decimals)];
    digits = static_cast<std::uint64_t>(scaled >> shift);
    const Whole rest = scaled - (Whole{digits} << shift);
    const Whole half = Whole{1} << (shift - 1);
    digits += static_cast<std::uint64_t>(rest > half || (rest == half && digits % 2 == 1));
  }

  constexpr std::uint64_t kEightDigits = 100'000'000;
  constexpr std::size_t kWidth = 24;
  char text[kWidth + 16] = {};  // the digits, and what may be copied behind them
  const std::uint64_t upper = digits / kEightDigits;
  WriteEight(text, upper / kEightDigits);
  WriteEight(text + 8, upper % kEightDigits);
  WriteEight(text + 16, digits % kEightDigits);
  const auto behind = static_cast<std::size_t>(decimals);
  const std::size_t count = CountDigits(digits);
  const std::size_t before = count > behind ? count - behind : 1;
  char* at = out;
  *at = '-';
  at += bits >> 63;
  const char* const point = text + kWidth - behind;
  std::memcpy(at, point - before, 16);  // a copy of a length that is known is two instructions
  at += before;
  if (behind == 0) return static_cast<std::size_t>(at - out);
  *at++ = '.';
  std::memcpy(at, point, 16);
  return static_cast<std::size_t>(at + behind - out);
}

}  // namespace texturon
