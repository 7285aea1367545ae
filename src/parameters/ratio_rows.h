// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <span>
#include <string_view>

#include "parameters/no_value.h"
#include "settings/analysis_settings.h"

namespace texturon {

/// What the ten rows of a configurable kind are.
struct RatioRowKind {
  std::string_view name;
  std::string_view definition;
  std::string_view source;
};
/// Pmr, Rmr, PHtp, RHtp; null for any other name.
const RatioRowKind* FindRatioRowKind(std::string_view name);

/// Last result of a configurable row.
struct RatioRowResult {
  bool valid = false;
  double value = 0.0;
  NoValue reason = {};  ///< where it is not valid
};
using RatioRowResults = std::array<RatioRowResult, kRatioRows>;

/// Material ratios (percent) from heights sorted from the highest to the lowest: at the row's depth below the height at
/// its reference percent, or at its depth above the mean line (height 0) where the mean is the reference. The ratio at
/// a height is that of the first point at or below it, 100 below all of them. Invalid for no points.
RatioRowResults ComputeMaterialRatios(std::span<const double> sorted, const MaterialRatioRows& rows);

/// Heights (um) between two material ratios: height at the lower percent minus height at the upper one, each the height
/// of the point with the nearest ratio. Invalid for no points and where the difference is not finite.
RatioRowResults ComputeHtps(std::span<const double> sorted, const HtpRows& rows);

}  // namespace texturon
