// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_line.h"

#include <array>
#include <cmath>

#include "base/multiversion.h"
#include "signal/form/level_line.h"
#include "signal/lane_sums.h"
#include "signal/mean.h"

namespace texturon {
namespace {

TEXTURON_MULTIVERSION
void WriteLine(std::span<const double> heights, const LevelLine& line, double shrink, FormOutput output) {
  const LevelLine level = line;  // a copy that no output can alias
  const double* const from = heights.data();
  double* const form = output.form.data();
  double* const residual = output.residual.data();
  const std::size_t n = heights.size();
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) {
    const double index = ExactDouble(i);
    form[i] = level.Height(index);
    residual[i] = level.Above(from[i], index) * shrink;
  }
}

TEXTURON_MULTIVERSION
void SumSquaresAbove(const FitRun& run, const LevelLine& line, double& sum) {
  const FitRun own = run;
  const LevelLine level = line;
  sum = LaneSums(own.heights.size(), [&](std::size_t j) {
    const double above = level.Above(own.heights[j], own.Index(j));
    return std::array{above * above};
  })[0];
}

}  // namespace

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
  WriteLine(input.heights, *line, shrink, output);
  if (perpendicular && input.step > 1) {
    const double mean = Mean(output.residual);
    for (double& residual : output.residual) residual -= mean;
  }
  LineFit fit{slope, line->Height(0.0), perpendicular ? input.spacingUM * stretch : input.spacingUM};
  if (points.Count() > 2) {
    double squares = 0.0;
    for (const FitRun& run : points.Runs()) {
      double part = 0.0;
      SumSquaresAbove(run, *line, part);
      squares += part;
    }
    const double count = static_cast<double>(points.Count());
    const double variance = squares / (count - 2.0);
    const double reach = line->origin + line->meanIndex;  // from the first point to the middle of the fit's
    fit.slopeUncertainty = std::sqrt(variance / line->sumSquares) / input.spacingUM;
    fit.interceptUncertaintyUM = std::sqrt(variance * (1.0 / count + reach * reach / line->sumSquares));
  }
  return fit;
}

}  // namespace texturon
