// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_sums.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/elementary.h"
#include "base/four_doubles.h"
#include "base/units.h"
#include "signal/filter/regression_filter.h"

namespace texturon {
namespace {

/// How far nodes may lie apart, in g cutoffs, with so many of them for a polynomial, which is then right to a few 1e-16
/// of the largest, and that of a product of three sums to a few 1e-15.
struct NodeChoice {
  double step;
  std::size_t taps;
};
constexpr NodeChoice kWide = {0.041, 28};
constexpr NodeChoice kNarrow = {0.02, 16};
/// From this thinning on, the points between nodes cost more than the nodes: few for each point are better than few.
constexpr std::size_t kManyPoints = 4;
constexpr std::size_t kFour = 4;
/// With fewer cells the nodes beyond the ends would be far from the record in terms of its length.
constexpr std::size_t kFewestCells = 64;

double CutoffPoints(double spacingUM, double cutoffMM) {
  return cutoffMM / (spacingUM * kMillimetresPerMicrometre);
}

std::size_t ReachOf(std::size_t n, double cutoffPoints) {
  const double points = kRegressionExtent * cutoffPoints;
  return points < static_cast<double>(n - 1) ? static_cast<std::size_t>(points) : n - 1;
}

std::size_t ThinningOf(std::size_t n, double cutoffPoints, double step) {
  std::size_t thinning = 1;
  while (2.0 * static_cast<double>(thinning) <= step * kRegressionReach * cutoffPoints &&
         2 * thinning * kFewestCells <= n) {
    thinning *= 2;
  }
  return thinning;
}

const NodeChoice& ChoiceFor(std::size_t n, double cutoffPoints) {
  return ThinningOf(n, cutoffPoints, kNarrow.step) >= kManyPoints ? kNarrow : kWide;
}

/// Nodes on either side of one that its sum reaches.
std::size_t ExtentOf(std::size_t nodes, std::size_t thinning, double cutoffPoints) {
  const double extent = std::ceil(kRegressionExtent * cutoffPoints / static_cast<double>(thinning));
  return extent < static_cast<double>(nodes - 1) ? static_cast<std::size_t>(extent) : nodes - 1;
}

double Power(double u, std::size_t exponent) {
  double power = 1.0;
  for (std::size_t j = 0; j < exponent; ++j) power *= u;
  return power;
}

double GaussAt(double points, double cutoffPoints) {
  const double x = points / (kRegressionReach * cutoffPoints);
  return Exp2(-std::numbers::pi * std::numbers::log2e * x * x);
}

std::vector<double> DistanceWeights(std::size_t reach, double cutoffPoints) {
  std::vector<double> weights;
  weights.reserve(reach + 1);
  double sum = 0.0;  // of the points of an endless record
  for (std::size_t i = 0; i <= reach; ++i) {
    weights.push_back(GaussAt(static_cast<double>(i), cutoffPoints));
    sum += (i == 0 ? 1.0 : 2.0) * weights.back();
  }
  for (double& weight : weights) weight /= sum;
  return weights;
}

/// What node m counts for the polynomial through `taps` of them, at a place between 0 and 1 behind the middle one.
double NodeWeight(std::size_t m, std::size_t taps, double place) {
  double weight = 1.0;
  for (std::size_t other = 0; other < taps; ++other) {
    if (other == m) continue;
    const double apart = static_cast<double>(m) - static_cast<double>(other);
    weight *= (place + static_cast<double>(taps / 2 - 1) - static_cast<double>(other)) / apart;
  }
  return weight;
}

TEXTURON_MULTIVERSION
void CopyWithProducts(const double* d, const double* z, std::size_t n, double* copies, double* products) {
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) {
    copies[i] = d[i];
    products[i] = d[i] * z[i];
  }
}

TEXTURON_MULTIVERSION
void Add(const double* x, std::size_t n, double* sums) {
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) sums[i] += x[i];
}

TEXTURON_MULTIVERSION
void Divide(const double* above, const double* below, std::size_t n, double* out) {
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) out[i] = above[i] / below[i];
}

enum class Onto : bool { kNothing, kWhatIsThere };

/// out[c] = sum over the row of values[c + m] times row[m], or that onto what is there.
TEXTURON_MULTIVERSION
void Correlate(const double* values, std::span<const double> row, Onto onto, std::size_t count, double* out) {
  std::size_t c = 0;
  for (; c + 2 * kFour <= count; c += 2 * kFour) {
    FourDoubles sum = {}, nextSum = {};
    if (onto == Onto::kWhatIsThere) {
      LoadFour(out + c, sum);
      LoadFour(out + c + kFour, nextSum);
    }
    for (std::size_t m = 0; m < row.size(); ++m) {
      FourDoubles four, next;
      LoadFour(values + c + m, four);
      LoadFour(values + c + kFour + m, next);
      AddProduct(sum, row[m], four);
      AddProduct(nextSum, row[m], next);
    }
    StoreFour(out + c, sum);
    StoreFour(out + c + kFour, nextSum);
  }
  for (; c < count; ++c) {
    double sum = onto == Onto::kWhatIsThere ? out[c] : 0.0;
    for (std::size_t m = 0; m < row.size(); ++m) sum += row[m] * values[c + m];
    out[c] = sum;
  }
}

/// The polynomial through the nodes at one point.
double AtPoint(const double* nodes, std::span<const double> row) {
  double sum = 0.0;
  for (std::size_t m = 0; m < row.size(); ++m) sum += nodes[m] * row[m];
  return sum;
}

}  // namespace

