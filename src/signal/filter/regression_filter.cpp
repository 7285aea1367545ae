// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_filter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>
#include <vector>

#include "base/elementary.h"
#include "base/multiversion.h"
#include "base/units.h"
#include "signal/all_finite.h"
#include "signal/fft/plain_spectrum.h"
#include "signal/fft/real_fft.h"
#include "signal/filter/filter_contract.h"
#include "signal/mean.h"
#include "signal/nth_smallest.h"

namespace texturon {
namespace {

constexpr std::size_t kMoments = 5;  ///< sums of d s u^j, j = 0 .. 4
constexpr std::size_t kHeights = 3;  ///< sums of d z s u^j, j = 0 .. 2
constexpr std::size_t kSums = kMoments + kHeights;
/// The sums have next to no waves shorter than a third of g cutoffs. Taken at every so many g cutoffs at most, twelve
/// of them give the polynomial between them to a few 1e-16 of the largest.
constexpr double kCoarseStep = 0.02;
constexpr std::size_t kNodes = 12;
constexpr std::size_t kNodesBefore = kNodes / 2 - 1;
/// Below this share of the whole weight a pivot of the equations is not trusted to sums by transforms.
constexpr double kLeastPivot = 1e-6;
/// Below this one there is no parabola.
constexpr double kSingularPivot = 1e-13;

/// What adding up point by point may cost in a pass, in terms; a record that would need more counts as singular.
constexpr std::size_t kMostTerms = 1'000'000'000;

/// The sums of one point's equations; u is the distance, about 3 at the farthest, s is scaled so that all of them add
/// up to 1.
struct PointSums {
  std::array<double, kMoments> moments{};
  std::array<double, kHeights> heights{};
};

/// The least pivot and the value of the fitted parabola at the point itself.
struct Solved {
  double pivot = 0.0;
  double value = 0.0;
};

/// By elimination from the highest power down, so that the last unknown is the one that is wanted. The matrix is
/// symmetric and positive, and its entries are of the order of 1.
Solved Solve(const PointSums& sums) {
  const auto& m = sums.moments;
  const auto& f = sums.heights;
  const double p2 = m[4];
  const double q12 = m[3] / p2;
  const double q02 = m[2] / p2;
  const double p1 = m[2] - q12 * m[3];
  const double e01 = m[1] - q02 * m[3];
  const double g1 = f[1] - q12 * f[2];
  const double q01 = e01 / p1;
  const double p0 = m[0] - q02 * m[2] - q01 * e01;
  const double g0 = f[0] - q02 * f[2] - q01 * g1;
  const double least = std::min({p0, p1, p2});
  return {std::isfinite(least) ? least : 0.0, g0 / p0};
}

/// The weights of the distance and their transforms for a record of n points.
class Kernel {
public:
  Kernel(std::size_t n, double spacingUM, double cutoffMM)
      : reach_(ReachOf(n, spacingUM, cutoffMM)),
        step_(kRegressionExtent / kRegressionReach / static_cast<double>(reach_)),
        thinning_(ThinningOf(reach_ < n - 1, step_)),
        coarsePlan_(*RealFftPlan::Make(QuickRealLength((n + reach_) / thinning_ + 1))),
        plan_(*RealFftPlan::Make(thinning_ * coarsePlan_.length())) {
    weights_.reserve(reach_ + 1);
    const double stepInReaches = spacingUM * kMillimetresPerMicrometre / (kRegressionReach * cutoffMM);
    double sum = 0.0;
    for (std::size_t i = 0; i <= reach_; ++i) {
      const double x = static_cast<double>(i) * stepInReaches;
      weights_.push_back(Exp2(-std::numbers::pi * std::numbers::log2e * x * x));
      sum += (i == 0 ? 1.0 : 2.0) * weights_.back();
    }
    for (double& weight : weights_) weight /= sum;
    std::vector<double> wrapped(plan_.length());
    std::vector<double> re(plan_.length() / 2 + 1), im(re.size());
    const auto share = static_cast<double>(thinning_);
    for (std::size_t j = 0; j < kMoments; ++j) {
      std::fill(wrapped.begin(), wrapped.end(), 0.0);
      for (std::size_t i = 0; i <= reach_; ++i) {
        const double value = weights_[i] * Power(Distance(i), j);
        // The sum at k takes point k + i with the distance +i: a convolution with the mirrored weights.
        if (i > 0) wrapped[plan_.length() - i] = value;
        wrapped[i] = i > 0 && j % 2 == 1 ? -value : value;
      }
      plan_.Forward(wrapped, re, im);
      const std::vector<double>& part =
          j % 2 == 0 ? re : im;  // even weights have a real transform, odd an imaginary one
      for (std::size_t i = 0; i < Lines(); ++i) spectra_[j].push_back(part[i] / share);
    }
  }

