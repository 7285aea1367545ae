// SPDX-License-Identifier: Apache-2.0

#include "signal/form/orthogonal_polynomials.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/elementary.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

constexpr std::size_t kBlock = 256;  // points evaluated at a time, so that all polynomials of a block stay in the cache
constexpr double kVanishing = 1e-13;

double Product(std::span<const double> a, std::span<const double> b) {
  const auto [sum] = LaneSums(a.size(), [&](std::size_t j) { return std::array{a[j] * b[j]}; });
  return sum;
}

void Subtract(double factor, std::span<const double> from, std::span<double> values) {
  for (std::size_t j = 0; j < values.size(); ++j) values[j] -= factor * from[j];
}

}  // namespace

std::optional<PolynomialFitter> PolynomialFitter::Fit(std::span<const double> u, std::span<const double> y,
                                                      std::size_t order, std::span<double> rest) {
  const std::size_t count = u.size();
  if (count < order + 1 || y.size() != count || rest.size() != count) return {};
  PolynomialFitter fitter;
  fitter.everyTerm_ = count < 4 * order;
  Columns basis{std::vector<double>(count, 1.0)};
  std::copy(y.begin(), y.end(), rest.begin());
  for (std::size_t k = 0; k <= order; ++k) {
    if (k > 0 && !fitter.AddPolynomial(u, basis)) return {};
    const double coefficient = Product(basis[k], rest) / static_cast<double>(count);
    if (!std::isfinite(coefficient)) return {};
    Subtract(coefficient, basis[k], rest);
    fitter.coefficients_.push_back(coefficient);
    if (!fitter.everyTerm_ && k > 1) std::vector<double>().swap(basis[k - 2]);  // no longer looked back at
  }
  return fitter;
}

// Appends the next polynomial's values at the fit points.
bool PolynomialFitter::AddPolynomial(std::span<const double> u, Columns& basis) {
  const std::size_t k = basis.size() - 1;
  const double count = static_cast<double>(u.size());
  std::vector<double> next(u.size());
  for (std::size_t j = 0; j < u.size(); ++j) next[j] = u[j] * basis[k][j];
  back_.emplace_back(k + 1, 0.0);
  for (std::size_t term = FirstTerm(k); term <= k; ++term) {
    back_[k][term] = Product(next, basis[term]) / count;
    Subtract(back_[k][term], basis[term], next);
  }
  const double norm = std::sqrt(Product(next, next) / count);
  if (!(norm > kVanishing)) return false;
  scale_.push_back(1.0 / norm);
  for (double& value : next) value *= scale_[k];
  basis.push_back(std::move(next));
  return true;
}

void PolynomialFitter::EvaluateBasis(std::span<const double> u, Columns& rows) const {
  std::fill(rows[0].begin(), rows[0].end(), 1.0);
  for (std::size_t k = 0; k < Order(); ++k) {
    const std::span<double> next(rows[k + 1]);
    for (std::size_t j = 0; j < u.size(); ++j) next[j] = u[j] * rows[k][j];
    for (std::size_t term = FirstTerm(k); term <= k; ++term) {
      Subtract(back_[k][term], rows[term], next.first(u.size()));
    }
    for (std::size_t j = 0; j < u.size(); ++j) next[j] *= scale_[k];
  }
}

void PolynomialFitter::Evaluate(std::span<const double> u, std::span<double> values) const {
  Columns rows(Order() + 1, std::vector<double>(kBlock));
  for (std::size_t start = 0; start < u.size(); start += kBlock) {
    const std::size_t width = std::min(kBlock, u.size() - start);
    const std::span<double> part = values.subspan(start, width);
    EvaluateBasis(u.subspan(start, width), rows);
    std::fill(part.begin(), part.end(), 0.0);
    for (std::size_t k = 0; k <= Order(); ++k) Subtract(-coefficients_[k], rows[k], part);
  }
}

PolynomialFitter::Powers PolynomialFitter::PowersFrom(double start) const {
  // Row k holds p_k in powers of v = u - start; u p_k is v p_k + start p_k.
  std::vector<std::vector<DoubleDouble>> rows{{DoubleDouble(1.0)}};
  Powers powers{std::vector<DoubleDouble>(Order() + 1), std::vector<double>(Order() + 1)};
  for (std::size_t k = 0; k <= Order(); ++k) {
    for (std::size_t power = 0; power <= k; ++power) {
      powers.coefficients[power] += rows[k][power] * coefficients_[k];
      powers.scatter[power] = Hypot(powers.scatter[power], rows[k][power].hi);
    }
    if (k == Order()) break;
    std::vector<DoubleDouble> next(k + 2);
    for (std::size_t power = 0; power <= k; ++power) {
      next[power + 1] += rows[k][power];
      next[power] += rows[k][power] * start;
    }
    for (std::size_t term = FirstTerm(k); term <= k; ++term) {
      for (std::size_t power = 0; power <= term; ++power) next[power] -= rows[term][power] * back_[k][term];
    }
    for (DoubleDouble& value : next) value *= scale_[k];
    rows.push_back(std::move(next));
  }
  return powers;
}

}  // namespace texturon
