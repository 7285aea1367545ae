// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/multiversion.h"

namespace texturon {

/// Eight digits as text, the first in the lowest byte: halves, then pairs, then single ones side by side.
TEXTURON_INLINE void WriteEight(char* out, std::uint64_t number) {
  const std::uint64_t fours = number / 10'000 | (number % 10'000) << 32;
  const std::uint64_t hundreds = ((fours * 10'486) >> 20) & 0x0000'007F'0000'007F;
  const std::uint64_t pairs = hundreds | (fours - 100 * hundreds) << 16;
  const std::uint64_t tens = ((pairs * 103) >> 10) & 0x000F'000F'000F'000F;
  const std::uint64_t text = (tens | (pairs - 10 * tens) << 8) | 0x3030'3030'3030'3030;
  std::memcpy(out, &text, sizeof text);
}

TEXTURON_INLINE std::size_t CountDigits(std::uint64_t number) {
  static constexpr std::array<std::uint64_t, 20> kTens = [] {
    std::array<std::uint64_t, 20> tens{};
    std::uint64_t ten = 1;
    for (std::uint64_t& entry : tens) {
      entry = ten;
      ten *= 10;
    }
    return tens;
  }();
  const auto guess = static_cast<std::size_t>(std::bit_width(number) * 1233) >> 12;
  return guess + static_cast<std::size_t>(number >= kTens[guess]);
}

}  // namespace texturon
