// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_filter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "base/elementary.h"
#include "base/multiversion.h"
#include "signal/all_finite.h"
#include "signal/filter/filter_contract.h"
#include "signal/filter/regression_sums.h"
#include "signal/filter/weighted_parabola.h"
#include "signal/mean.h"
#include "signal/nth_smallest.h"

namespace texturon {
namespace {

/// Below this a pivot of the equations is not trusted to sums by transforms: the whole weight of a point is 1, their
/// rounding about 1e-16 ...
constexpr double kLeastPivot = 1e-5;
/// ... nor to the polynomials between nodes a determinant, which is 0.008 where all weights are 1, 5e-5 at the ends.
constexpr double kLeastDeterminant = 1e-6;

/// What points that are fitted one by one may cost in a pass, in points that count for them; a record that would need
/// more is not passed again.
constexpr std::size_t kMostFitted = 1'000'000'000;

/// The value of the fitted parabola at the point itself is the quotient of two determinants.
struct Solved {
  double pivot = 0.0;  ///< the least one, the last by what it makes of an error in the sums
  double determinant = 0.0;
  double numerator = 0.0;

  double Value() const { return numerator / determinant; }
};

/// By elimination from the highest power down, so that the last unknown is the one that is wanted. The matrix is
/// symmetric and positive, and its entries are of the order of 1.
TEXTURON_INLINE Solved Solve(double m0, double m1, double m2, double m3, double m4, double f0, double f1, double f2) {
  const double q12 = m3 / m4;
  const double q02 = m2 / m4;
  const double p1 = m2 - q12 * m3;
  const double e01 = m1 - q02 * m3;
  const double g1 = f1 - q12 * f2;
  const double q01 = e01 / p1;
  const double p0 = m0 - q02 * m2 - q01 * e01;
  const double g0 = f0 - q02 * f2 - q01 * g1;
  const double others = m4 * p1;
  const double last = p0 / (1.0 + std::abs(q01) + std::abs(q01 * q12 - q02));
  return {std::min(std::min(last, p1), m4), others * p0, others * g0};
}

using RegressionPoint = std::array<double, kRegressionSums>;

Solved Solve(const RegressionPoint& s) {
  constexpr std::size_t f = kFirstHeight;
  Solved solved = Solve(s[0], s[1], s[2], s[3], s[kFourthMoment], s[f], s[f + 1], s[f + 2]);
  if (!std::isfinite(solved.Value())) solved.pivot = 0.0;
  return solved;
}

TEXTURON_MULTIVERSION
void SolveNodes(const RegressionSums& sums, double* numerators, double* determinants) {
  const double* const m0 = sums.Sum(0).data();
  const double* const m1 = sums.Sum(1).data();
  const double* const m2 = sums.Sum(2).data();
  const double* const m3 = sums.Sum(3).data();
  const double* const m4 = sums.Sum(kFourthMoment).data();
  const double* const f0 = sums.Sum(kFirstHeight).data();
  const double* const f1 = sums.Sum(kFirstHeight + 1).data();
  const double* const f2 = sums.Sum(kFirstHeight + 2).data();
  const std::size_t count = sums.Nodes();
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < count; ++i) {
    const Solved solved = Solve(m0[i], m1[i], m2[i], m3[i], m4[i], f0[i], f1[i], f2[i]);
    numerators[i] = solved.numerator;
    determinants[i] = solved.determinant;
  }
}

/// How many determinants are not trusted.
TEXTURON_MULTIVERSION
std::size_t CountUntrusted(const double* determinants, std::size_t count) {
  std::size_t untrusted = 0;
  for (std::size_t i = 0; i < count; ++i) untrusted += determinants[i] > kLeastDeterminant ? 0U : 1U;
  return untrusted;
}

/// Passes over one record.
class Regression {
public:
  Regression(std::span<const double> z, double spacingUM, double cutoffMM)
      : z_(z),
        sums_(z.size(), spacingUM, cutoffMM),
        numerators_(sums_.PaddedNodes()),
        determinants_(sums_.PaddedNodes()) {
    for (auto& sum : fine_) sum.resize(sums_.Thinning());
  }

