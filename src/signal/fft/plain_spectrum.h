// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace texturon {

/// |X[k]|^2 for k = 0 .. n / 2 of the plain discrete transform X[k] = sum over j of x[j] exp(-2 pi i j k / n): no
/// window, no padding, any length; those with long prime factors go through a chirp. Empty for no values.
std::vector<double> PlainPowerSpectrum(std::span<const double> x);

/// Sums of x[i] x[i + j] over i = 0 .. n - 1 - j for the lags j = 0 .. lags - 1, by a product of transforms: to 1e-14
/// of the sum at lag 0. `lags` is at most n.
std::vector<double> LaggedProducts(std::span<const double> x, std::size_t lags);

/// The least even length from `least` on with factors 2, 3 and 5 only: what real transforms are quick at.
std::size_t QuickRealLength(std::size_t least);

}  // namespace texturon
