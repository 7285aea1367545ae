// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace texturon {

inline constexpr double kCoverageFactor = 2.0;
inline constexpr double kCoverage = 0.95;

/// Of one parameter, in its metric unit.
struct ParameterUncertainty {
  double standard = 0.0;  ///< deviation of the trials (n - 1)
  double low = 0.0;       ///< ends of the interval that holds 95 % of them
  double high = 0.0;
  double bias = 0.0;  ///< mean of the trials minus the value: added noise raises heights and slopes
  std::size_t trials = 0;
  double undefined = 0.0;  ///< share of the trials in which the parameter was not defined

  double Expanded() const { return kCoverageFactor * standard; }
  /// Whether verdicts may go by it: an interval of 95 % says nothing where more than the rest have no value.
  bool IsDefinedOften() const { return undefined <= 1.0 - kCoverage; }
};

/// Of the selected rows, in the order of ShownRows; nothing for a row without a value or with fewer than two trials
/// that are defined.
using Uncertainties = std::vector<std::optional<ParameterUncertainty>>;

}  // namespace texturon
