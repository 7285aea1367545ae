// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_line.h"

#include <cmath>

#include "signal/form/level_line.h"
#include "signal/mean.h"

namespace texturon {

std::optional<LineFit> FitLine(const FormInput& input, FormOutput output) {
  if (!output.Fits(input)) return {};
  const std::size_t n = input.heights.size();
  const FitPoints points(input);
  const auto line = FindLevelLine(points, n);
  if (!line) return {};

  const double slope = line->Slope() / input.spacingUM;
  const double stretch = std::sqrt(1.0 + slope * slope);  // 1 / cos(atan(slope))
  if (!std::isfinite(stretch)) return {};
  const bool perpendicular = input.residual == ResidualKind::kPerpendicular;
  const double shrink = perpendicular ? 1.0 / stretch : 1.0;
  const LevelLine level = *line;  // a copy that no output can alias
  for (std::size_t i = 0; i < n; ++i) {
    const double index = ExactDouble(i);
    output.form[i] = level.Height(index);
    output.residual[i] = level.Above(input.heights[i], index) * shrink;
  }
  if (perpendicular && input.step > 1) {
    const double mean = Mean(output.residual);
    for (double& residual : output.residual) residual -= mean;
  }
  return LineFit{slope, level.Height(0.0), perpendicular ? input.spacingUM * stretch : input.spacingUM};
}

}  // namespace texturon
