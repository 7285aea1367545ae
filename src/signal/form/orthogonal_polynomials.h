// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/double_double.h"

namespace texturon {

/// Least squares by polynomials p0 .. pN that are orthonormal over the fit points themselves (mean of p_j p_k over the
/// points 1 for j = k, else 0), so that every coefficient stands for itself: no powers and no normal equations, which
/// lose all digits from about order 8 on. The polynomials follow from each other,
///
///     p_{k+1} = scale[k] (u p_k - sum over j <= k of back[k][j] p_j),
///
/// where orthogonality leaves only the terms j = k and k - 1. Those are enough until the order comes near the number of
/// points; there rounding would spoil them, and every polynomial is made orthogonal to all former ones. Each
/// coefficient is taken from what the former ones have left of the heights, which needs no second pass: error about
/// 1e-15 of the heights, at order 4 as at order 100.
class PolynomialFitter {
public:
  /// Fits heights y at u, |u| <= 1 and no two alike; `rest` takes what the polynomial leaves of each height. Nothing
  /// when there are fewer than order + 1 points or when a polynomial vanishes on the points to working accuracy.
  static std::optional<PolynomialFitter> Fit(std::span<const double> u, std::span<const double> y, std::size_t order,
                                             std::span<double> rest);

  /// Value of the fitted polynomial at each u. At the fit points y - rest is the better one when they are few.
  void Evaluate(std::span<const double> u, std::span<double> values) const;

  /// The fitted polynomial in powers of u - start, constant first.
  struct Powers {
    std::vector<DoubleDouble> coefficients;  // with the digits of two doubles: those of high order nearly cancel
    /// Of each coefficient, were every point's deviation independent and of standard deviation sqrt(points).
    std::vector<double> scatter;
  };
  Powers PowersFrom(double start) const;

private:
  using Columns = std::vector<std::vector<double>>;

  std::size_t Order() const { return scale_.size(); }
  std::size_t FirstTerm(std::size_t k) const { return everyTerm_ || k == 0 ? 0 : k - 1; }
  bool AddPolynomial(std::span<const double> u, Columns& basis);
  void EvaluateBasis(std::span<const double> u, Columns& rows) const;

  bool everyTerm_ = false;
  std::vector<double> scale_;
  std::vector<std::vector<double>> back_;
  std::vector<double> coefficients_;
};

}  // namespace texturon
