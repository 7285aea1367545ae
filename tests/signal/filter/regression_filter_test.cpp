// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_filter.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "signal/filter/filter_transmission.h"
#include "signal/filter/regression_sums.h"
#include "signal/filter/weighted_parabola.h"
#include "support/dense_solve.h"
#include "support/near.h"
#include "support/recording_progress.h"

namespace texturon {
namespace {

constexpr double kPi = 3.14159265358979323846;

std::vector<double> Noisy(std::size_t n, unsigned seed) {
  std::mt19937_64 random(seed);
  std::normal_distribution<double> noise;
  std::vector<double> z(n);
  for (std::size_t i = 0; i < n; ++i) z[i] = 3.0 + std::sin(static_cast<double>(i) * 0.03) + 0.2 * noise(random);
  return z;
}

/// One pass by its definition: the three normal equations of every point, with 32 digits.
std::vector<double> DirectPass(const std::vector<double>& z, const std::vector<double>& d, double dx, double cutoff) {
  const auto n = static_cast<int>(z.size());
  std::vector<double> line;
  for (int k = 0; k < n; ++k) {
    std::vector<std::vector<DoubleDouble>> matrix(3, std::vector<DoubleDouble>(3));
    std::vector<DoubleDouble> rhs(3);
    for (int l = 0; l < n; ++l) {
      const double t = (l - k) * dx;
      if (std::abs(t) > 2.5 * cutoff) continue;
      const double s = std::exp(-kPi * std::pow(t / (0.7309134280946759 * cutoff), 2)) * d[static_cast<std::size_t>(l)];
      const double powers[] = {1.0, t / cutoff, t / cutoff * t / cutoff};
      for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) matrix[i][j] += DoubleDouble(s * powers[i]) * DoubleDouble(powers[j]);
        rhs[i] += DoubleDouble(s * powers[i]) * DoubleDouble(z[static_cast<std::size_t>(l)]);
      }
    }
    line.push_back(SolveDense(matrix, rhs)[0].hi);
  }
  return line;
}

double ScaleOf(const std::vector<double>& z, const std::vector<double>& line) {
  std::vector<double> rest(z.size());
  for (std::size_t i = 0; i < z.size(); ++i) rest[i] = std::abs(z[i] - line[i]);
  std::sort(rest.begin(), rest.end());
  const std::size_t half = rest.size() / 2;
  return 4.4478 * (rest.size() % 2 == 1 ? rest[half] : 0.5 * (rest[half - 1] + rest[half]));
}

/// The whole filter, its passes by their definition.
struct Direct {
  std::vector<double> line;
  int passes = 0;
};
template <typename Pass>
Direct DirectFilter(const std::vector<double>& z, const Pass& pass) {
  std::vector<double> d(z.size(), 1.0);
  Direct direct{pass(d)};
  for (double former = ScaleOf(z, direct.line);; ++direct.passes) {
    for (std::size_t i = 0; i < z.size(); ++i) {
      const double r = std::abs(z[i] - direct.line[i]) / former;
      d[i] = r <= 1.0 ? std::pow(1.0 - r * r, 2) : 0.0;
    }
    direct.line = pass(d);
    const double c = ScaleOf(z, direct.line);
    if (std::abs(c - former) < 1e-6 * former) break;
    former = c;
  }
  ++direct.passes;
  return direct;
}

TEST(RegressionFilter, SolvesTheEquationsOfEveryPoint) {
  std::vector<double> z = Noisy(500, 1);
  for (std::size_t i = 200; i < 240; ++i) z[i] -= 40.0;  // a groove as wide as the cutoff, which loses its weights
  for (std::size_t i = 0; i < 5; ++i) z[i] += 20.0;      // at the end, too
  const double dx = 0.001, cutoff = 0.04;
  const Direct direct = DirectFilter(z, [&](const auto& d) { return DirectPass(z, d, dx, cutoff); });
  std::vector<double> w(z.size());
  const RegressionResult result = RobustRegressionFilter(z, w, 1.0, cutoff, nullptr);
  EXPECT_EQ(result.stop, RegressionStop::kConverged);
  EXPECT_EQ(result.passes, direct.passes);
  EXPECT_EQ(result.range, IndexRange::FromCount(0, 500));
  EXPECT_TRUE(AllNear(w, direct.line, 1e-9));
}

