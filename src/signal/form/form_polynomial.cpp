// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_polynomial.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/double_double.h"
#include "signal/all_finite.h"
#include "signal/form/orthogonal_polynomials.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

// u = (2 index - sum) / 2^k runs from about -1 to 1 over the fit points, and every u is exact.
struct UnitScale {
  double sum = 0.0;
  double factor = 1.0;

  explicit UnitScale(const FitPoints& points) {
    const FitRun& front = points.Runs().front();
    const FitRun& back = points.Runs().back();
    const double last = back.Index(back.heights.size() - 1);
    sum = front.Index(0) + last;
    while (factor * (last - front.Index(0)) > 1.0) factor *= 0.5;
  }
  double At(double index) const { return (2.0 * index - sum) * factor; }
};

// c_j in powers of x = index * spacing from those in powers of u - u(0) = 2 factor index.
std::vector<double> ToPowersOfX(const std::vector<DoubleDouble>& powers, double factor, double spacing) {
  std::vector<double> coefficients;
  const DoubleDouble ratio = DoubleDouble(2.0 * factor) / spacing;
  DoubleDouble scale = 1.0;
  for (const DoubleDouble& power : powers) {
    coefficients.push_back((power * scale).hi);
    scale *= ratio;
  }
  return coefficients;
}

// In powers of x, from the coefficients' scatter in powers of u and what the polynomial leaves of the heights.
std::vector<double> Uncertainties(std::span<const double> scatter, std::span<const double> rest, double perX) {
  if (rest.size() <= scatter.size()) return {};
  const auto [squares] = LaneSums(rest.size(), [&](std::size_t j) { return std::array{rest[j] * rest[j]}; });
  const double count = static_cast<double>(rest.size());
  double unit = std::sqrt(squares / (count - static_cast<double>(scatter.size())) / count);
  std::vector<double> uncertainties;
  for (const double one : scatter) {
    uncertainties.push_back(one * unit);
    unit *= perX;
  }
  return uncertainties;
}

bool SwingsAway(std::span<const double> heights, std::span<const double> residual) {
  constexpr double kFar = 10.0;  // of the heights' range
  const auto [lowest, highest] = std::minmax_element(heights.begin(), heights.end());
  const double far = kFar * (*highest - *lowest);
  return far > 0.0 && std::any_of(residual.begin(), residual.end(), [far](double r) { return std::abs(r) > far; });
}

}  // namespace

std::optional<PolynomialFit> FitPolynomial(const FormInput& input, int order, FormOutput output) {
  if (!output.Fits(input) || order < 0) return {};
  const std::size_t degree = static_cast<std::size_t>(std::min(order, kHighestPolynomialOrder));
  const FitPoints points(input);
  if (points.Count() < degree + 1) return {};
  const UnitScale scale(points);
  std::vector<double> u, heights;
  u.reserve(points.Count());
  heights.reserve(points.Count());
  for (const FitRun& run : points.Runs()) {
    for (std::size_t j = 0; j < run.heights.size(); ++j) u.push_back(scale.At(run.Index(j)));
    heights.insert(heights.end(), run.heights.begin(), run.heights.end());
  }
  std::vector<double> rest(u.size());
  const auto fitter = PolynomialFitter::Fit(u, heights, degree, rest);
  if (!fitter) return {};

  const std::size_t n = input.heights.size();
  if (points.Count() < n) {
    std::vector<double> everyU(n);
    for (std::size_t i = 0; i < n; ++i) everyU[i] = scale.At(static_cast<double>(i));
    fitter->Evaluate(everyU, output.form);
    for (std::size_t i = 0; i < n; ++i) output.residual[i] = input.heights[i] - output.form[i];
  }
  std::size_t taken = 0;
  for (const FitRun& run : points.Runs()) {
    for (std::size_t j = 0; j < run.heights.size(); ++j, ++taken) {
      const std::size_t i = run.first + j * run.step;
      output.residual[i] = rest[taken];
      output.form[i] = input.heights[i] - rest[taken];
    }
  }
  const PolynomialFitter::Powers powers = fitter->PowersFrom(scale.At(0.0));
  const double perX = 2.0 * scale.factor / input.spacingUM;  // u by x
  PolynomialFit fit{ToPowersOfX(powers.coefficients, scale.factor, input.spacingUM), input.spacingUM};
  fit.uncertainties = Uncertainties(powers.scatter, rest, perX);
  fit.swingsAway = points.Count() < n && SwingsAway(input.heights, output.residual);
  if (!AllFinite(fit.coefficients) || !AllFinite(output.form)) return {};
  return fit;
}

}  // namespace texturon
