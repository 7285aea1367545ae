// SPDX-License-Identifier: Apache-2.0

#include "presentation/cursor_measures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "base/elementary.h"
#include "base/number_text.h"
#include "base/quantity.h"
#include "signal/form/geometric_circle.h"

namespace texturon {
namespace {

/// Sums of a stretch about its own middle, x from -1 to 1, so that large records keep their digits.
struct Line {
  double mean = 0.0;   ///< height at the middle
  double slope = 0.0;  ///< height per half length
};

Line FitLine(std::span<const double> heights) {
  const double half = 0.5 * static_cast<double>(heights.size() - 1);
  double sum = 0.0;
  double product = 0.0;
  double square = 0.0;
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const double x = (static_cast<double>(i) - half) / half;
    sum += heights[i];
    product += x * heights[i];
    square += x * x;
  }
  return {sum / static_cast<double>(heights.size()), product / square};
}

/// z = u + v x + h d by least squares, d being 1 between the cursors and 0 beside them; h and v.
std::optional<std::pair<double, double>> FitStep(std::span<const double> heights, std::size_t first, std::size_t last) {
  // A few samples that are left beside a stretch that was computed over have no mean line of their own.
  constexpr std::size_t kLeastBeside = 3;
  constexpr std::size_t kLeastShare = 20;
  const std::size_t between = last - first + 1;
  if (heights.size() - between < std::max(kLeastBeside, between / kLeastShare)) return std::nullopt;
  // Taking the mean of each part out leaves one slope for both.
  std::array<double, 2> count{}, x{}, z{};
  const auto part = [&](std::size_t i) -> std::size_t { return i >= first && i <= last ? 1 : 0; };
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const std::size_t p = part(i);
    count[p] += 1.0;
    x[p] += static_cast<double>(i);
    z[p] += heights[i];
  }
  for (std::size_t p = 0; p < 2; ++p) {
    x[p] /= count[p];
    z[p] /= count[p];
  }
  double product = 0.0;
  double square = 0.0;
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const std::size_t p = part(i);
    const double dx = static_cast<double>(i) - x[p];
    product += dx * (heights[i] - z[p]);
    square += dx * dx;
  }
  if (!(square > 0.0)) return std::nullopt;
  const double slope = product / square;
  return std::pair(z[1] - z[0] - slope * (x[1] - x[0]), slope);
}

}  // namespace

std::optional<CursorMeasures> MeasureBetween(std::span<const double> heightsUM, double spacingUM, std::size_t first,
                                             std::size_t last) {
  constexpr std::size_t kLeast = 3;
  if (last >= heightsUM.size() || last + 1 < first + kLeast || !(spacingUM > 0.0)) return std::nullopt;
  const std::span<const double> between = heightsUM.subspan(first, last - first + 1);
  const double halfUM = 0.5 * static_cast<double>(between.size() - 1) * spacingUM;
  const Line line = FitLine(between);
  CursorMeasures measures;
  measures.angleDegrees = Atan(line.slope / halfUM) * 180.0 / std::numbers::pi;
  measures.lineUM = {line.mean - line.slope, line.mean + line.slope};
  const auto circle = FitGeometricCircle(between, spacingUM);
  if (circle && circle->isBent) {
    if (circle->isRound) measures.radiusMM = circle->radiusUM * kMillimetresPerMicrometre;
    if (!circle->isRound) measures.shareOfCircle = circle->share;
  }
  if (const auto step = FitStep(heightsUM, first, last)) {
    const auto [height, slope] = *step;
    measures.stepUM = height;
    const double tangent = slope / spacingUM;
    measures.distanceUM = std::abs(height) / std::sqrt(1.0 + tangent * tangent);
  }
  return measures;
}

std::string MeasureText(const Document& document, ProfileKind kind, const std::pair<double, double>& xMM) {
  if (!document.profiles.Has(kind)) return {};
  const Profile profile = document.profiles.View(kind);
  const auto indexAt = [&](double mm) {
    const std::int32_t index = StepsInLength(mm, profile.spacingUM) - profile.range.first;
    return static_cast<std::size_t>(std::clamp(index, 0, profile.range.count - 1));
  };
  const auto [from, to] = std::minmax(xMM.first, xMM.second);
  const auto measures = MeasureBetween(profile.Heights(), profile.spacingUM, indexAt(from), indexAt(to));
  if (!measures) return {};
  const bool metric = document.settings.display.Metric;
  std::string text = "Between the cursors:";
  if (measures->stepUM) {
    text += "  step " + HeightReadout(*measures->stepUM, metric) + "  distance of the mean lines " +
            HeightReadout(*measures->distanceUM, metric);
  } else {
    text += "  no step: it needs the profile beside the cursors, too";
  }
  text += "  angle " + ReadoutText(measures->angleDegrees, 4) + "\xB0  mean line " +
          HeightReadout(measures->lineUM.first, metric) + " to " + HeightReadout(measures->lineUM.second, metric);
  if (measures->radiusMM) {
    text += "  radius " + LengthReadout(*measures->radiusMM, metric);
  } else if (measures->shareOfCircle) {
    text += "  no radius: a circle is only " + FixedText(100.0 * std::max(*measures->shareOfCircle, 0.0), 0) +
            " % of the shape";
  } else {
    text += "  no radius: the stretch is flat within its roughness";
  }
  return text + "  (" + ProfileTitle(kind) + ")";
}

}  // namespace texturon
