// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#include "signal/form/asphere.h"

namespace texturon {

/// Uniform numbers that are the same with every standard library.
inline double Uniform(std::mt19937_64& random, double from, double to) {
  return from + (to - from) * static_cast<double>(random() >> 11) * 0x1p-53;
}

/// The sag inside the vertical tangent in long double, the conic as (1 - sqrt(1 - q u^2)) / ((1 + k) c) where it can
/// be.
inline long double PlainSag(long double u, const AsphereDescription& asphere) {
  const long double c = asphere.curvature;
  const long double conic = asphere.conicFactor;
  const long double root = std::sqrt(1.0L - conic * c * c * u * u);
  long double sag = std::abs(conic * c) > 1e-3L ? (1.0L - root) / (conic * c) : c * u * u / (1.0L + root);
  long double power = 1.0L;
  for (const double coefficient : asphere.coefficients) {
    power *= u;
    sag += coefficient * power;
  }
  return sag;
}

/// Deviation along the axis of an asphere whose vertex lies at (x0, z0) and whose axis leans by `slope`.
inline long double PlainDeviation(long double x, long double z, const std::vector<long double>& place,
                                  const AsphereDescription& asphere) {
  const long double angle = std::atan(place[2]);
  const long double u = std::cos(angle) * (x - place[0]) + std::sin(angle) * (z - place[1]);
  const long double w = std::cos(angle) * (z - place[1]) - std::sin(angle) * (x - place[0]);
  return w - PlainSag(u, asphere);
}

/// Heights in um of a placed asphere at x = i x spacing: for each x the u whose turned point lies over it, by
/// bisection, as x grows with u where the surface is single-valued.
inline std::vector<double> MeasuredAsphere(const AsphereDescription& asphere, const Placement& place, std::size_t n,
                                           double spacingUM) {
  const long double angle = std::atan(static_cast<long double>(place.slope));
  const long double cosine = std::cos(angle);
  const long double sine = std::sin(angle);
  const long double conic = asphere.conicFactor;
  const long double square = conic * static_cast<long double>(asphere.curvature) * asphere.curvature;
  std::vector<double> z(n);
  for (std::size_t i = 0; i < n; ++i) {
    const long double x = static_cast<long double>(spacingUM) * 0.001L * static_cast<long double>(i) - place.xMM;
    long double low = x - 0.3L * std::abs(x) - 1e-9L, high = x + 0.3L * std::abs(x) + 1e-9L;
    if (square > 0.0L) {
      low = std::max(low, -std::sqrt(1.0L / square));
      high = std::min(high, std::sqrt(1.0L / square));
    }
    for (int round = 0; round < 66; ++round) {
      const long double middle = 0.5L * (low + high);
      const bool isLeft = cosine * middle - sine * PlainSag(middle, asphere) < x;
      (isLeft ? low : high) = middle;
    }
    const long double u = 0.5L * (low + high);
    z[i] = static_cast<double>(1000.0L * (place.zMM + sine * u + cosine * PlainSag(u, asphere)));
  }
  return z;
}

}  // namespace texturon