  const RealFftPlan& Plan() const { return plan_; }
  /// Of the sums, of which every so many are had.
  const RealFftPlan& CoarsePlan() const { return coarsePlan_; }
  std::size_t Thinning() const { return thinning_; }
  /// Lines of the spectra: those beyond are nothing.
  std::size_t Lines() const { return coarsePlan_.length() / 2 + 1; }
  std::span<const double> Spectrum(std::size_t power) const { return spectra_[power]; }

  /// The sums at a point by definition.
  PointSums AddUp(std::size_t k, std::span<const double> d, std::span<const double> z) const {
    PointSums sums;
    const std::size_t first = k - std::min(k, reach_);
    const std::size_t last = std::min(d.size() - 1, k + reach_);
    for (std::size_t l = first; l <= last; ++l) {
      if (d[l] == 0.0) continue;
      const std::size_t apart = l > k ? l - k : k - l;
      const double u = l > k ? Distance(apart) : -Distance(apart);
      double term = d[l] * weights_[apart];
      for (std::size_t j = 0; j < kMoments; ++j) {
        sums.moments[j] += term;
        if (j < kHeights) sums.heights[j] += term * z[l];
        term *= u;
      }
    }
    return sums;
  }

  /// Points on either side that AddUp looks at.
  std::size_t Reach() const { return reach_; }

private:
  static std::size_t ReachOf(std::size_t n, double spacingUM, double cutoffMM) {
    const double points = kRegressionExtent * cutoffMM / (spacingUM * kMillimetresPerMicrometre);
    return points < static_cast<double>(n - 1) ? static_cast<std::size_t>(points) : n - 1;
  }
  /// A power of two. Of weights that a short record cuts off every sum is needed.
  static std::size_t ThinningOf(bool isWhole, double step) {
    std::size_t thinning = 1;
    while (isWhole && 2.0 * static_cast<double>(thinning) * step <= kCoarseStep) thinning *= 2;
    return thinning;
  }
  double Distance(std::size_t points) const { return static_cast<double>(points) * step_; }
  static double Power(double u, std::size_t exponent) {
    double power = 1.0;
    for (std::size_t j = 0; j < exponent; ++j) power *= u;
    return power;
  }

  std::size_t reach_;
  double step_;
  std::size_t thinning_;
  RealFftPlan coarsePlan_;
  RealFftPlan plan_;
  std::vector<double> weights_;
  std::array<std::vector<double>, kMoments> spectra_;
};

/// out[r] = sum over the nodes of node times weights[node x count + r].
TEXTURON_MULTIVERSION
void Interpolate(const double* nodes, const double* weights, std::size_t count, double* out) {
  for (std::size_t r = 0; r < count; ++r) out[r] = nodes[0] * weights[r];
  for (std::size_t m = 1; m < kNodes; ++m) {
    const double node = nodes[m];
    const double* const row = weights + m * count;
    TEXTURON_IVDEP
    for (std::size_t r = 0; r < count; ++r) out[r] += node * row[r];
  }
}

/// Passes over one record.
class Regression {
public:
  Regression(std::span<const double> z, double spacingUM, double cutoffMM)
      : z_(z),
        kernel_(z.size(), spacingUM, cutoffMM),
        padded_(kernel_.Plan().length()),
        weightRe_(kernel_.Plan().length() / 2 + 1),
        weightIm_(weightRe_.size()),
        heightRe_(weightRe_.size()),
        heightIm_(weightRe_.size()),
        productRe_(kernel_.Lines()),
        productIm_(kernel_.Lines()),
        column_(kernel_.CoarsePlan().length()),
        nodeWeights_(kNodes * kernel_.Thinning()) {
    for (auto& sums : coarse_) sums.resize(column_.size() + kNodes);
    for (auto& sums : fine_) sums.resize(kernel_.Thinning());
    for (std::size_t r = 0; r < kernel_.Thinning(); ++r) {
      const double place = static_cast<double>(r) / static_cast<double>(kernel_.Thinning());
      for (std::size_t m = 0; m < kNodes; ++m) nodeWeights_[m * kernel_.Thinning() + r] = NodeWeight(m, place);
    }
  }