RegressionSums::RegressionSums(std::size_t n, double spacingUM, double cutoffMM)
    : reach_(ReachOf(n, CutoffPoints(spacingUM, cutoffMM))),
      step_(kRegressionExtent / kRegressionReach / static_cast<double>(reach_)),
      taps_(ChoiceFor(n, CutoffPoints(spacingUM, cutoffMM)).taps),
      thinning_(ThinningOf(n, CutoffPoints(spacingUM, cutoffMM), ChoiceFor(n, CutoffPoints(spacingUM, cutoffMM)).step)),
      before_(thinning_ > 1 ? taps_ / 2 - 1 : 0),
      cells_((n - 1) / thinning_ + 1),
      nodes_(thinning_ > 1 ? cells_ - 1 + taps_ : n),
      weights_(DistanceWeights(reach_, CutoffPoints(spacingUM, cutoffMM))),
      transforms_(nodes_, FactorsOfNodes(CutoffPoints(spacingUM, cutoffMM))) {
  if (thinning_ == 1) return;
  for (std::size_t r = 0; r < thinning_; ++r) {
    const double place = static_cast<double>(r) / static_cast<double>(thinning_);
    for (std::size_t m = 0; m < taps_; ++m) nodeWeights_.push_back(NodeWeight(m, taps_, place));
  }
  stride_ = cells_ + 2 * (taps_ - 1);
  points_.resize(cells_ * thinning_);
  products_.resize(points_.size());
  phases_.resize(stride_ * thinning_);
  quotients_.resize(stride_ * thinning_);
  divisors_.resize(cells_);
}

std::span<const double> RegressionSums::RowOf(std::size_t point) const {
  return std::span(nodeWeights_).subspan(point * taps_, taps_);
}

RegressionTransforms::Factors RegressionSums::FactorsOfNodes(double cutoffPoints) const {
  RegressionTransforms::Factors factors;
  const std::size_t extent = ExtentOf(nodes_, thinning_, cutoffPoints);
  for (std::size_t i = 0; i <= extent; ++i) {
    const auto points = static_cast<double>(i * thinning_);
    const double weight = GaussAt(points, cutoffPoints) * weights_[0];
    for (std::size_t j = 0; j < kRegressionMoments; ++j) factors[j].push_back(weight * Power(points * step_, j));
  }
  return factors;
}

void RegressionSums::Spread(std::span<const double> points, std::span<double> nodes) {
  // The transpose of interpolation. Point r of a cell has at its node m the weight that point thinning - r has at the
  // mirrored one.
  TurnMatrix(points.data(), thinning_, cells_, thinning_, phases_.data() + taps_ - 1, stride_);
  for (std::size_t r = 1; r < thinning_; ++r) {
    const Onto onto = r == 1 ? Onto::kNothing : Onto::kWhatIsThere;
    Correlate(phases_.data() + r * stride_, RowOf(thinning_ - r), onto, nodes_, nodes.data());
  }
  Add(phases_.data() + taps_ - 1, cells_, nodes.data() + before_);
}

void RegressionSums::Make(std::span<const double> d, std::span<const double> z) {
  const std::span<double> weights = transforms_.Weights();
  const std::span<double> heights = transforms_.Heights();
  if (thinning_ == 1) {
    CopyWithProducts(d.data(), z.data(), d.size(), weights.data(), heights.data());
  } else {
    CopyWithProducts(d.data(), z.data(), d.size(), points_.data(), products_.data());
    Spread(points_, weights);
    Spread(products_, heights);
  }
  transforms_.Run(sums_);
}

void RegressionSums::Between(std::span<const double> values, std::size_t cell, std::span<double> out) const {
  const double* const nodes = values.data() + cell;
  for (std::size_t r = 0; r < out.size(); ++r) {
    out[r] = thinning_ == 1 ? nodes[0] : AtPoint(nodes, RowOf(r));
  }
}

void RegressionSums::Quotients(std::span<const double> above, std::span<const double> below, std::span<double> out) {
  if (thinning_ == 1) return Divide(above.data(), below.data(), out.size(), out.data());
  Divide(above.data() + before_, below.data() + before_, cells_, quotients_.data());
  for (std::size_t r = 1; r < thinning_; ++r) {
    double* const quotients = quotients_.data() + r * stride_;
    Correlate(above.data(), RowOf(r), Onto::kNothing, cells_, quotients);
    Correlate(below.data(), RowOf(r), Onto::kNothing, cells_, divisors_.data());
    Divide(quotients, divisors_.data(), cells_, quotients);
  }
  const std::size_t whole = out.size() / thinning_ / 2 * 2;
  TurnMatrix(quotients_.data(), stride_, thinning_, whole, out.data(), thinning_);
  for (std::size_t i = whole * thinning_; i < out.size(); ++i) {
    out[i] = quotients_[i % thinning_ * stride_ + i / thinning_];
  }
}

RegressionPoint RegressionSums::AddUp(std::size_t k, std::span<const double> d, std::span<const double> z) const {
  RegressionPoint sums{};
  const std::size_t first = k - std::min(k, reach_);
  const std::size_t last = std::min(d.size() - 1, k + reach_);
  for (std::size_t l = first; l <= last; ++l) {
    if (d[l] == 0.0) continue;
    const std::size_t apart = l > k ? l - k : k - l;
    const double u = (l > k ? 1.0 : -1.0) * (static_cast<double>(apart) * step_);
    double term = d[l] * weights_[apart];
    for (std::size_t j = 0; j < kRegressionMoments; ++j) {
      sums[j] += term;
      if (j < kRegressionHeights) sums[kRegressionMoments + j] += term * z[l];
      term *= u;
    }
  }
  return sums;
}

}  // namespace texturon
