// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_arc.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "signal/form/level_line.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

// The circle in coordinates of the least-squares line y = a x, origin at the line's point over the mean x of the fit
// points, with t = y - a x the height above the line. Its equation reads there
//
//     (1 + a^2) x^2 + 2 a x t + t^2 - 2 S x - 2 B t - 2 C = 0,   S = A + a B,
//
// and, t having neither mean nor slope, least squares separate: B follows from the parts of the quadratic terms that
// run with t, S from those that run with x, C from their mean.
struct Circle {
  double a, S, A, B, C;
  double radius;

  double Equation(double x, double t) const {
    return x * (((1.0 + a * a) * x + 2.0 * a * t) - 2.0 * S) + t * (t - 2.0 * B) - 2.0 * C;
  }
  // Radial distance r - R, positive outside.
  double Outside(double x, double t) const {
    const double equation = Equation(x, t);
    return equation / (std::sqrt(std::max(radius * radius + equation, 0.0)) + radius);
  }
  // Height of the half circle above the line: the root of t^2 - 2 b t + q = 0 on that half. With b of the half's sign,
  // as it is near the points, b - root(b^2 - q) is q / (b + root(b^2 - q)) and does not cancel.
  double Height(double x) const {
    const double half = B > 0.0 ? 1.0 : -1.0;  // points below the centre: the lower half
    const double b = half * (B - a * x);
    const double q = x * ((1.0 + a * a) * x - 2.0 * S) - 2.0 * C;
    const double root = std::sqrt(std::max(b * b - q, 0.0));
    return half * (std::min(b, root) > 0.0 ? q / (b + root) : b - root);
  }
};

// Where a point stands in those coordinates.
struct Frame {
  LevelLine line;
  double spacing;

  double X(double index) const { return ((index - line.origin) - line.meanIndex) * spacing; }
};

struct FoundCircle {
  Circle circle;
  double sumSquaresX, sumSquaresT;  // of x and of t, um^2
};

std::optional<FoundCircle> FindCircle(const FitPoints& points, const Frame& frame) {
  const LevelLine& line = frame.line;
  const double spacing = frame.spacing;
  const double count = static_cast<double>(points.Count());
  const double sumSquares = line.sumSquares * spacing * spacing;
  const double sumCubes = line.sumCubes * spacing * spacing * spacing;
  const double meanSquare = sumSquares / count;
  std::array<double, 4> sums{};  // of t^2, (x^2 - its mean) t, x t^2, t^3
  for (const FitRun& run : points.Runs()) {
    const auto part = LaneSums(run.heights.size(), [&](std::size_t j) {
      const double index = run.Index(j);
      const double x = frame.X(index);
      const double t = line.Above(run.heights[j], index);
      const double square = t * t;
      return std::array{square, (x * x - meanSquare) * t, x * square, square * t};
    });
    for (std::size_t s = 0; s < sums.size(); ++s) sums[s] += part[s];
  }
  const auto [tt, xxt, xtt, ttt] = sums;
  const double level = std::abs(line.coarseHeight) + std::abs(line.coarseSlope) * 2.0 * line.origin;
  const double rounding = 2.0 * std::numeric_limits<double>::epsilon() * level;
  if (!(tt > count * rounding * rounding)) return {};

  Circle circle{};
  circle.a = line.Slope() / spacing;
  const double steep = 1.0 + circle.a * circle.a;
  circle.B = (steep * xxt + 2.0 * circle.a * xtt + ttt) / (2.0 * tt);
  circle.S = (steep * sumCubes + 2.0 * circle.a * xxt + xtt) / (2.0 * sumSquares);
  circle.C = (steep * sumSquares + tt) / (2.0 * count);
  circle.A = circle.S - circle.a * circle.B;
  circle.radius = std::sqrt(circle.A * circle.A + circle.B * circle.B + 2.0 * circle.C);
  if (!std::isfinite(circle.radius) || !(circle.radius > 0.0)) return {};
  return FoundCircle{circle, sumSquares, tt};
}

// A height that is off by d changes its point's equation by w d, w = 2 (height above the centre), and S, B and C by
// x, t and 1 times w d / 2 by the sums of x^2, t^2 and 1; A, B and R follow from those. The deviations' own size is
// that of what the arc leaves, by as many points as there are beyond three.
std::optional<ArcFit::Uncertainty> UncertaintyOf(const FoundCircle& found, const FitPoints& points,
                                                 const Frame& frame) {
  if (points.Count() < 4) return {};
  const Circle& circle = found.circle;
  const double count = static_cast<double>(points.Count());
  std::array<double, 4> sums{};  // of what the arc leaves and of the heights' effects on R, A and B, squared
  for (const FitRun& run : points.Runs()) {
    const auto part = LaneSums(run.heights.size(), [&](std::size_t j) {
      const double index = run.Index(j);
      const double x = frame.X(index);
      const double t = frame.line.Above(run.heights[j], index);
      const double w = t + circle.a * x - circle.B;
      const double left = t - circle.Height(x);
      const double onB = t / found.sumSquaresT;
      const double onA = x / found.sumSquaresX - circle.a * onB;
      const double onRadius = (circle.A * onA + circle.B * onB + 1.0 / count) / circle.radius;
      const double square = w * w;
      return std::array{left * left, onRadius * onRadius * square, onA * onA * square, onB * onB * square};
    });
    for (std::size_t s = 0; s < sums.size(); ++s) sums[s] += part[s];
  }
  const double variance = sums[0] / (count - 3.0);
  const auto uncertainty = [&](double effects) { return std::sqrt(variance * effects); };
  return ArcFit::Uncertainty{uncertainty(sums[1]), uncertainty(sums[2]), uncertainty(sums[3])};
}

}  // namespace

std::optional<ArcFit> FitArc(const FormInput& input, FormOutput output) {
  if (!output.Fits(input)) return {};
  const FitPoints points(input);
  if (points.Count() < 3) return {};
  const auto line = FindLevelLine(points, input.heights.size());
  if (!line) return {};
  const Frame frame{*line, input.spacingUM};
  const auto found = FindCircle(points, frame);
  if (!found) return {};
  const Circle circle = found->circle;

  const std::span<const double> heights = input.heights;
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const double index = ExactDouble(i);
    const double height = circle.Height(frame.X(index));
    output.form[i] = frame.line.Coarse(index) + (frame.line.Fine(index) + height);
    output.residual[i] = frame.line.Above(heights[i], index) - height;
  }
  const bool perpendicular = input.residual == ResidualKind::kPerpendicular;
  if (perpendicular) {
    for (std::size_t i = 0; i < heights.size(); ++i) {
      const double index = ExactDouble(i);
      const double x = frame.X(index);
      const double t = frame.line.Above(heights[i], index);
      const double outside = circle.Outside(x, t);
      output.residual[i] = t + circle.a * x >= circle.B ? outside : -outside;
    }
  }
  const double centreIndex = frame.line.origin + frame.line.meanIndex;
  const double spacing = perpendicular ? MeanPathStep(heights, input.spacingUM) : input.spacingUM;
  const ArcFit fit{circle.radius, circle.A + centreIndex * input.spacingUM, circle.B + frame.line.Height(centreIndex),
                   spacing, UncertaintyOf(*found, points, frame)};
  if (!std::isfinite(fit.centreXUM) || !std::isfinite(fit.centreYUM) || !std::isfinite(spacing)) return {};
  return fit;
}

}  // namespace texturon