  /// The mean line for the robust weights d; false where a point has no parabola.
  bool Run(std::span<const double> d, std::span<double> line) {
    Transform([&](std::size_t i) { return d[i]; }, weightRe_, weightIm_);
    Transform([&](std::size_t i) { return d[i] * z_[i]; }, heightRe_, heightIm_);
    for (std::size_t j = 0; j < kMoments; ++j) Convolve(weightRe_, weightIm_, j, j);
    for (std::size_t j = 0; j < kHeights; ++j) Convolve(heightRe_, heightIm_, j, kMoments + j);
    std::size_t terms = 0;
    for (std::size_t k = 0; k < line.size(); ++k) {
      const std::size_t r = k % kernel_.Thinning();
      if (r == 0) Refine(k / kernel_.Thinning());
      Solved solved = Solve(
          {{fine_[0][r], fine_[1][r], fine_[2][r], fine_[3][r], fine_[4][r]}, {fine_[5][r], fine_[6][r], fine_[7][r]}});
      if (!(solved.pivot > kLeastPivot)) {
        terms += 2 * kernel_.Reach() + 1;
        if (terms > kMostTerms) return false;
        const PointSums exact = kernel_.AddUp(k, d, z_);
        solved = Solve(exact);
        if (!(solved.pivot > kSingularPivot * exact.moments[0]) || !std::isfinite(solved.value)) return false;
      }
      line[k] = solved.value;
    }
    return true;
  }

private:
  template <typename Value>
  void Transform(const Value& value, std::vector<double>& re, std::vector<double>& im) {
    for (std::size_t i = 0; i < z_.size(); ++i) padded_[i] = value(i);
    std::fill(padded_.begin() + static_cast<std::ptrdiff_t>(z_.size()), padded_.end(), 0.0);
    kernel_.Plan().Forward(padded_, re, im);
  }

  /// What node m of those at -5 .. 6 counts for the polynomial through them, at a place between 0 and 1.
  static double NodeWeight(std::size_t m, double place) {
    double weight = 1.0;
    for (std::size_t other = 0; other < kNodes; ++other) {
      if (other == m) continue;
      const double apart = static_cast<double>(m) - static_cast<double>(other);
      weight *= (place + static_cast<double>(kNodesBefore) - static_cast<double>(other)) / apart;
    }
    return weight;
  }

  /// The sums at the points from one that they are had of to the next.
  void Refine(std::size_t cell) {
    for (std::size_t sum = 0; sum < kSums; ++sum) {
      const double* const nodes = coarse_[sum].data() + cell;
      if (kernel_.Thinning() == 1) {
        fine_[sum][0] = nodes[kNodesBefore];
      } else {
        Interpolate(nodes, nodeWeights_.data(), kernel_.Thinning(), fine_[sum].data());
      }
    }
  }

  void Convolve(std::span<const double> re, std::span<const double> im, std::size_t power, std::size_t sum) {
    const std::span<const double> factor = kernel_.Spectrum(power);
    if (power % 2 == 0) {
      for (std::size_t i = 0; i < factor.size(); ++i) {
        productRe_[i] = re[i] * factor[i];
        productIm_[i] = im[i] * factor[i];
      }
    } else {
      for (std::size_t i = 0; i < factor.size(); ++i) {
        productRe_[i] = -im[i] * factor[i];
        productIm_[i] = re[i] * factor[i];
      }
    }
    kernel_.CoarsePlan().Inverse(productRe_, productIm_, column_);
    // Beyond both ends it goes on at the other one.
    const std::size_t length = column_.size();
    for (std::size_t i = 0; i < length + kNodes; ++i) {
      coarse_[sum][i] = column_[(i + length - kNodesBefore) % length];
    }
  }

