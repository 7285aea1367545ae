// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace texturon {

/// The little-endian number of type T at byte `at`, which must lie inside with all its bytes.
template <typename T>
T LittleEndian(std::string_view bytes, std::size_t at) {
  static_assert(std::is_arithmetic_v<T> && sizeof(T) <= 8);
  std::uint64_t bits = 0;
  for (std::size_t i = sizeof(T); i-- > 0;) bits = bits << 8 | static_cast<unsigned char>(bytes[at + i]);
  if constexpr (std::is_same_v<T, float>) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
  } else if constexpr (std::is_same_v<T, double>) {
    return std::bit_cast<double>(bits);
  } else {
    return static_cast<T>(bits);
  }
}

/// Appends the bytes of a number, the least significant first.
template <typename T>
void AppendLittleEndian(std::string& out, T value) {
  std::uint64_t bits = 0;
  if constexpr (std::is_same_v<T, double>) {
    bits = std::bit_cast<std::uint64_t>(value);
  } else {
    static_assert(std::is_unsigned_v<T>);
    bits = value;
  }
  for (std::size_t i = 0; i < sizeof(T); ++i) out += static_cast<char>(bits >> 8 * i & 0xFF);
}

}  // namespace texturon
