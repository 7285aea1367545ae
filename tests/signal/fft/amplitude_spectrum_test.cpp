// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/amplitude_spectrum.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

#include "support/naive_transform.h"
#include "support/near.h"

namespace texturon {
namespace {

struct Spectrum {
  std::optional<std::int32_t> count;
  std::vector<double> amplitude, phase;
};

Spectrum SpectrumOf(const std::vector<double>& z) {
  Spectrum s{{}, std::vector<double>(z.size() / 2 + 1, -1.0), std::vector<double>(z.size() / 2 + 1, -1.0)};
  s.count = AmplitudeSpectrum(z, s.amplitude, s.phase);
  return s;
}

TEST(AmplitudeSpectrum, FindsASineOnAMean) {
  for (const std::size_t m : {1000U, 1001U, 8000U}) {
    const Signal wave = Harmonic(m, 7, 1.5);
    std::vector<double> z(m);
    for (std::size_t i = 0; i < m; ++i) z[i] = wave.im[i] - 0.25;
    const Spectrum s = SpectrumOf(z);
    ASSERT_EQ(s.count, static_cast<std::int32_t>(m / 2 + 1));
    std::vector<double> expected(m / 2 + 1);
    expected[0] = -0.25;
    expected[7] = 1.5;
    EXPECT_TRUE(AllNear(s.amplitude, expected, 1e-14)) << m;
    EXPECT_TRUE(Near(s.phase[7], -std::numbers::pi / 2.0, 1e-13)) << m;  // a sine lags a cosine by a quarter
  }
}

TEST(AmplitudeSpectrum, WeighsTheLastEntryByItsParity) {
  // (-1)^i has X4 = 8 over 8 points; over 5 points the last entry is an ordinary harmonic.
  const Spectrum even = SpectrumOf({1.0, -1.0, 1.0, -1.0, 1.0, -1.0, 1.0, -1.0});
  ASSERT_EQ(even.count, 5);
  EXPECT_TRUE(AllNear(even.amplitude, std::vector<double>{0.0, 0.0, 0.0, 0.0, std::sqrt(2.0)}, 1e-15));
  const Spectrum odd = SpectrumOf(Harmonic(5, 2, 3.0).re);
  ASSERT_EQ(odd.count, 3);
  EXPECT_TRUE(AllNear(odd.amplitude, std::vector<double>{0.0, 0.0, 3.0}, 1e-15));
}

TEST(AmplitudeSpectrum, ShortensOrFails) {
  std::vector<double> z(503, 2.0);
  z[502] = 1e6;  // behind the transformed points
  const Spectrum s = SpectrumOf(z);
  ASSERT_EQ(s.count, 252);
  EXPECT_TRUE(Near(s.amplitude[0], 2.0, 1e-15));
  for (std::size_t k = 1; k < 252; ++k) EXPECT_LT(s.amplitude[k], 1e-14);
  EXPECT_FALSE(SpectrumOf({1.0, 2.0, 3.0, 4.0}).count.has_value());
  EXPECT_FALSE(SpectrumOf({}).count.has_value());

  std::vector<double> amplitude(252);
  EXPECT_EQ(AmplitudeSpectrum(z, amplitude, {}), 252);  // phases are optional
  EXPECT_EQ(amplitude, s.amplitude);
}

}  // namespace
}  // namespace texturon
