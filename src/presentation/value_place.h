// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "analysis/uncertainty_trials.h"
#include "parameters/catalogue.h"

namespace texturon {

/// A value and what trials say of it, in the unit shown. All but the bias end at the same place, that of the second
/// figure of U (k = 2): what is told of the value beyond it is noise. Ones are never rounded away; a U of
/// 0, or one that is only the rounding of the trials, rounds nothing.
struct UncertaintyTexts {
  std::string value;  ///< empty: not computed
  std::string expanded;
  std::string low;
  std::string high;
  std::string bias;
};
UncertaintyTexts TextsOf(const ParameterDef& row, const ParameterUncertainty& uncertainty, bool metric);

}  // namespace texturon
