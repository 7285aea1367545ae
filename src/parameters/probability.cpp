// SPDX-License-Identifier: Apache-2.0

#include "parameters/probability.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include "base/elementary.h"
#include "parameters/counts.h"
#include "signal/lane_sums.h"
#include "signal/normal_distribution.h"

namespace texturon {
namespace {

constexpr double kPercent = 100.0;

/// Sorted points [first, end) whose ratio (i + 0.5) / n lies between two percents, both included.
struct PointRange {
  std::size_t first = 0;
  std::size_t end = 0;
  std::size_t Count() const { return end > first ? end - first : 0; }
};

PointRange PointsBetween(std::size_t n, double fromPercent, double toPercent) {
  const auto count = static_cast<double>(n);
  const auto index = [count](double value) {
    return value > 0.0 ? static_cast<std::size_t>(std::min(value, count)) : std::size_t{0};
  };
  // Products first: 70 % of 85 points is 59.5 exactly, 0.7 of them a little less.
  return {index(std::ceil(fromPercent * count / kPercent - 0.5)),
          index(std::floor(toPercent * count / kPercent + 0.5))};
}

/// A x^2 + B x y + y^2 + D x + E y + F = 0.
struct Conic {
  double a, b, d, e, f;
};

/// Solves five equations in place by elimination with pivots. Empty when they are singular to working accuracy.
std::optional<std::array<double, 5>> SolveFive(std::array<std::array<double, 6>, 5> m) {
  constexpr double kSingular = 1e-12;
  double largest = 0.0;
  for (const auto& equation : m) largest = std::max(largest, std::abs(equation[0]));
  for (std::size_t k = 0; k < 5; ++k) {
    const auto pivot = std::max_element(m.begin() + static_cast<std::ptrdiff_t>(k), m.end(),
                                        [k](auto& p, auto& q) { return std::abs(p[k]) < std::abs(q[k]); });
    std::swap(*pivot, m[k]);
    if (!(std::abs(m[k][k]) > kSingular * largest)) return std::nullopt;
    for (std::size_t row = k + 1; row < 5; ++row) {
      const double factor = m[row][k] / m[k][k];
      for (std::size_t column = k; column < 6; ++column) m[row][column] -= factor * m[k][column];
    }
  }
  std::array<double, 5> x{};
  for (std::size_t k = 5; k-- > 0;) {
    double rest = m[k][5];
    for (std::size_t column = k + 1; column < 5; ++column) rest -= m[k][column] * x[column];
    x[k] = rest / m[k][k];
  }
  return x;
}

/// Smallest sum of squares of the conic's left side over the points.
std::optional<Conic> FitConic(std::span<const double> x, std::span<const double> y) {
  std::array<std::array<double, 6>, 5> normal{};
  for (std::size_t i = 0; i < x.size(); ++i) {
    const std::array<double, 6> terms = {x[i] * x[i], x[i] * y[i], x[i], y[i], 1.0, -y[i] * y[i]};
    for (std::size_t row = 0; row < 5; ++row) {
      for (std::size_t column = 0; column < 6; ++column) normal[row][column] += terms[row] * terms[column];
    }
  }
  const auto solution = SolveFive(normal);
  if (!solution) return std::nullopt;
  const auto& s = *solution;
  return Conic{s[0], s[1], s[2], s[3], s[4]};
}

struct Vector {
  double x, y;
};

Vector HalfWay(const Vector& p, const Vector& q) {
  const Vector sum = {p.x / Hypot(p.x, p.y) + q.x / Hypot(q.x, q.y), p.y / Hypot(p.x, p.y) + q.y / Hypot(q.x, q.y)};
  return sum;
}

/// Abscissae, in the scaled plot, at which the straight regions end and of the transition between.
struct Transition {
  double plateauEnd = 0.0;
  double centre = 0.0;
  double valleyStart = 0.0;
};

std::optional<Transition> FindTransition(const Conic& c) {
  const double discriminant = c.b * c.b - 4.0 * c.a;
  if (!(discriminant > 0.0)) return std::nullopt;
  const double root = std::sqrt(discriminant);
  // Centre, where the gradient vanishes; the heights fall, so the plateau has the larger (less negative) slope.
  const Vector centre = {(2.0 * c.d - c.b * c.e) / discriminant, (2.0 * c.a * c.e - c.b * c.d) / discriminant};
  const Vector plateau = {-1.0, 0.5 * (c.b - root)};
  const Vector valley = {1.0, 0.5 * (-c.b - root)};
  const double atCentre = c.f + 0.5 * (c.d * centre.x + c.e * centre.y);
  const auto endAlong = [&](const Vector& asymptote) {
    constexpr int kHalvings = 3;
    Vector direction = HalfWay(plateau, valley);
    for (int k = 0; k < kHalvings; ++k) direction = HalfWay(asymptote, direction);
    const double form = c.a * direction.x * direction.x + c.b * direction.x * direction.y + direction.y * direction.y;
    return centre.x + std::sqrt(std::max(0.0, -atCentre / form)) * direction.x;
  };
  return Transition{endAlong(plateau), centre.x, endAlong(valley)};
}

}  // namespace

ProbabilityFit FitProbability(std::span<const double> heights, std::span<const double> sorted,
                              const AnalysisSettings& settings) {
  ProbabilityFit fit;
  fit.limits = ProbabilityLimits{settings.UPLPercent, settings.LPLPercent, settings.UVLPercent, settings.LVLPercent};
  if (settings.RqFittingMethod != 0) {
    fit.limits = FindProbabilityLimits(sorted, *fit.limits, settings.RxqLowerValleyCountPercent,
                                       settings.RxqUpperValleyCountPercent);
  }
  if (!fit.limits) {
    fit.plateau = fit.limits.Reason();
    fit.valley = fit.limits.Reason();
    fit.crossingPercent = fit.limits.Reason();
    return fit;
  }
  fit.plateau = FitProbabilityLine(sorted, fit.limits->upl, fit.limits->lpl);
  const auto fewest = static_cast<std::size_t>(std::max(0, settings.RxqMinimumValleyCount));
  const std::size_t valleys = CountValleys(heights, settings.RxqValleyCountHeightUm);
  if (valleys < fewest) {
    fit.valley = NoValue{Why::kFewValleys,
                         {static_cast<double>(fewest), static_cast<double>(valleys), settings.RxqValleyCountHeightUm}};
  } else {
    fit.valley = FitProbabilityLine(sorted, fit.limits->uvl, fit.limits->lvl);
  }
  if (!fit.plateau || !fit.valley) {
    fit.crossingPercent = fit.valley ? fit.plateau.Reason() : fit.valley.Reason();
    return fit;
  }
  const double crossing =
      (fit.valley->interceptUM - fit.plateau->interceptUM) / (fit.plateau->slopeUM - fit.valley->slopeUM);
  fit.crossingPercent = NoValue{Why::kParallelLines};
  if (std::isfinite(crossing)) fit.crossingPercent = NormalProbability(crossing) * kPercent;
  return fit;
}

double ProbabilityAbscissa(std::size_t i, std::size_t n) {
  // The lower half mirrors the upper one, whose small ratios are exact.
  const bool isLower = i >= n - 1 - i;
  const std::size_t k = isLower ? n - 1 - i : i;
  const double quantile = NormalQuantile((static_cast<double>(k) + 0.5) / static_cast<double>(n));
  return isLower ? -quantile : quantile;
}

namespace {

/// ProbabilityAbscissa of the points from `first` on.
void FillAbscissae(std::span<double> abscissae, std::size_t first, std::size_t n) {
  const auto count = static_cast<double>(n);
  const std::size_t upper = std::clamp(n / 2, first, first + abscissae.size()) - first;  // before the middle
  for (std::size_t j = 0; j < upper; ++j) abscissae[j] = (static_cast<double>(first + j) + 0.5) / count;
  for (std::size_t j = upper; j < abscissae.size(); ++j) {
    abscissae[j] = (static_cast<double>(n - 1 - first - j) + 0.5) / count;
  }
  NormalQuantileOfEach(abscissae, abscissae);
  for (double& abscissa : abscissae.subspan(upper)) abscissa = -abscissa;
}

}  // namespace

Defined<ProbabilityLine> FitProbabilityLine(std::span<const double> sorted, double fromPercent, double toPercent) {
  const PointRange range = PointsBetween(sorted.size(), fromPercent, toPercent);
  if (range.Count() < 2) {
    return NoValue{Why::kFewPointsBetween, {fromPercent, toPercent, static_cast<double>(range.Count())}};
  }
  const double reference = sorted[range.first + range.Count() / 2];
  const auto memory = std::make_unique_for_overwrite<double[]>(range.Count());
  const std::span<double> abscissae(memory.get(), range.Count());
  FillAbscissae(abscissae, range.first, sorted.size());
  const auto [sx, sh, sxx, sxh] = LaneSums(range.Count(), [&](std::size_t k) -> std::array<double, 4> {
    const double x = abscissae[k];
    const double h = sorted[range.first + k] - reference;
    return {x, h, x * x, x * h};
  });
  const auto n = static_cast<double>(range.Count());
  const double slope = (sxh - sx * sh / n) / (sxx - sx * sx / n);
  return ProbabilityLine{slope, reference + (sh - slope * sx) / n};
}

Defined<ProbabilityLimits> FindProbabilityLimits(std::span<const double> sorted, const ProbabilityLimits& outer,
                                                 double fromPercent, double toPercent) {
  constexpr std::size_t kSamples = 1000;
  constexpr std::size_t kFewestPoints = 10;
  const PointRange range = PointsBetween(sorted.size(), outer.upl, outer.lvl);
  if (range.Count() < kFewestPoints) {
    return NoValue{Why::kFewPlotPoints, {static_cast<double>(kFewestPoints), static_cast<double>(range.Count())}};
  }
  const double top = ProbabilityAbscissa(range.first, sorted.size());
  const double halfWidth = 0.5 * (ProbabilityAbscissa(range.end - 1, sorted.size()) - top);
  const double lowest = sorted[range.end - 1];
  const double halfHeight = 0.5 * (sorted[range.first] - lowest);
  if (!std::isfinite(halfHeight)) return NoValue{Why::kNotFinite};
  if (!(halfHeight > 0.0)) return NoValue{Why::kFlatPlot};
  std::array<double, kSamples> x;
  std::array<double, kSamples> y;
  const auto quantileAt = [&](double scaled) { return top + halfWidth * (scaled + 1.0); };
  for (std::size_t k = 0; k < kSamples; ++k) {
    x[k] = -1.0 + 2.0 * static_cast<double>(k) / (kSamples - 1);
    // Between two points along the quantiles: in the tails these are far from proportional to the ratios.
    const double quantile = quantileAt(x[k]);
    const double place = NormalProbability(quantile) * static_cast<double>(sorted.size()) - 0.5;
    const double inside = std::clamp(place, static_cast<double>(range.first), static_cast<double>(range.end - 2));
    const auto i = static_cast<std::size_t>(inside);
    const double before = ProbabilityAbscissa(i, sorted.size());
    const double weight = (quantile - before) / (ProbabilityAbscissa(i + 1, sorted.size()) - before);
    const double height = sorted[i] + weight * (sorted[i + 1] - sorted[i]);
    y[k] = (height - lowest) / halfHeight - 1.0;
  }
  const auto conic = FitConic(x, y);
  if (!conic) return NoValue{Why::kNoBend};
  const auto transition = FindTransition(*conic);
  if (!transition) return NoValue{Why::kNoBend};
  const auto percentAt = [&](double scaled) { return NormalProbability(quantileAt(scaled)) * kPercent; };
  const double centre = percentAt(transition->centre);
  if (!(centre >= fromPercent && centre <= toPercent)) {
    return NoValue{Why::kBendOutside, {centre, fromPercent, toPercent}};
  }
  return ProbabilityLimits{outer.upl, percentAt(transition->plateauEnd), percentAt(transition->valleyStart), outer.lvl};
}

const ProbabilityFit& ProbabilityFitOf(const RowInput& row) {
  return row.profile.Cached<ProbabilityFit>(
      [&row] { return FitProbability(row.profile.Heights(), row.profile.SortedHeights(), row.settings); });
}

RowResult PlateauDeviation(const RowInput& row) {
  const auto& line = ProbabilityFitOf(row).plateau;
  if (!line) return line.Reason();
  return std::abs(line->slopeUM);
}

RowResult ValleyDeviation(const RowInput& row) {
  const auto& line = ProbabilityFitOf(row).valley;
  if (!line) return line.Reason();
  return std::abs(line->slopeUM);
}

RowResult PlateauToValleyRatio(const RowInput& row) {
  return ProbabilityFitOf(row).crossingPercent;
}

}  // namespace texturon
