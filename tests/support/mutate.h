// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <random>
#include <string>
#include <string_view>

namespace texturon {

/// A copy of `bytes` with one to four random injuries: bytes changed, cut out, doubled or replaced by what breaks
/// parsers.
inline std::string Mutate(std::string bytes, std::mt19937_64& random) {
  constexpr std::string_view kPoison[] = {
      "-1", "99999999999999999999", "1e999", "nan",   "\r", "\n\n", "\t", "\xFF\xFE", "=", "\"", "inf", "0x1p9",
      "%s", "2147483647",           ",",     "1e-999"};
  const auto below = [&random](std::size_t n) { return static_cast<std::size_t>(random() % (n == 0 ? 1 : n)); };
  for (std::size_t injuries = 1 + below(4); injuries > 0; --injuries) {
    const std::size_t at = below(bytes.size() + 1);
    switch (below(5)) {
      case 0:
        if (at < bytes.size()) bytes[at] = static_cast<char>(below(256));
        break;
      case 1:
        bytes.erase(at, below(40));
        break;
      case 2:
        bytes.insert(at, bytes.substr(below(bytes.size() + 1), below(60)));
        break;
      case 3:
        bytes.insert(at, kPoison[below(std::size(kPoison))]);
        break;
      default:
        bytes.resize(at);
        break;
    }
  }
  return bytes;
}

}  // namespace texturon