// Weights leave points next to nothing but themselves, or ends nothing near: sums by transforms miss the first three by
// 3e-6 to 4e-4, and the equations of the others in powers of the distance seem to be singular.
TEST(RegressionFilter, FitsPointsThatAreNearlyAlone) {
  for (const unsigned seed : {402U, 414U, 722U, 132U, 246U, 310U, 498U, 890U, 1278U}) {
    std::mt19937_64 random(seed);
    std::normal_distribution<double> noise;
    std::vector<double> z(70), w(70);
    for (double& height : z) height = (random() % 10 < 3 ? 1.0 : 0.0) + 1e-3 * noise(random);
    const double cutoff = 0.003 + 0.0003 * (seed % 17);
    const RegressionResult result = RobustRegressionFilter(z, w, 1.0, cutoff, nullptr);
    const Direct direct = DirectFilter(z, [&](const auto& d) { return DirectPass(z, d, 0.001, cutoff); });
    EXPECT_EQ(result.stop, RegressionStop::kConverged) << seed;
    EXPECT_EQ(result.passes, direct.passes) << seed;
    EXPECT_TRUE(AllNear(w, direct.line, 1e-9)) << seed;
  }
}

TEST(WeightedParabola, HoldsForWeightsOfAnyOrder) {
  // Through three of them whatever the others weigh; where a fourth pulls, it takes its share.
  const auto at = [](double place) { return 2.0 - 3.0 * place + 0.5 * place * place; };
  std::vector<WeightedHeight> points = {{-2.0, 1.0, at(-2.0)}, {1.0, 1e-25, at(1.0)}, {7.0, 1e-40, at(7.0)}};
  EXPECT_TRUE(Near(WeightedParabolaAtZero(points).value(), 2.0, 1e-14));
  points.push_back({5.0, 1e-60, 100.0});
  EXPECT_TRUE(Near(WeightedParabolaAtZero(points).value(), 2.0, 1e-14));
  points.pop_back();
  EXPECT_FALSE(WeightedParabolaAtZero(std::span(points).first(2)));
}

// Cutoffs of so many points that nodes do, and a stretch without weights, wider than the cutoff, where they do not; the
// twin in plain doubles.
TEST(RegressionFilter, SolvesThemBetweenNodes) {
  const std::size_t n = 2001;
  std::vector<double> z = Noisy(n, 5);
  for (std::size_t i = 600; i < 1400; ++i) z[i] += i % 2 == 0 ? 20.0 : -20.0;
  const double cutoff = 0.28;  // 280 points
  const int reach = 700;
  std::vector<double> gauss;
  for (int i = 0; i <= reach; ++i)
    gauss.push_back(std::exp(-kPi * std::pow(i * 0.001 / (0.7309134280946759 * cutoff), 2)));
  const Direct direct = DirectFilter(z, [&](const std::vector<double>& d) {
    std::vector<double> line(n);
    for (int k = 0; k < static_cast<int>(n); ++k) {
      double m[5] = {}, f[3] = {};
      for (int l = std::max(0, k - reach); l <= std::min(static_cast<int>(n) - 1, k + reach); ++l) {
        const auto at = static_cast<std::size_t>(l);
        const double t = (l - k) / 280.0;
        double term = d[at] * gauss[static_cast<std::size_t>(std::abs(l - k))];
        for (int j = 0; j < 5; ++j) {
          m[j] += term;
          if (j < 3) f[j] += term * z[at];
          term *= t;
        }
      }
      const double minor = m[2] * m[4] - m[3] * m[3];
      const double whole = m[0] * minor - m[1] * (m[1] * m[4] - m[2] * m[3]) + m[2] * (m[1] * m[3] - m[2] * m[2]);
      line[static_cast<std::size_t>(k)] =
          (f[0] * minor - f[1] * (m[1] * m[4] - m[2] * m[3]) + f[2] * (m[1] * m[3] - m[2] * m[2])) / whole;
    }
    return line;
  });
  std::vector<double> w(n);
  EXPECT_EQ(RobustRegressionFilter(z, w, 1.0, cutoff, nullptr).stop, RegressionStop::kConverged);
  EXPECT_TRUE(AllNear(w, direct.line, 1e-9, 40.0)) << "of the height range";
}