  /// The mean line for the robust weights d; why there is none otherwise.
  ///
  /// The determinant is a sum over three points of their weights times the squares of their distances, which do not
  /// depend on where it is asked for. So it and the numerator are as smooth as a product of three sums, and between two
  /// nodes it is at least half the lesser one: both are interpolated instead of the eight sums.
  std::optional<RegressionStop> Run(std::span<const double> d, std::span<double> line) {
    sums_.Make(d, z_);
    SolveNodes(sums_, numerators_.data(), determinants_.data());
    sums_.Quotients(numerators_, determinants_, line);
    const std::size_t thinning = sums_.Thinning();
    const std::size_t inner = thinning == 1 ? line.size() : (line.size() - 1) / thinning + 2;
    if (CountUntrusted(determinants_.data() + sums_.NodesBefore(), inner) == 0) return std::nullopt;
    std::size_t fitted = 0;
    for (std::size_t cell = 0; cell * thinning < line.size(); ++cell) {
      const std::size_t node = cell + sums_.NodesBefore();
      const std::size_t next = thinning == 1 ? node : node + 1;
      if (determinants_[node] > kLeastDeterminant && determinants_[next] > kLeastDeterminant) continue;
      const std::size_t first = cell * thinning;
      const auto stop = RunCell(d, cell, line.subspan(first, std::min(thinning, line.size() - first)), fitted);
      if (stop) return stop;
    }
    return std::nullopt;
  }

private:
  /// With the sums of every point, and with the points around those with too little weight for that.
  std::optional<RegressionStop> RunCell(std::span<const double> d, std::size_t cell, std::span<double> out,
                                        std::size_t& fitted) {
    for (std::size_t sum = 0; sum < kRegressionSums; ++sum) {
      sums_.Between(sums_.Sum(sum), cell, std::span(fine_[sum]).first(out.size()));
    }
    for (std::size_t r = 0; r < out.size(); ++r) {
      RegressionPoint point;
      for (std::size_t sum = 0; sum < kRegressionSums; ++sum) point[sum] = fine_[sum][r];
      const Solved solved = Solve(point);
      out[r] = solved.Value();
      if (solved.pivot > kLeastPivot) continue;
      sums_.PointsAround(cell * sums_.Thinning() + r, d, z_, around_);
      fitted += around_.size();
      if (fitted > kMostFitted) return RegressionStop::kTooLong;
      const std::optional<double> value = WeightedParabolaAtZero(around_);
      if (!value) return RegressionStop::kSingular;
      out[r] = *value;
    }
    return std::nullopt;
  }

  std::span<const double> z_;
  RegressionSums sums_;
  std::vector<double> numerators_, determinants_;
  std::array<std::vector<double>, kRegressionSums> fine_;  ///< of the points of a cell
  std::vector<WeightedHeight> around_;
};

TEXTURON_MULTIVERSION
void Residuals(const double* z, const double* line, std::size_t n, double* amounts) {
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) amounts[i] = std::abs(z[i] - line[i]);
}

TEXTURON_MULTIVERSION
void Reweight(const double* z, const double* line, std::size_t n, double limit, double* weights) {
  const double inverse = 1.0 / limit;
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) {
    const double ratio = (z[i] - line[i]) * inverse;
    const double rest = 1.0 - ratio * ratio;
    const double kept = rest > 0.0 ? rest : 0.0;
    weights[i] = kept * kept;
  }
}

/// The limit of the weights; as soon as it settles the next one is looked for beside the former.
class Limit {
public:
  double Of(std::span<const double> z, std::span<const double> line, std::vector<double>& scratch) {
    Residuals(z.data(), line.data(), z.size(), scratch.data());
    constexpr double kNear = 0.3;
    constexpr double kChanges = 3.0;
    const double aside = kChanges * change_;
    const double median =
        aside < kNear ? Median(scratch, median_ * (1.0 - aside), median_ * (1.0 + aside)) : Median(scratch);
    change_ = std::abs(median - median_) / median_;
    median_ = median;
    return kRegressionScaleCoefficient * median;
  }

private:
  double median_ = 0.0;
  double change_ = 1.0;
};

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
  Limit limitOf;
  double limit = limitOf.Of(z, line, scratch);
  int shown = 0;
  result.stop = RegressionStop::kPassLimit;
  while (result.passes < kRegressionPassLimit) {
    if (heightRange == 0.0 || !(limit > kRounding * heightRange)) {
      result.stop = RegressionStop::kNoScale;
      return;
    }
    Reweight(z.data(), line.data(), z.size(), limit, weights.data());
    if (const auto stop = regression.Run(weights, next)) {
      result.stop = *stop;
      return;
    }
    line.swap(next);
    ++result.passes;
    const double former = std::exchange(limit, limitOf.Of(z, line, scratch));
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
  // Weights and heights are transformed together and must not differ by orders of magnitude. Exact in both directions.
  constexpr int kMostExponent = 1000;
  int exponent = 0;
  std::frexp(*highest - *lowest, &exponent);
  exponent = std::clamp(exponent, -kMostExponent, kMostExponent);
  const double heightRange = std::ldexp(*highest - *lowest, -exponent);
  for (double& height : centred) height = std::ldexp(height, -exponent);
  Regression regression(centred, spacingUM, cutoffMM);
  std::vector<double> line(z.size());
  if (regression.Run(std::vector<double>(z.size(), 1.0), line)) return result;
  result.range = IndexRange::FromCount(0, static_cast<std::int32_t>(z.size()));
  Iterate(regression, centred, line, heightRange, progress, result);
  for (std::size_t i = 0; i < z.size(); ++i) w[i] = std::ldexp(line[i], exponent) + mean;
  return result;
}

}  // namespace texturon
