// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>

namespace texturon {

/// Room that WriteFixedDecimal needs.
inline constexpr std::size_t kRoomForFixedDecimal = 40;

/// Writes the number with that many decimals, the exact value rounded, halves to the even digit, as std::to_chars does
/// in four times the time, and returns the length; `out` has room for kRoomForFixedDecimal characters. 0 for numbers of
/// 2^30 and more, those that are none, and more than nine decimals: they are left to the library.
std::size_t WriteFixedDecimal(double value, int decimals, char* out);

}  // namespace texturon
