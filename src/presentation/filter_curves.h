// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/document.h"

namespace texturon {

/// What the filters of an analysis let through, in percent of the amplitude of each wavelength of the form-suppressed
/// profile.
struct FilterCurves {
  std::vector<double> wavelengthMM;  ///< ascending, at equal ratios
  std::vector<double> primary;       ///< empty where no short-wave filter ran
  std::vector<double> waviness;
  std::vector<double> roughness;
  std::vector<double> cutoffsMM;  ///< where one half is passed: the long-wave one, and the short-wave one where it ran
  std::string remark;             ///< what the curves leave out; empty: nothing
};

/// The transmissions of the long-wave filter in force, times that of the short-wave filter. What a filter does beside
/// that, as by its weights, is left out, and the remark says so. Nothing before an analysis, and where the long-wave
/// filter does not take the cutoff.
std::optional<FilterCurves> FilterCurvesOf(const Document& document);

}  // namespace texturon
