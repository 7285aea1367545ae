// SPDX-License-Identifier: Apache-2.0

#include "signal/normal_distribution.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

#include "base/elementary.h"
#include "base/multiversion.h"

namespace texturon {
namespace {

using Coefficients = std::array<double, 8>;

// Numerator and denominator about the middle, in the tails, and far out in them; lowest power first.
constexpr Coefficients kMiddleOver = {3.3871328727963666080e0, 1.3314166789178437745e2, 1.9715909503065514427e3,
                                      1.3731693765509461125e4, 4.5921953931549871457e4, 6.7265770927008700853e4,
                                      3.3430575583588128105e4, 2.5090809287301226727e3};
constexpr Coefficients kMiddleUnder = {1.0,
                                       4.2313330701600911252e1,
                                       6.8718700749205790830e2,
                                       5.3941960214247511077e3,
                                       2.1213794301586595867e4,
                                       3.9307895800092710610e4,
                                       2.8729085735721942674e4,
                                       5.2264952788528545610e3};
constexpr Coefficients kTailOver = {1.42343711074968357734e0,  4.63033784615654529590e0, 5.76949722146069140550e0,
                                    3.64784832476320460504e0,  1.27045825245236838258e0, 2.41780725177450611770e-1,
                                    2.27238449892691845833e-2, 7.74545014278341407640e-4};
constexpr Coefficients kTailUnder = {1.0,
                                     2.05319162663775882187e0,
                                     1.67638483018380384940e0,
                                     6.89767334985100004550e-1,
                                     1.48103976427480074590e-1,
                                     1.51986665636164571966e-2,
                                     5.47593808499534494600e-4,
                                     1.05075007164441684324e-9};
constexpr Coefficients kFarOver = {6.65790464350110377720e0,  5.46378491116411436990e0,  1.78482653991729133580e0,
                                   2.96560571828504891230e-1, 2.65321895265761230930e-2, 1.24266094738807843860e-3,
                                   2.71155556874348757815e-5, 2.01033439929228813265e-7};
constexpr Coefficients kFarUnder = {1.0,
                                    5.99832206555887937690e-1,
                                    1.36929880922735805310e-1,
                                    1.48753612908506148525e-2,
                                    7.86869131145613259100e-4,
                                    1.84631831751005468180e-5,
                                    1.42151175831644588870e-7,
                                    2.04426310338993978564e-15};

TEXTURON_INLINE double Polynomial(const Coefficients& c, double x) {
  double value = c[7];
  for (std::size_t k = 7; k-- > 0;) value = value * x + c[k];
  return value;
}

constexpr double kMiddleHalf = 0.425;

/// For q = p - 0.5 up to kMiddleHalf away from 0.
TEXTURON_INLINE double MiddleQuantile(double q) {
  const double r = kMiddleHalf * kMiddleHalf - q * q;
  return q * Polynomial(kMiddleOver, r) / Polynomial(kMiddleUnder, r);
}

}  // namespace

double NormalQuantile(double p) {
  constexpr double kFarTail = 5.0;
  const double q = p - 0.5;
  if (std::abs(q) <= kMiddleHalf) return MiddleQuantile(q);
  const double tail = q < 0.0 ? p : 1.0 - p;
  if (!(tail > 0.0)) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    return tail == 0.0 ? std::copysign(kInfinity, q) : std::numeric_limits<double>::quiet_NaN();
  }
  const double r = std::sqrt(-Log(tail));
  const double x = r <= kFarTail ? Polynomial(kTailOver, r - 1.6) / Polynomial(kTailUnder, r - 1.6)
                                 : Polynomial(kFarOver, r - kFarTail) / Polynomial(kFarUnder, r - kFarTail);
  return std::copysign(x, q);
}

void NormalQuantileOfEach(std::span<const double> p, std::span<double> quantile) {
  constexpr std::size_t kBlock = 64;
  std::array<double, kBlock> middle;
  for (std::size_t start = 0; start < p.size(); start += kBlock) {
    const std::size_t count = std::min(kBlock, p.size() - start);
    const double* const from = p.data() + start;
    for (std::size_t i = 0; i < count; ++i) middle[i] = MiddleQuantile(from[i] - 0.5);
    for (std::size_t i = 0; i < count; ++i) {
      quantile[start + i] = std::abs(from[i] - 0.5) <= kMiddleHalf ? middle[i] : NormalQuantile(from[i]);
    }
  }
}

double NormalProbability(double x) {
  return 0.5 * Erfc(-x / std::numbers::sqrt2);
}

}  // namespace texturon
