// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_sums.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/elementary.h"
#include "base/four_doubles.h"
#include "base/units.h"
#include "signal/filter/regression_filter.h"
#include "signal/filter/regression_rows.h"

namespace texturon {
namespace {

/// How far nodes may lie apart, in g cutoffs, with so many of them for a polynomial, which is then right to a few 1e-16
/// of the largest, and that of a product of three sums to a few 1e-15.
struct NodeChoice {
  double step;
  std::size_t taps;
  std::size_t spread;  ///< for a single sum
};
constexpr NodeChoice kNodeChoices[] = {
    {0.02, 16, 16}, {0.0412, 28, 22}, {0.055, 40, 28}, {0.06, 48, 30}, {0.068, 64, 34}};
/// What taps cost, to and from nodes, in the units of BatchFft::Cost, and a node beside its transforms.
constexpr double kTapCost = 0.52;
constexpr double kNodeCost = 0.5;
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

std::size_t NodesOf(std::size_t n, const RegressionNodes& form) {
  return form.thinning > 1 ? (n - 1) / form.thinning + form.taps : n;
}

/// Nodes on either side of one that its sum reaches. What reaches a little farther than the record is not cut off at
/// its length, because the spectrum of what is cut off has no end.
std::size_t ExtentOf(std::size_t nodes, std::size_t thinning, double cutoffPoints) {
  constexpr double kFarther = 1.25;
  const double extent = std::ceil(kRegressionExtent * cutoffPoints / static_cast<double>(thinning));
  return extent < kFarther * static_cast<double>(nodes) ? static_cast<std::size_t>(extent) : nodes - 1;
}

double CostOf(std::size_t n, double cutoffPoints, const RegressionNodes& form) {
  const std::size_t nodes = NodesOf(n, form);
  const std::size_t taps = nodes * form.spread + n / form.thinning * form.taps;
  return RegressionTransforms::Cost(nodes, ExtentOf(nodes, form.thinning, cutoffPoints)) +
         static_cast<double>((form.thinning - 1) * taps) * kTapCost + static_cast<double>(nodes) * kNodeCost;
}

RegressionNodes ChooseNodes(std::size_t n, double cutoffPoints) {
  RegressionNodes best;
  double least = CostOf(n, cutoffPoints, best);
  for (const NodeChoice& choice : kNodeChoices) {
    const RegressionNodes form{ThinningOf(n, cutoffPoints, choice.step), choice.taps, choice.spread};
    if (form.thinning == 1) continue;
    const double cost = CostOf(n, cutoffPoints, form);
    if (!(cost < least)) continue;
    least = cost;
    best = form;
  }
  return best;
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
void Add(const double* x, std::size_t n, double* sums) {
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) sums[i] += x[i];
}

TEXTURON_MULTIVERSION
void Divide(const double* above, const double* below, std::size_t n, double* out) {
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) out[i] = above[i] / below[i];
}

/// The same; how many of `below` are not above the least one that is trusted.
TEXTURON_MULTIVERSION
std::size_t DivideAndCount(const double* above, const double* below, std::size_t n, double least, double* out) {
  std::size_t count = 0;
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) {
    out[i] = above[i] / below[i];
    count += below[i] > least ? 0U : 1U;
  }
  return count;
}

enum class Onto : bool { kNothing, kWhatIsThere };

/// `kFours` times four values of Correlate.
template <std::size_t kFours>
TEXTURON_INLINE void CorrelateFours(const double* values, std::span<const double> row, Onto onto, double* out) {
  FourDoubles sums[kFours] = {};
  if (onto == Onto::kWhatIsThere) {
    for (std::size_t i = 0; i < kFours; ++i) LoadFour(out + kFour * i, sums[i]);
  }
  for (std::size_t m = 0; m < row.size(); ++m) {
    for (std::size_t i = 0; i < kFours; ++i) {
      FourDoubles four;
      LoadFour(values + kFour * i + m, four);
      AddProduct(sums[i], row[m], four);
    }
  }
  for (std::size_t i = 0; i < kFours; ++i) StoreFour(out + kFour * i, sums[i]);
}

/// out[c] = sum over the row of values[c + m] times row[m], or that onto what is there; for a multiple of four, or as
/// if it were one.
TEXTURON_MULTIVERSION
void Correlate(const double* values, std::span<const double> row, Onto onto, std::size_t count, double* out) {
  constexpr std::size_t kMany = 8, kFew = 3;
  std::size_t c = 0;
  for (; c + kMany * kFour <= count; c += kMany * kFour) CorrelateFours<kMany>(values + c, row, onto, out + c);
  for (; c + kFew * kFour <= count; c += kFew * kFour) CorrelateFours<kFew>(values + c, row, onto, out + c);
  for (; c < count; c += kFour) CorrelateFours<1>(values + c, row, onto, out + c);
}

}  // namespace

