#pragma once

#include <cstdint>

namespace texturon {

/// A stretch of samples: first index, last index (inclusive) and count = last - first + 1. An empty range has count 0.
struct IndexRange {
  std::int32_t first = 0;
  std::int32_t last = -1;
  std::int32_t count = 0;

  static constexpr IndexRange FromEnds(std::int32_t first, std::int32_t last) {
    return {first, last, last - first + 1};
  }
  static constexpr IndexRange FromCount(std::int32_t first, std::int32_t count) {
    return {first, first + count - 1, count};
  }
  /// The same stretch counted from an origin that lies `offset` samples earlier.
  constexpr IndexRange ShiftedBy(std::int32_t offset) const { return {first + offset, last + offset, count}; }

  friend constexpr bool operator==(const IndexRange&, const IndexRange&) = default;
};

}  // namespace texturon
