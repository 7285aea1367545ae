// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace texturon {

/// A stretch of samples: first index, last index (inclusive) and count = last - first + 1. An empty range has count 0.
/// The makers saturate at the ends of 32 bits, because a user's indices may be anything.
struct IndexRange {
  std::int32_t first = 0;
  std::int32_t last = -1;
  std::int32_t count = 0;

  static constexpr IndexRange FromEnds(std::int64_t first, std::int64_t last) {
    return {Saturated(first), Saturated(last), Saturated(last - first + 1)};
  }
  static constexpr IndexRange FromCount(std::int64_t first, std::int64_t count) {
    return {Saturated(first), Saturated(first + count - 1), Saturated(count)};
  }
  /// The same stretch counted from an origin that lies `offset` samples earlier.
  constexpr IndexRange ShiftedBy(std::int64_t offset) const {
    return {Saturated(first + offset), Saturated(last + offset), count};
  }

  friend constexpr bool operator==(const IndexRange&, const IndexRange&) = default;

  static constexpr std::int32_t Saturated(std::int64_t index) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(index, Limits::min(), Limits::max()));
  }
};

}  // namespace texturon