  std::span<const double> z_;
  Kernel kernel_;
  std::vector<double> padded_;
  std::vector<double> weightRe_, weightIm_, heightRe_, heightIm_, productRe_, productIm_;
  std::vector<double> column_;
  std::array<std::vector<double>, kSums> coarse_;  ///< sum i - 5 of the points that they are had of
  std::array<std::vector<double>, kSums> fine_;
  std::vector<double> nodeWeights_;
};

/// The middle of the amounts of the residuals; the mean of the middle two of an even number.
double MedianResidual(std::span<const double> z, std::span<const double> line, std::vector<double>& scratch) {
  const std::size_t n = z.size();
  for (std::size_t i = 0; i < n; ++i) scratch[i] = std::abs(z[i] - line[i]);
  const double upper = NthSmallest(scratch, n / 2);
  if (n % 2 == 1) return upper;
  for (std::size_t i = 0; i < n; ++i) scratch[i] = std::abs(z[i] - line[i]);
  return 0.5 * (NthSmallest(scratch, n / 2 - 1) + upper);
}

void Reweight(std::span<const double> z, std::span<const double> line, double limit, std::span<double> weights) {
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double ratio = (z[i] - line[i]) / limit;
    const double rest = 1.0 - ratio * ratio;
    weights[i] = std::abs(ratio) <= 1.0 ? rest * rest : 0.0;
  }
}

int Percent(double change) {
  if (!(change < 1.0)) return 0;
  const double percent = 100.0 * Log10(std::max(change, kRegressionConvergence)) / Log10(kRegressionConvergence);
  return static_cast<int>(std::lround(percent));
}

/// Reweights until the limit settles. `line` holds the unweighted mean line and becomes the last good one.
void Iterate(Regression& regression, std::span<const double> z, std::vector<double>& line, double heightRange,
             Progress* progress, RegressionResult& result) {
  constexpr double kRounding = 1e-12;
  std::vector<double> weights(z.size()), next(z.size()), scratch(z.size());
  double limit = kRegressionScaleCoefficient * MedianResidual(z, line, scratch);
  int shown = 0;
  result.stop = RegressionStop::kPassLimit;
  while (result.passes < kRegressionPassLimit) {
    if (!(limit > kRounding * heightRange)) {
      result.stop = RegressionStop::kNoScale;
      return;
    }
    Reweight(z, line, limit, weights);
    if (!regression.Run(weights, next)) {
      result.stop = RegressionStop::kSingular;
      return;
    }
    line.swap(next);
    ++result.passes;
    const double former = std::exchange(limit, kRegressionScaleCoefficient * MedianResidual(z, line, scratch));
    const double change = std::abs(limit - former) / former;
    shown = std::max(shown, Percent(change));
    const bool isClosed = progress != nullptr && !progress->Advance(shown);
    if (change < kRegressionConvergence) {
      result.stop = RegressionStop::kConverged;
      return;
    }
    if (isClosed) {
      result.stop = RegressionStop::kCancelled;
      return;
    }
  }
}

}  // namespace

RegressionResult RobustRegressionFilter(std::span<const double> z, std::span<double> w, double spacingUM,
                                        double cutoffMM, Progress* progress) {
  constexpr std::size_t kFewestPoints = 3;
  RegressionResult result;
  const bool isUsable = z.size() >= kFewestPoints && w.size() == z.size() && spacingUM > 0.0 &&
                        std::isfinite(spacingUM) && std::isfinite(cutoffMM) &&
                        SpacingAllowsCutoff(spacingUM, cutoffMM) && AllFinite(z);
  if (!isUsable) return result;
  const double mean = Mean(z);
  std::vector<double> centred(z.begin(), z.end());
  for (double& height : centred) height -= mean;
  const auto [lowest, highest] = std::minmax_element(centred.begin(), centred.end());
  const double heightRange = *highest - *lowest;
  Regression regression(centred, spacingUM, cutoffMM);
  std::vector<double> line(z.size());
  if (!regression.Run(std::vector<double>(z.size(), 1.0), line)) return result;
  result.range = IndexRange::FromCount(0, static_cast<std::int32_t>(z.size()));
  Iterate(regression, centred, line, heightRange, progress, result);
  for (std::size_t i = 0; i < z.size(); ++i) w[i] = line[i] + mean;
  return result;
}

}  // namespace texturon
