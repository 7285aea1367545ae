// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>

namespace texturon {

/// Quantile of the standard normal distribution: x with Phi(x) = p. Algorithm AS 241 (Wichura, Applied Statistics 37,
/// 1988), three rational approximations, relative error below 1e-15. Minus and plus infinity for p = 0 and 1, not a
/// number outside. Near p = 1 take -NormalQuantile(1 - p) with a 1 - p that was not rounded.
double NormalQuantile(double p);
/// Of each; as long as `p`, and may be the same.
void NormalQuantileOfEach(std::span<const double> p, std::span<double> quantile);

/// Phi(x), by the complementary error function, so that both tails keep their digits.
double NormalProbability(double x);

}  // namespace texturon
