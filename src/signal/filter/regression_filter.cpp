// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_filter.h"

#include <algorithm>
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

/// weights = (1 - (z - line)^2 / limit^2)^2 within the limit, products = weights z.
TEXTURON_MULTIVERSION
void Reweight(const double* z, const double* line, std::size_t n, double limit, double* weights, double* products) {
  const double inverse = 1.0 / limit;
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) {
    const double ratio = (z[i] - line[i]) * inverse;
    const double rest = 1.0 - ratio * ratio;
    const double kept = rest > 0.0 ? rest : 0.0;
    weights[i] = kept * kept;
    products[i] = weights[i] * z[i];
  }
}

/// Passes over one record.
class Regression {
public:
  Regression(std::span<const double> z, double spacingUM, double cutoffMM)
      : z_(z), sums_(z.size(), spacingUM, cutoffMM), fine_(sums_.Thinning()) {}

  /// The mean line of all points alike; why there is none otherwise.
  std::optional<RegressionStop> RunUnweighted(std::span<double> line) {
    std::ranges::fill(sums_.Weights(), 1.0);
    std::ranges::copy(z_, sums_.Products().begin());
    return Run(line);
  }

  /// The same for the weights of the residuals from `former` up to a limit.
  std::optional<RegressionStop> RunReweighted(std::span<const double> former, double limit, std::span<double> line) {
    Reweight(z_.data(), former.data(), z_.size(), limit, sums_.Weights().data(), sums_.Products().data());
    return Run(line);
  }

private:
  /// The determinant is a sum over three points of their weights times the squares of their distances, which do not
  /// depend on where it is asked for. So it and the numerator are as smooth as a product of three sums, and between two
  /// nodes it is at least half the lesser one: both are interpolated instead of the eight sums.
  std::optional<RegressionStop> Run(std::span<double> line) {
    sums_.Make();
    if (sums_.Quotients(kLeastDeterminant, line) == 0) return std::nullopt;
    const std::size_t thinning = sums_.Thinning();
    const std::span<const double> determinants = sums_.Determinants();
    std::size_t fitted = 0;
    for (std::size_t cell = 0; cell * thinning < line.size(); ++cell) {
      const std::size_t node = cell + sums_.NodesBefore();
      const std::size_t next = thinning == 1 ? node : node + 1;
      if (determinants[node] > kLeastDeterminant && determinants[next] > kLeastDeterminant) continue;
      const std::size_t first = cell * thinning;
      const auto stop = RunCell(cell, line.subspan(first, std::min(thinning, line.size() - first)), fitted);
      if (stop) return stop;
    }
    return std::nullopt;
  }

  /// With the sums of every point, and with the points around those with too little weight for that.
  std::optional<RegressionStop> RunCell(std::size_t cell, std::span<double> out, std::size_t& fitted) {
    sums_.SumsOf(cell, std::span(fine_).first(out.size()));
    for (std::size_t r = 0; r < out.size(); ++r) {
      const RegressionSolution solution = SolveRegression(fine_[r]);
      out[r] = solution.Value();
      if (std::isfinite(out[r]) && solution.pivot > kLeastPivot) continue;
      sums_.PointsAround(cell * sums_.Thinning() + r, z_, around_);
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
  std::vector<RegressionPoint> fine_;  ///< the sums of the points of a cell
  std::vector<WeightedHeight> around_;
};

TEXTURON_MULTIVERSION
void Residuals(const double* z, const double* line, std::size_t n, double* amounts) {
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < n; ++i) amounts[i] = std::abs(z[i] - line[i]);
}

/// The limit of the weights; every next one is looked for beside the former.
class Limit {
public:
  double Of(std::span<const double> z, std::span<const double> line, std::vector<double>& scratch) {
    Residuals(z.data(), line.data(), z.size(), scratch.data());
    constexpr double kNear = 0.3;
    constexpr double kChanges = 2.0;
    constexpr double kPlaces = 12.0;  // of residuals as they usually lie, at least so many
    const double aside = std::max(kChanges * change_, kPlaces / static_cast<double>(z.size()));
    const bool isNear = median_ > 0.0 && aside < kNear;
    const double median = isNear ? MedianNear(scratch, median_, median_ * aside) : Median(scratch);
    change_ = median_ > 0.0 ? std::abs(median - median_) / median_ : kFirstChange;
    median_ = median;
    return kRegressionScaleCoefficient * median;
  }

private:
  static constexpr double kFirstChange = 0.04;  // of noise; of others it says where to look

  double median_ = 0.0;
  double change_ = 0.0;
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
  std::vector<double> next(z.size()), scratch(z.size());
  Limit limitOf;
  double limit = limitOf.Of(z, line, scratch);
  int shown = 0;
  result.stop = RegressionStop::kPassLimit;
  while (result.passes < kRegressionPassLimit) {
    if (heightRange == 0.0 || !(limit > kRounding * heightRange)) {
      result.stop = RegressionStop::kNoScale;
      return;
    }
    if (const auto stop = regression.RunReweighted(line, limit, next)) {
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
  if (regression.RunUnweighted(line)) return result;
  result.range = IndexRange::FromCount(0, static_cast<std::int32_t>(z.size()));
  Iterate(regression, centred, line, heightRange, progress, result);
  for (std::size_t i = 0; i < z.size(); ++i) w[i] = std::ldexp(line[i], exponent) + mean;
  return result;
}

}  // namespace texturon
