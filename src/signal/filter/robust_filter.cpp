// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/robust_filter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "base/elementary.h"
#include "base/samples.h"
#include "signal/filter/spline_filter.h"
#include "signal/mean.h"
#include "signal/nth_smallest.h"

namespace texturon {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// The biweight limit c of a mean line; `scratch` has the length of both.
double Scale(std::span<const double> z, std::span<const double> line, std::span<double> scratch) {
  for (std::size_t i = 0; i < z.size(); ++i) scratch[i] = std::abs(z[i] - line[i]);
  return kRobustScaleCoefficient * NthSmallest(scratch, z.size() / 2);
}

void Reweight(std::span<const double> z, std::span<const double> line, double scale, std::span<double> weights) {
  if (scale * scale < kEpsilon) {
    std::fill(weights.begin(), weights.end(), 0.0);
    return;
  }
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double ratio = (z[i] - line[i]) / scale;
    const double rest = 1.0 - ratio * ratio;
    weights[i] = std::abs(ratio) <= 1.0 ? rest * rest : 0.0;
  }
}

double RelativeChange(double scale, double previous) {
  return scale < kEpsilon ? kEpsilon : std::abs(scale - previous) / scale;
}

int Percent(double change) {
  if (!(change < 1.0)) return 0;
  const double percent = 100.0 * Log10(change) / Log10(kRobustConvergence);
  return static_cast<int>(std::lround(std::min(percent, 100.0)));
}

}  // namespace

RobustResult RobustSplineFilter(std::span<const double> z, std::span<double> w, double spacingUM, double cutoffMM,
                                double tension, Progress* progress) {
  if (w.size() != z.size()) return {};
  if (cutoffMM <= kEpsilon) {
    std::copy(z.begin(), z.end(), w.begin());
    return {};
  }
  const std::size_t n = z.size();
  const double mean = Mean(z);
  Samples centred(n), line(n), weights(n), scratch(n);
  for (std::size_t i = 0; i < n; ++i) centred[i] = z[i] - mean;

  RobustResult result;
  result.range = SplineFilter(centred, line, spacingUM, cutoffMM, tension);  // weights of 1 need no array
  if (!result.range) return result;
  double scale = Scale(centred, line, scratch);
  int shown = 0;
  result.stop = RobustStop::kIterationLimit;
  while (result.iterations < kRobustIterationLimit) {
    Reweight(centred, line, scale, weights);
    if (!SplineFilter(centred, scratch, spacingUM, cutoffMM, tension, weights)) {
      result.stop = RobustStop::kSingularWeights;
      break;
    }
    line.swap(scratch);
    ++result.iterations;
    const double previous = scale;
    scale = Scale(centred, line, scratch);
    const double change = RelativeChange(scale, previous);
    shown = std::max(shown, Percent(change));
    const bool closed = progress != nullptr && !progress->Advance(shown);
    if (change <= kRobustConvergence) {
      result.stop = RobustStop::kConverged;
      break;
    }
    if (closed) {
      result.stop = RobustStop::kCancelled;
      break;
    }
  }
  for (std::size_t i = 0; i < n; ++i) w[i] = line[i] + mean;
  return result;
}

}  // namespace texturon