RegressionSums::RegressionSums(std::size_t n, double spacingUM, double cutoffMM)
    : n_(n),
      reach_(ReachOf(n, CutoffPoints(spacingUM, cutoffMM))),
      step_(kRegressionExtent / kRegressionReach / static_cast<double>(reach_)),
      form_(ChooseNodes(n, CutoffPoints(spacingUM, cutoffMM))),
      before_(form_.thinning > 1 ? form_.taps / 2 - 1 : 0),
      cells_((n - 1) / form_.thinning + 1),
      nodes_(NodesOf(n, form_)),
      cost_(CostOf(n, CutoffPoints(spacingUM, cutoffMM), form_)),
      weights_(DistanceWeights(reach_, CutoffPoints(spacingUM, cutoffMM))),
      transforms_(nodes_, FactorsOfNodes(CutoffPoints(spacingUM, cutoffMM))) {
  if (form_.thinning == 1) return;
  for (std::size_t r = 0; r < form_.thinning; ++r) {
    const double place = static_cast<double>(r) / static_cast<double>(form_.thinning);
    for (std::size_t m = 0; m < form_.taps; ++m) nodeWeights_.push_back(NodeWeight(m, form_.taps, place));
    for (std::size_t m = 0; m < form_.spread; ++m) spreadWeights_.push_back(NodeWeight(m, form_.spread, place));
  }
  stride_ = cells_ + 2 * (form_.taps - 1) + kFour;
  points_.resize(cells_ * form_.thinning);
  products_.resize(points_.size());
  phases_.resize(stride_ * form_.thinning);
  quotients_.resize(stride_ * form_.thinning);
  divisors_.resize(cells_ + kFour);
}

std::span<const double> RegressionSums::RowOf(std::size_t point) const {
  return std::span(nodeWeights_).subspan(point * form_.taps, form_.taps);
}

std::span<const double> RegressionSums::SpreadRowOf(std::size_t point) const {
  return std::span(spreadWeights_).subspan(point * form_.spread, form_.spread);
}

RegressionTransforms::Factors RegressionSums::FactorsOfNodes(double cutoffPoints) const {
  RegressionTransforms::Factors factors;
  const std::size_t extent = ExtentOf(nodes_, form_.thinning, cutoffPoints);
  for (std::size_t i = 0; i <= extent; ++i) {
    const auto points = static_cast<double>(i * form_.thinning);
    const double weight = GaussAt(points, cutoffPoints) * weights_[0];
    for (std::size_t j = 0; j < kRegressionMoments; ++j) factors[j].push_back(weight * Power(points * step_, j));
  }
  return factors;
}

void RegressionSums::Spread(std::span<const double> points, std::span<double> nodes) {
  // The transpose of interpolation. Point r of a cell has at its node m the weight that point thinning - r has at the
  // mirrored one.
  TurnMatrix(points.data(), form_.thinning, cells_, form_.thinning, phases_.data() + form_.taps - 1, stride_);
  const std::size_t aside = (form_.taps - form_.spread) / 2;
  for (std::size_t r = 1; r < form_.thinning; ++r) {
    const Onto onto = r == 1 ? Onto::kNothing : Onto::kWhatIsThere;
    Correlate(phases_.data() + r * stride_ + aside, SpreadRowOf(form_.thinning - r), onto, nodes_, nodes.data());
  }
  Add(phases_.data() + form_.taps - 1, cells_, nodes.data() + before_);
}

void RegressionSums::Make() {
  if (form_.thinning > 1) {
    Spread(points_, transforms_.Weights());
    Spread(products_, transforms_.Heights());
  }
  transforms_.Run();
}

std::size_t RegressionSums::Quotients(double least, std::span<double> out) {
  const std::span<const double> above = transforms_.Numerators();
  const std::span<const double> below = transforms_.Determinants();
  if (form_.thinning == 1) return DivideAndCount(above.data(), below.data(), out.size(), least, out.data());
  const std::size_t untrusted =
      DivideAndCount(above.data() + before_, below.data() + before_, cells_, least, quotients_.data()) +
      (below[before_ + cells_] > least ? 0U : 1U);
  for (std::size_t r = 1; r < form_.thinning; ++r) {
    double* const quotients = quotients_.data() + r * stride_;
    Correlate(above.data(), RowOf(r), Onto::kNothing, cells_, quotients);
    Correlate(below.data(), RowOf(r), Onto::kNothing, cells_, divisors_.data());
    Divide(quotients, divisors_.data(), cells_, quotients);
  }
  const std::size_t whole = out.size() / form_.thinning / 2 * 2;
  TurnMatrix(quotients_.data(), stride_, form_.thinning, whole, out.data(), form_.thinning);
  for (std::size_t i = whole * form_.thinning; i < out.size(); ++i) {
    out[i] = quotients_[i % form_.thinning * stride_ + i / form_.thinning];
  }
  return untrusted;
}

void RegressionSums::SumsOf(std::size_t cell, std::span<RegressionPoint> out) const {
  if (form_.thinning == 1) {
    out[0] = transforms_.SumsAt(cell);
    return;
  }
  std::fill(out.begin(), out.end(), RegressionPoint{});
  for (std::size_t m = 0; m < form_.taps; ++m) {
    const RegressionPoint node = transforms_.SumsAt(cell + m);
    for (std::size_t r = 0; r < out.size(); ++r) {
      const double weight = RowOf(r)[m];
      for (std::size_t sum = 0; sum < kRegressionSums; ++sum) out[r][sum] += weight * node[sum];
    }
  }
}

void RegressionSums::PointsAround(std::size_t k, std::span<const double> z, std::vector<WeightedHeight>& points) {
  const std::span<const double> d = Weights();
  points.clear();
  const std::size_t first = k - std::min(k, reach_);
  const std::size_t last = std::min(d.size() - 1, k + reach_);
  for (std::size_t l = first; l <= last; ++l) {
    if (!(d[l] > 0.0)) continue;
    const std::size_t apart = l > k ? l - k : k - l;
    const double place = (l > k ? 1.0 : -1.0) * (static_cast<double>(apart) * step_);
    points.push_back({place, d[l] * weights_[apart], z[l]});
  }
}

}  // namespace texturon
