// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <vector>

#include "signal/form/form_input.h"

namespace texturon {

inline constexpr int kHighestPolynomialOrder = 100;

struct PolynomialFit {
  std::vector<double> coefficients;  // c0 .. cN of z = sum c_j x^j, x in um from the first point, z in um
  double residualSpacingUM = 0.0;
  /// Standard uncertainties of the coefficients, were the deviations of the heights independent of each other and of
  /// one size; empty for as many points as coefficients.
  std::vector<double> uncertainties{};
  bool swingsAway = false;  // somewhere beside the fit points farther from the profile than ten times its height
};

/// Least-squares polynomial of the given order, an order above 100 taken as 100. Residuals are always vertical, the
/// spacing is unchanged.
///
/// The form is computed in polynomials that are orthogonal over the fit points and stays right to about 1e-9 um also at
/// order 20 over 100 mm or at order 100. The coefficients are those of the same polynomial; at high orders they nearly
/// cancel at the far end of a record, and a form summed from them there is not the form given here.
///
/// Where points were left out, between thinned ones and in an exclusion, a high order may lead anywhere: the fit says
/// so.
///
/// Nothing for a negative order, for fewer than order + 1 fit points, or when a result is not finite.
std::optional<PolynomialFit> FitPolynomial(const FormInput& input, int order, FormOutput output);

}  // namespace texturon
