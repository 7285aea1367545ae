// SPDX-License-Identifier: Apache-2.0

#include "signal/form/shape_residual.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/units.h"

namespace texturon {
namespace {

constexpr std::size_t kBlock = 512;
constexpr int kMostRounds = 40;
constexpr double kSettledMM = 1e-14;  // a step below it is the last one
constexpr double kSolvedMM = 1e-10;   // a point that is farther off after all rounds is not solved

using Block = std::array<double, kBlock>;

struct Points {
  Block x, z, u, w;
  std::size_t count;
};

/// Solves step(u, S, S') = 0 for each of a block by Newton's method, in common rounds; `off` is what is left.
template <typename Remainder>
void Solve(const Shape& shape, std::size_t count, Block& u, Block& height, Block& off, const Remainder& remainder) {
  Block slope;
  const std::span<double> at(u.data(), count);
  for (int round = 0; round < kMostRounds; ++round) {
    shape.Evaluate(at, {.height = std::span(height.data(), count), .slope = std::span(slope.data(), count)});
    double largest = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
      const auto [value, derivative] = remainder(i, u[i], height[i], slope[i]);
      const double step = value / derivative;
      off[i] = std::abs(step);
      largest = std::max(largest, off[i]);
      if (off[i] > kSettledMM) u[i] -= step;
    }
    if (largest <= kSettledMM) return;
  }
  shape.Evaluate(at, {.height = std::span(height.data(), count), .slope = std::span(slope.data(), count)});
}

struct Remainder {
  double value, derivative;
};

void WriteBlock(const Points& points, const Shape& shape, const Axes& axes, bool isPerpendicular, double* form,
                double* residual) {
  Block deviation, slope, u, height, off;
  const std::size_t count = points.count;
  shape.Evaluate(std::span(points.u.data(), count),
                 {.height = std::span(height.data(), count), .slope = std::span(slope.data(), count)});
  for (std::size_t i = 0; i < count; ++i) deviation[i] = points.w[i] - height[i];

  u = points.u;
  Solve(shape, count, u, height, off, [&](std::size_t i, double at, double h, double s) {
    return Remainder{axes.MeasuredX(at, h) - points.x[i], axes.cosine - axes.sine * s};
  });
  for (std::size_t i = 0; i < count; ++i) {
    const double over = off[i] <= kSolvedMM ? axes.MeasuredZ(u[i], height[i]) : points.z[i] - deviation[i];
    form[i] = over * kMicrometresPerMillimetre;
    residual[i] = deviation[i] * kMicrometresPerMillimetre;
  }
  if (!isPerpendicular) return;

  u = points.u;
  Solve(shape, count, u, height, off, [&](std::size_t i, double at, double h, double s) {
    return Remainder{(at - points.u[i]) + (h - points.w[i]) * s, 1.0 + s * s};
  });
  for (std::size_t i = 0; i < count; ++i) {
    const double alongU = u[i] - points.u[i];
    const double alongW = height[i] - points.w[i];
    const double across = off[i] <= kSolvedMM ? std::sqrt(alongU * alongU + alongW * alongW)
                                              : std::abs(deviation[i]) / std::sqrt(1.0 + slope[i] * slope[i]);
    residual[i] = std::copysign(across, deviation[i]) * kMicrometresPerMillimetre;
  }
}

}  // namespace

double WriteShapeResidual(const FormInput& input, const Shape& shape, const Placement& placement, FormOutput output) {
  const Axes axes(placement);
  const bool isPerpendicular = input.residual == ResidualKind::kPerpendicular;
  const std::size_t n = input.heights.size();
  Points points{};
  for (std::size_t first = 0; first < n; first += kBlock) {
    points.count = std::min(kBlock, n - first);
    for (std::size_t i = 0; i < points.count; ++i) {
      points.x[i] = ExactDouble(first + i) * input.spacingUM * kMillimetresPerMicrometre;
      points.z[i] = input.heights[first + i] * kMillimetresPerMicrometre;
    }
    ToShapeAxes({std::span(points.x.data(), points.count), std::span(points.z.data(), points.count)}, axes,
                std::span(points.u.data(), points.count), std::span(points.w.data(), points.count));
    WriteBlock(points, shape, axes, isPerpendicular, &output.form[first], &output.residual[first]);
  }
  return isPerpendicular ? MeanPathStep(input.heights, input.spacingUM) : input.spacingUM;
}

}  // namespace texturon
