// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_sums.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/elementary.h"
#include "base/four_doubles.h"
#include "base/units.h"
#include "signal/fft/plain_spectrum.h"
#include "signal/filter/regression_filter.h"

namespace texturon {
namespace {

/// So many g cutoffs lie between nodes at most. The polynomial through sixteen of them, and that of a product of three
/// sums, is then right to a few 1e-16 of the largest.
constexpr double kNodeStep = 0.02;
constexpr std::size_t kNodes = 16;
constexpr std::size_t kBefore = kNodes / 2 - 1;
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

std::size_t ThinningOf(std::size_t n, double cutoffPoints) {
  std::size_t thinning = 1;
  while (2.0 * static_cast<double>(thinning) <= kNodeStep * kRegressionReach * cutoffPoints &&
         2 * thinning * kFewestCells <= n) {
    thinning *= 2;
  }
  return thinning;
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

/// What node m of those at -7 .. 8 counts for the polynomial through them, at a place between 0 and 1.
double NodeWeight(std::size_t m, double place) {
  double weight = 1.0;
  for (std::size_t other = 0; other < kNodes; ++other) {
    if (other == m) continue;
    const double apart = static_cast<double>(m) - static_cast<double>(other);
    weight *= (place + static_cast<double>(kBefore) - static_cast<double>(other)) / apart;
  }
  return weight;
}

/// Adds the weights, and the heights times them, of one cell to its nodes: the transpose of interpolation.
TEXTURON_MULTIVERSION
void SpreadCell(const double* d, const double* z, std::size_t count, const double* nodeWeights, double* weightNodes,
                double* heightNodes) {
  FourDoubles weights[kNodes / kFour], heights[kNodes / kFour];
  for (std::size_t m = 0; m < kNodes / kFour; ++m) {
    LoadFour(weightNodes + m * kFour, weights[m]);
    LoadFour(heightNodes + m * kFour, heights[m]);
  }
  for (std::size_t r = 0; r < count; ++r) {
    const double weight = d[r];
    const double height = weight * z[r];
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC unroll 4
#endif
    for (std::size_t m = 0; m < kNodes / kFour; ++m) {
      FourDoubles row;
      LoadFour(nodeWeights + r * kNodes + m * kFour, row);
      AddProduct(weights[m], weight, row);
      AddProduct(heights[m], height, row);
    }
  }
  for (std::size_t m = 0; m < kNodes / kFour; ++m) {
    StoreFour(weightNodes + m * kFour, weights[m]);
    StoreFour(heightNodes + m * kFour, heights[m]);
  }
}

/// The polynomial through sixteen nodes at one point.
double AtPoint(const double* nodes, const double* row) {
  double sum = 0.0;
  for (std::size_t m = 0; m < kNodes; ++m) sum += nodes[m] * row[m];
  return sum;
}

/// The quotient of two polynomials at all points of a cell; `count` is a multiple of four.
TEXTURON_MULTIVERSION
void InterpolateQuotient(const double* above, const double* below, const double* rows, std::size_t count, double* out) {
  for (std::size_t r = 0; r < count; r += kFour) {
    FourDoubles numerator = {}, denominator = {};
    for (std::size_t m = 0; m < kNodes; ++m) {
      FourDoubles row;
      LoadFour(rows + m * count + r, row);
      AddProduct(numerator, above[m], row);
      AddProduct(denominator, below[m], row);
    }
    DivideBy(numerator, denominator);
    StoreFour(out + r, numerator);
  }
}

}  // namespace

RegressionSums::RegressionSums(std::size_t n, double spacingUM, double cutoffMM)
    : reach_(ReachOf(n, CutoffPoints(spacingUM, cutoffMM))),
      step_(kRegressionExtent / kRegressionReach / static_cast<double>(reach_)),
      thinning_(ThinningOf(n, CutoffPoints(spacingUM, cutoffMM))),
      before_(thinning_ > 1 ? kBefore : 0),
      nodes_(thinning_ > 1 ? (n - 1) / thinning_ + kNodes : n),
      plan_(*RealFftPlan::Make(
          QuickRealLength(nodes_ + ExtentOf(nodes_, thinning_, CutoffPoints(spacingUM, cutoffMM))))) {
  const double stepInReaches = 1.0 / (kRegressionReach * CutoffPoints(spacingUM, cutoffMM));
  double sum = 0.0;
  weights_.reserve(reach_ + 1);
  for (std::size_t i = 0; i <= reach_; ++i) {
    const double x = static_cast<double>(i) * stepInReaches;
    weights_.push_back(Exp2(-std::numbers::pi * std::numbers::log2e * x * x));
    sum += (i == 0 ? 1.0 : 2.0) * weights_.back();
  }
  for (double& weight : weights_) weight /= sum;
  if (thinning_ > 1) {
    nodeWeights_.resize(kNodes * thinning_);
    nodeWeightsOf_.resize(kNodes * thinning_);
    for (std::size_t r = 0; r < thinning_; ++r) {
      const double place = static_cast<double>(r) / static_cast<double>(thinning_);
      for (std::size_t m = 0; m < kNodes; ++m) {
        nodeWeights_[r * kNodes + m] = nodeWeightsOf_[m * thinning_ + r] = NodeWeight(m, place);
      }
    }
  }
  const std::size_t lines = plan_.length() / 2 + 1;
  for (auto* const spectrum : {&re_[0], &re_[1], &im_[0], &im_[1], &productRe_, &productIm_}) spectrum->resize(lines);
  for (auto& row : spread_) row.resize(plan_.length());
  for (auto& row : sums_) row.resize(plan_.length());
  MakeSpectra(stepInReaches, sum, ExtentOf(nodes_, thinning_, CutoffPoints(spacingUM, cutoffMM)));
}

void RegressionSums::MakeSpectra(double stepInReaches, double weightsSum, std::size_t extent) {
  const std::size_t length = plan_.length();
  std::vector<double> wrapped(length);
  for (std::size_t j = 0; j < kRegressionMoments; ++j) {
    std::fill(wrapped.begin(), wrapped.end(), 0.0);
    for (std::size_t i = 0; i <= extent; ++i) {
      const auto points = static_cast<double>(i * thinning_);
      const double x = points * stepInReaches;
      const double weight = Exp2(-std::numbers::pi * std::numbers::log2e * x * x) / weightsSum;
      const double value = weight * Power(points * step_, j);
      // The sum at k takes node k + i with the distance +i: a convolution with the mirrored weights.
      if (i > 0) wrapped[length - i] = value;
      wrapped[i] = i > 0 && j % 2 == 1 ? -value : value;
    }
    plan_.Forward(wrapped, productRe_, productIm_);
    spectra_[j] = j % 2 == 0 ? productRe_ : productIm_;  // even weights have a real transform, odd an imaginary one
  }
}

void RegressionSums::Spread(std::span<const double> d, std::span<const double> z) {
  const std::size_t n = d.size();
  for (auto& row : spread_) std::fill(row.begin(), row.end(), 0.0);
  if (thinning_ == 1) {
    for (std::size_t i = 0; i < n; ++i) {
      spread_[0][i] = d[i];
      spread_[1][i] = d[i] * z[i];
    }
    return;
  }
  for (std::size_t first = 0, cell = 0; first < n; first += thinning_, ++cell) {
    SpreadCell(d.data() + first, z.data() + first, std::min(thinning_, n - first), nodeWeights_.data(),
               spread_[0].data() + cell, spread_[1].data() + cell);
  }
}

void RegressionSums::Convolve(bool isOfHeights, std::size_t power, std::vector<double>& sums) {
  const std::vector<double>& re = re_[isOfHeights ? 1 : 0];
  const std::vector<double>& im = im_[isOfHeights ? 1 : 0];
  const std::vector<double>& factor = spectra_[power];
  for (std::size_t i = 0; i < factor.size(); ++i) {
    productRe_[i] = power % 2 == 0 ? re[i] * factor[i] : -im[i] * factor[i];
    productIm_[i] = power % 2 == 0 ? im[i] * factor[i] : re[i] * factor[i];
  }
  plan_.Inverse(productRe_, productIm_, sums);
}

void RegressionSums::Make(std::span<const double> d, std::span<const double> z) {
  Spread(d, z);
  for (std::size_t i = 0; i < spread_.size(); ++i) plan_.Forward(spread_[i], re_[i], im_[i]);
  for (std::size_t sum = 0; sum < kRegressionSums; ++sum) {
    const bool isOfHeights = sum >= kRegressionMoments;
    Convolve(isOfHeights, isOfHeights ? sum - kRegressionMoments : sum, sums_[sum]);
  }
}

void RegressionSums::Between(std::span<const double> values, std::size_t cell, std::span<double> out) const {
  const double* const nodes = values.data() + cell;
  for (std::size_t r = 0; r < out.size(); ++r) {
    out[r] = thinning_ == 1 ? nodes[0] : AtPoint(nodes, nodeWeights_.data() + r * kNodes);
  }
}

void RegressionSums::QuotientBetween(std::span<const double> above, std::span<const double> below, std::size_t cell,
                                     std::span<double> out) const {
  const double* const numerators = above.data() + cell;
  const double* const denominators = below.data() + cell;
  if (thinning_ == 1) {
    out[0] = numerators[0] / denominators[0];
  } else if (thinning_ % kFour == 0 && out.size() == thinning_) {
    InterpolateQuotient(numerators, denominators, nodeWeightsOf_.data(), thinning_, out.data());
  } else {
    for (std::size_t r = 0; r < out.size(); ++r) {
      const double* const row = nodeWeights_.data() + r * kNodes;
      out[r] = AtPoint(numerators, row) / AtPoint(denominators, row);
    }
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
