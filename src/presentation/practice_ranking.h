// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "analysis/practice.h"
#include "presentation/instrument_comparison.h"

namespace texturon {

/// How near one practice comes to the instrument's own values.
struct TriedPractice {
  std::string_view name;  ///< of its file
  double cutoffMM = 0.0;
  double deviation = 0.0;  ///< root mean square of the relative deviations, each at most 1
  std::vector<InstrumentMatch> matches;

  /// How many values are within 1 %.
  std::size_t Near() const;
};

/// A practice whose deviation is above this explains nothing.
inline constexpr double kExplained = 0.05;

/// Every practice over `base` with every standard cut-off that the record is long enough for, the nearest first.
std::vector<TriedPractice> TryPractices(const Practice& base, const ProfileSet& record);

}  // namespace texturon
