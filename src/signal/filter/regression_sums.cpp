// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_sums.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

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

/// out[c] = sum over the nodes of values[c + m] times row[m].
TEXTURON_MULTIVERSION
void Correlate(const double* values, const double* row, std::size_t count, double* out) {
  std::size_t c = 0;
  for (; c + kFour <= count; c += kFour) {
    FourDoubles sum = {};
    for (std::size_t m = 0; m < kNodes; ++m) {
      FourDoubles four;
      LoadFour(values + c + m, four);
      AddProduct(sum, row[m], four);
    }
    StoreFour(out + c, sum);
  }
  for (; c < count; ++c) {
    out[c] = 0.0;
    for (std::size_t m = 0; m < kNodes; ++m) out[c] += row[m] * values[c + m];
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
      plan_(*FftPlan::Make(QuickRealLength(nodes_ + ExtentOf(nodes_, thinning_, CutoffPoints(spacingUM, cutoffMM))))) {
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
  for (Pair* const pair : {&spread_, &weightsSpectrum_, &heightsSpectrum_, &product_}) {
    pair->re.resize(plan_.length());
    pair->im.resize(plan_.length());
  }
  for (auto& row : sums_) row.resize(plan_.length());
  MakeFactors(stepInReaches, sum, ExtentOf(nodes_, thinning_, CutoffPoints(spacingUM, cutoffMM)));
}

void RegressionSums::MakeFactors(double stepInReaches, double weightsSum, std::size_t extent) {
  const std::size_t length = plan_.length();
  const auto n = static_cast<double>(length);  // what a transform there and back leaves
  const auto wrap = [&](std::size_t power, std::vector<double>& wrapped) {
    std::fill(wrapped.begin(), wrapped.end(), 0.0);
    for (std::size_t i = 0; i <= extent; ++i) {
      const auto points = static_cast<double>(i * thinning_);
      const double x = points * stepInReaches;
      const double weight = Exp2(-std::numbers::pi * std::numbers::log2e * x * x) / weightsSum / n;
      const double value = weight * Power(points * step_, power);
      // The sum at k takes node k + i with the distance +i: a convolution with the mirrored weights.
      if (i > 0) wrapped[length - i] = value;
      wrapped[i] = i > 0 && power % 2 == 1 ? -value : value;
    }
  };
  const auto transform = [&] {
    plan_.Forward(product_.re, product_.im, product_.re, product_.im);
    return product_.re;
  };
  wrap(0, product_.re);
  wrap(1, product_.im);
  factor01_ = transform();
  wrap(2, product_.re);
  wrap(3, product_.im);
  factor23_ = transform();
  for (auto& [power, factor] : {std::pair(std::size_t{2}, &factor2_), std::pair(std::size_t{4}, &factor4_)}) {
    wrap(power, product_.re);
    std::fill(product_.im.begin(), product_.im.end(), 0.0);
    *factor = transform();
  }
}

void RegressionSums::SpreadOnEverySecond(std::span<const double> d, std::span<const double> z) {
  // The weights are those of the middle between two nodes, the same from either side.
  const double* const row = nodeWeights_.data() + kNodes;
  const std::size_t n = d.size();
  odd_.assign(nodes_ + kNodes, 0.0);
  for (std::size_t i = 1; i < n; i += 2) odd_[kNodes - 1 + i / 2] = d[i];
  Correlate(odd_.data(), row, nodes_, spread_.re.data());
  for (std::size_t i = 1; i < n; i += 2) odd_[kNodes - 1 + i / 2] *= z[i];
  Correlate(odd_.data(), row, nodes_, spread_.im.data());
  for (std::size_t i = 0; i < n; i += 2) {
    spread_.re[kBefore + i / 2] += d[i];
    spread_.im[kBefore + i / 2] += d[i] * z[i];
  }
}

void RegressionSums::Spread(std::span<const double> d, std::span<const double> z) {
  const std::size_t n = d.size();
  if (thinning_ == 2) return SpreadOnEverySecond(d, z);
  if (thinning_ == 1) {
    for (std::size_t i = 0; i < n; ++i) {
      spread_.re[i] = d[i];
      spread_.im[i] = d[i] * z[i];
    }
    return;
  }
  for (auto* const row : {&spread_.re, &spread_.im}) std::fill(row->begin(), row->end(), 0.0);
  for (std::size_t first = 0, cell = 0; first < n; first += thinning_, ++cell) {
    SpreadCell(d.data() + first, z.data() + first, std::min(thinning_, n - first), nodeWeights_.data(),
               spread_.re.data() + cell, spread_.im.data() + cell);
  }
}

void RegressionSums::TransformBack(std::size_t realSum, std::size_t imaginarySum) {
  // With the parts exchanged a transform goes back.
  plan_.Forward(product_.im, product_.re, sums_[imaginarySum], sums_[realSum]);
}

void RegressionSums::Make(std::span<const double> d, std::span<const double> z) {
  const std::size_t length = plan_.length();
  Spread(d, z);
  // Both are real: the halves that are and are not their own mirrored conjugate.
  plan_.Forward(spread_.re, spread_.im, product_.re, product_.im);
  auto& [wRe, wIm] = weightsSpectrum_;
  auto& [hRe, hIm] = heightsSpectrum_;
  for (std::size_t k = 0; k < length; ++k) {
    const std::size_t mirrored = k == 0 ? 0 : length - k;
    wRe[k] = 0.5 * (product_.re[k] + product_.re[mirrored]);
    wIm[k] = 0.5 * (product_.im[k] - product_.im[mirrored]);
    hRe[k] = 0.5 * (product_.im[k] + product_.im[mirrored]);
    hIm[k] = 0.5 * (product_.re[mirrored] - product_.re[k]);
  }
  const auto multiply = [&](const Pair& spectrum, const std::vector<double>& factor) {
    for (std::size_t k = 0; k < length; ++k) {
      product_.re[k] = spectrum.re[k] * factor[k];
      product_.im[k] = spectrum.im[k] * factor[k];
    }
  };
  multiply(weightsSpectrum_, factor01_);
  TransformBack(0, 1);
  multiply(weightsSpectrum_, factor23_);
  TransformBack(2, 3);
  multiply(heightsSpectrum_, factor01_);
  TransformBack(kRegressionMoments, kRegressionMoments + 1);
  for (std::size_t k = 0; k < length; ++k) {
    product_.re[k] = wRe[k] * factor4_[k] - hIm[k] * factor2_[k];
    product_.im[k] = wIm[k] * factor4_[k] + hRe[k] * factor2_[k];
  }
  TransformBack(4, kRegressionMoments + 2);
}

void RegressionSums::Between(std::span<const double> values, std::size_t cell, std::span<double> out) const {
  const double* const nodes = values.data() + cell;
  for (std::size_t r = 0; r < out.size(); ++r) {
    out[r] = thinning_ == 1 ? nodes[0] : AtPoint(nodes, nodeWeights_.data() + r * kNodes);
  }
}

void RegressionSums::Quotients(std::span<const double> above, std::span<const double> below, std::span<double> out) {
  const std::size_t n = out.size();
  const std::size_t cells = (n - 1) / thinning_ + 1;
  if (thinning_ == 1) {
    for (std::size_t i = 0; i < n; ++i) out[i] = above[i] / below[i];
  } else if (thinning_ == 2) {
    oddAbove_.resize(cells);
    oddBelow_.resize(cells);
    Correlate(above.data(), nodeWeights_.data() + kNodes, cells, oddAbove_.data());
    Correlate(below.data(), nodeWeights_.data() + kNodes, cells, oddBelow_.data());
    for (std::size_t i = 0; i < n; i += 2) out[i] = above[kBefore + i / 2] / below[kBefore + i / 2];
    for (std::size_t i = 1; i < n; i += 2) out[i] = oddAbove_[i / 2] / oddBelow_[i / 2];
  } else {
    for (std::size_t cell = 0; cell < n / thinning_; ++cell) {
      InterpolateQuotient(above.data() + cell, below.data() + cell, nodeWeightsOf_.data(), thinning_,
                          out.data() + cell * thinning_);
    }
    for (std::size_t i = n / thinning_ * thinning_; i < n; ++i) {
      const double* const row = nodeWeights_.data() + i % thinning_ * kNodes;
      const std::size_t cell = i / thinning_;
      out[i] = AtPoint(above.data() + cell, row) / AtPoint(below.data() + cell, row);
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
