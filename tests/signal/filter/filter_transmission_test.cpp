// SPDX-License-Identifier: Apache-2.0

// The transmissions against what the filters themselves leave of a sine.

#include "signal/filter/filter_transmission.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

#include "signal/filter/gaussian_filter.h"
#include "signal/filter/spline_filter.h"
#include "support/near.h"

namespace texturon {
namespace {

constexpr double kSpacingUM = 20.0;
constexpr std::size_t kPoints = 20'000;

/// Share of a sine that a filter keeps, by projection on it over whole periods in the middle of the record.
double Kept(double wavelengthMM, const std::function<void(std::span<const double>, std::span<double>)>& filter) {
  std::vector<double> sine(kPoints);
  std::vector<double> line(kPoints);
  const double step = 2.0 * std::numbers::pi * kSpacingUM * 0.001 / wavelengthMM;
  for (std::size_t i = 0; i < kPoints; ++i) sine[i] = std::sin(step * static_cast<double>(i));
  filter(sine, line);
  const auto period = static_cast<std::size_t>(std::lround(wavelengthMM * 1000.0 / kSpacingUM));
  double product = 0.0;
  double square = 0.0;
  for (std::size_t i = kPoints / 4; i < kPoints / 4 + kPoints / 2 / period * period; ++i) {
    product += line[i] * sine[i];
    square += sine[i] * sine[i];
  }
  return product / square;
}

TEST(FilterTransmission, IsWhatTheFiltersKeepOfASine) {
  constexpr double kCutoffMM = 0.8;
  // Whole numbers of spacings that divide the record, so that the periodic filter sees a sine too.
  for (const double wavelengthMM : {0.08, 0.2, 0.4, 0.8, 1.6, 4.0, 16.0}) {
    const double gaussian = Kept(wavelengthMM, [](std::span<const double> z, std::span<double> w) {
      ASSERT_TRUE(GaussianFilter(z, w, kSpacingUM, kCutoffMM));
    });
    EXPECT_TRUE(Near(GaussianTransmission(kCutoffMM, wavelengthMM), gaussian, 1e-12)) << wavelengthMM;
    for (const double tension : {0.0, kGaussianLikeTension, 1.0}) {
      const double spline = Kept(wavelengthMM, [&](std::span<const double> z, std::span<double> w) {
        ASSERT_TRUE(SplineFilter(z, w, kSpacingUM, kCutoffMM, tension));
      });
      EXPECT_TRUE(Near(SplineTransmission(kCutoffMM, tension, kSpacingUM, wavelengthMM), spline, 1e-9))
          << wavelengthMM << " mm, tension " << tension;
    }
  }
}

}  // namespace
}  // namespace texturon
