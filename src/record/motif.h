// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>

namespace texturon {

/// A motif of ISO 12085: the stretch between two peaks with the lowest point between them. Places are sample indices.
struct Motif {
  std::int32_t firstPeak = 0;
  std::int32_t dale = 0;
  std::int32_t lastPeak = 0;
  double firstDepthUM = 0.0;  ///< first peak above the dale
  double lastDepthUM = 0.0;   ///< last peak above the dale

  friend bool operator==(const Motif&, const Motif&) = default;
};

}  // namespace texturon
