// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "analysis/document.h"

namespace texturon {

/// What is drawn over the roughness's probability curve, in standard deviations and um.
struct ProbabilityPlot {
  struct Region {
    double from = 0.0;
    double to = 0.0;
  };
  /// A fitted line from one end of its region to the other and on to where it crosses the other line.
  struct Segment {
    double x0 = 0.0, y0 = 0.0, x1 = 0.0, y1 = 0.0;
  };
  std::optional<Region> plateauRegion;  ///< UPL to LPL
  std::optional<Region> valleyRegion;   ///< UVL to LVL
  std::optional<Segment> plateau;
  std::optional<Segment> valley;
};

/// Regions end where the curve ends. Nothing of what was not computed.
ProbabilityPlot ProbabilityPlotOf(const Document& document);

/// Material ratios that a scale of standard deviations is also labelled with.
struct PercentTick {
  double deviations = 0.0;
  std::string_view text;
};
std::array<PercentTick, 9> PercentTicks();

}  // namespace texturon