TEST(RegressionFilter, TransmissionIsWhatTheEquationsLeaveOfAWave) {
  EXPECT_TRUE(Near(RegressionTransmission(0.8, 0.8), 0.5, 1e-14));
  for (const double wavelength : {0.02, 0.04, 0.1}) {
    std::vector<double> wave(301);
    for (int i = 0; i < 301; ++i)
      wave[static_cast<std::size_t>(i)] = std::cos(2.0 * kPi * (i - 150) * 0.001 / wavelength);
    const double kept = DirectPass(wave, std::vector<double>(301, 1.0), 0.001, 0.04)[150];
    EXPECT_TRUE(Near(kept, RegressionTransmission(0.04, wavelength), 1e-10)) << wavelength;
  }
}

TEST(RegressionFilter, PassesParabolas) {
  std::vector<double> parabola(4000), w(4000);
  for (std::size_t i = 0; i < 4000; ++i) parabola[i] = 1e-5 * std::pow(static_cast<double>(i) - 1500.0, 2) - 7.0;
  EXPECT_EQ(RobustRegressionFilter(parabola, w, 0.5, 0.25, nullptr).stop, RegressionStop::kNoScale);
  EXPECT_TRUE(AllNear(w, parabola, 1e-12, 20.0));
  // Up to 5 % of points far below a smooth profile do not pull the line.
  std::mt19937_64 random(2);
  std::normal_distribution<double> noise(0.0, 0.001);
  std::vector<double> z = parabola;
  for (std::size_t i = 0; i < z.size(); ++i) z[i] += noise(random) - (i % 200 < 10 ? 5.0 : 0.0);
  EXPECT_EQ(RobustRegressionFilter(z, w, 0.5, 0.25, nullptr).stop, RegressionStop::kConverged);
  EXPECT_TRUE(AllNear(w, parabola, 1e-3, 1.0));
}

// In the units of BatchFft::Cost, of which one counted 3.5 instructions; a real transform counted 20 to 32 for each
// point, and what a pass does besides its sums 10 to 30.
TEST(RegressionFilter, SumsAreCheapForAnyLengthAndCutoff) {
  for (const std::size_t n : {256U, 300U, 512U, 1000U, 2048U, 4096U, 8000U, 100'000U}) {
    for (double cutoff = 3.0; cutoff < 4000.0; cutoff *= 1.07) {
      const RegressionSums sums(n, 1.0, cutoff * 1e-3);
      EXPECT_LT(sums.Cost(), 58.0 * static_cast<double>(n)) << n << " points, cutoff of " << cutoff;
    }
  }
}

TEST(RegressionFilter, EndsWithAReason) {
  const std::size_t n = 2000;
  std::vector<double> w(n);
  const auto stop = [&](auto height) {
    std::vector<double> z(n);
    for (std::size_t i = 0; i < n; ++i) z[i] = height(static_cast<double>(i));
    return RobustRegressionFilter(z, w, 1.0, 0.2, nullptr).stop;
  };
  EXPECT_EQ(stop([](double) { return 4.0; }), RegressionStop::kNoScale);
  EXPECT_EQ(stop([](double i) { return 0.3 * i; }), RegressionStop::kNoScale);
  EXPECT_EQ(stop([](double i) { return i < 600.0   ? i * i * 1e-4
                                       : i < 700.0 ? std::sin(i)
                                                   : i * i * 1e-4; }),
            RegressionStop::kNoScale);
  EXPECT_NE(stop([](double i) { return i < 1000.0 ? 0.0 : 5.0; }), RegressionStop::kFailed);
  const RegressionStop grooved =
      stop([](double i) { return 0.01 * std::sin(i) - (i > 500.0 && i < 1300.0 ? 30.0 : 0.0); });
  EXPECT_TRUE(grooved == RegressionStop::kConverged || grooved == RegressionStop::kPassLimit ||
              grooved == RegressionStop::kSingular);
  for (const double height : w) EXPECT_TRUE(std::isfinite(height));
  EXPECT_EQ(stop([](double i) { return i == 3.0 ? NAN : i; }), RegressionStop::kFailed);
  EXPECT_FALSE(RobustRegressionFilter(Noisy(n, 1), w, 1.0, 0.0029, nullptr).range) << "too coarse";
  EXPECT_TRUE(RobustRegressionFilter(Noisy(n, 1), w, 1.0, 500.0, nullptr).range) << "far longer than the record";
  RecordingProgress closed(1);
  EXPECT_EQ(RobustRegressionFilter(Noisy(n, 1), w, 1.0, 0.2, &closed).stop, RegressionStop::kCancelled);
}

}  // namespace
}  // namespace texturon
