// SPDX-License-Identifier: Apache-2.0

#include "signal/form/geometric_circle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <vector>

#include "base/elementary.h"

namespace texturon {
namespace {

// In the unit of half the length, about the middle. A circle or line is a (x^2 + z^2) + b x + c z + d = 0 with
// b^2 + c^2 - 4 a d = 1: a is half the curvature, and (b, c) = e (cos t, sin t), e^2 = 1 + 4 a d.
using Three = std::array<double, 3>;  // a, t, d
using Equations = std::array<Three, 3>;

struct Points {
  std::vector<double> x, z;
};

/// Beside a value of the equation: the distance of the point is twice the value over one and this.
double RootAt(double a, double value) {
  return std::sqrt(std::max(1.0 + 4.0 * a * value, std::numeric_limits<double>::min()));
}

/// Of the means of equal parts of the distances: their squares, each as often as it has points, and how much of them
/// the deviations within the parts make, as many of which count as cross the mean of their part.
struct PartMeans {
  double squares = 0.0;
  double ofRoughness = 0.0;
};

PartMeans MeansOfParts(const Points& points, const Three& at) {
  constexpr std::size_t kParts = 16;
  const auto [a, t, d] = at;
  const double e = std::sqrt(1.0 + 4.0 * a * d);
  const double cosine = Cos(t);
  const double sine = Sin(t);
  const std::size_t count = points.x.size();
  const std::size_t parts = std::min(kParts, count);
  PartMeans means;
  double within = 0.0;
  double crossings = 1.0;
  std::vector<double> distances;
  for (std::size_t part = 0; part < parts; ++part) {
    distances.clear();
    double mean = 0.0;
    for (std::size_t i = part * count / parts; i < (part + 1) * count / parts; ++i) {
      const double x = points.x[i];
      const double z = points.z[i];
      const double value = a * (x * x + z * z) + e * (x * cosine + z * sine) + d;
      distances.push_back(2.0 * value / (1.0 + RootAt(a, value)));
      mean += distances.back();
    }
    mean /= static_cast<double>(distances.size());
    means.squares += mean * mean * static_cast<double>(distances.size());
    for (std::size_t i = 0; i < distances.size(); ++i) {
      within += (distances[i] - mean) * (distances[i] - mean);
      if (i > 0 && (distances[i] < mean) != (distances[i - 1] < mean)) crossings += 1.0;
    }
  }
  means.ofRoughness = within * static_cast<double>(parts) / crossings;
  return means;
}

struct Sums {
  Equations matrix{};
  Three right{};
  double squares = std::numeric_limits<double>::infinity();
  std::size_t crossings = 0;
};

Sums SumsAt(const Points& points, const Three& at) {
  const auto [a, t, d] = at;
  const double square = 1.0 + 4.0 * a * d;
  Sums sums;
  if (!(square > 0.0)) return sums;
  sums.squares = 0.0;
  const double e = std::sqrt(square);
  const double cosine = Cos(t);
  const double sine = Sin(t);
  double last = 0.0;
  for (std::size_t i = 0; i < points.x.size(); ++i) {
    const double x = points.x[i];
    const double z = points.z[i];
    const double along = x * cosine + z * sine;
    const double value = a * (x * x + z * z) + e * along + d;
    const double root = RootAt(a, value);
    const double distance = 2.0 * value / (1.0 + root);
    const Three slope = {(x * x + z * z + 2.0 * d / e * along - distance * distance) / root,
                         e * (z * cosine - x * sine) / root, (1.0 + 2.0 * a / e * along) / root};
    for (std::size_t j = 0; j < 3; ++j) {
      for (std::size_t k = 0; k < 3; ++k) sums.matrix[j][k] += slope[j] * slope[k];
      sums.right[j] -= slope[j] * distance;
    }
    sums.squares += distance * distance;
    if (i > 0 && (distance < 0.0) != (last < 0.0)) ++sums.crossings;
    last = distance;
  }
  return sums;
}

/// By cofactors; none where the matrix has no inverse.
std::optional<Three> Solve(const Equations& m, const Three& right) {
  const auto minor = [&m](std::size_t j, std::size_t k) {
    const std::size_t p = (j + 1) % 3, q = (j + 2) % 3, r = (k + 1) % 3, s = (k + 2) % 3;
    return m[p][r] * m[q][s] - m[p][s] * m[q][r];
  };
  const double determinant = m[0][0] * minor(0, 0) + m[0][1] * minor(0, 1) + m[0][2] * minor(0, 2);
  Three solution{};
  for (std::size_t k = 0; k < 3; ++k) {
    for (std::size_t j = 0; j < 3; ++j) solution[k] += minor(j, k) * right[j];
    solution[k] /= determinant;
    if (!std::isfinite(solution[k])) return std::nullopt;
  }
  return solution;
}

/// Every so many points, about the middle and in the unit of half their length.
Points PointsOf(std::span<const double> heights, double halfUM, double half) {
  constexpr std::size_t kMost = 20000;
  const std::size_t step = (heights.size() + kMost - 1) / kMost;
  Points points;
  for (std::size_t i = 0; i < heights.size(); i += step) {
    points.x.push_back((static_cast<double>(i) - half) / half);
    points.z.push_back(heights[i] / halfUM);
  }
  double mean = 0.0;
  for (const double z : points.z) mean += z / static_cast<double>(points.z.size());
  for (double& z : points.z) z -= mean;
  return points;
}

/// The least-squares line.
Three LineThrough(const Points& points) {
  double product = 0.0;
  double square = 0.0;
  for (std::size_t i = 0; i < points.x.size(); ++i) {
    product += points.x[i] * points.z[i];
    square += points.x[i] * points.x[i];
  }
  return {0.0, 0.5 * std::numbers::pi + Atan(product / square), 0.0};
}

}  // namespace

std::optional<GeometricCircle> FitGeometricCircle(std::span<const double> heightsUM, double spacingUM) {
  constexpr std::size_t kLeast = 4;
  constexpr int kMostSteps = 200;
  constexpr double kEnough = 1e-13;
  if (heightsUM.size() < kLeast || !(spacingUM > 0.0)) return std::nullopt;
  const double half = 0.5 * static_cast<double>(heightsUM.size() - 1);
  const double halfUM = half * spacingUM;
  const Points points = PointsOf(heightsUM, halfUM, half);
  const Three line = LineThrough(points);
  Three place = line;
  Sums sums = SumsAt(points, place);
  double damping = 1e-4;
  bool hasEnded = false;
  for (int i = 0; i < kMostSteps && !hasEnded; ++i) {
    Equations damped = sums.matrix;
    for (std::size_t j = 0; j < 3; ++j) damped[j][j] *= 1.0 + damping;
    const auto step = Solve(damped, sums.right);
    if (!step) return std::nullopt;
    Three next = place;
    for (std::size_t j = 0; j < 3; ++j) next[j] += (*step)[j];
    Sums there = SumsAt(points, next);
    // NaN is no gain.
    const bool gains = there.squares < sums.squares;
    hasEnded = gains ? sums.squares - there.squares <= kEnough * sums.squares : damping > 1e6;
    damping = gains ? 0.1 * damping : 10.0 * damping;
    if (!gains) continue;
    place = next;
    sums = there;
  }
  const auto inverse = Solve(sums.matrix, {1.0, 0.0, 0.0});
  if (!hasEnded || !inverse) return std::nullopt;
  const auto count = static_cast<double>(points.x.size());
  const double free = std::max(static_cast<double>(sums.crossings) - 2.0, 1.0);
  const double variance = (*inverse)[0] * sums.squares / (count - 3.0) * std::max(count / free, 1.0);
  GeometricCircle circle{.bend = -place[0] * std::copysign(1.0, Sin(place[1])) / halfUM,
                         .bendUncertainty = std::sqrt(variance) / halfUM};
  // Below this height of the arc are the roundings of the heights.
  constexpr double kLeastArcUM = 1e-7;
  circle.isBent =
      std::abs(circle.bend) > 2.0 * circle.bendUncertainty && std::abs(circle.bend) * halfUM * halfUM > kLeastArcUM;
  circle.radiusUM = -0.5 / circle.bend;
  // What a trapezium leaves to a circle at most is 0.988.
  constexpr double kRound = 0.99;
  constexpr double kRoundWithin = 0.95;
  constexpr double kMuchRoughness = 3.0;
  const PartMeans left = MeansOfParts(points, place);
  circle.share = 1.0 - left.squares / MeansOfParts(points, line).squares;
  circle.isRound =
      circle.share >= kRound || (circle.share >= kRoundWithin && left.squares <= kMuchRoughness * left.ofRoughness);
  return circle;
}

}  // namespace texturon
