// SPDX-License-Identifier: Apache-2.0

#include "formats/base64.h"

#include <cstdint>

namespace texturon {

std::optional<std::string> BytesFromBase64(std::string_view text) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 3);
  std::uint32_t bits = 0;
  int count = 0;
  std::size_t fills = 0;
  for (const char c : text) {
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
    if (c == '=') {
      ++fills;
      continue;
    }
    const std::size_t digit = kDigits.find(c);
    if (digit == std::string_view::npos || fills > 0) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(digit);
    if (++count % 4 == 1) continue;
    const int spare = 6 - 2 * ((count + 3) % 4);
    bytes += static_cast<char>(bits >> spare & 0xFF);
  }
  if (count % 4 == 1 || fills > 2) return std::nullopt;
  return bytes;
}

}  // namespace texturon
