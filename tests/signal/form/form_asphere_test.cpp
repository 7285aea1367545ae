// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_asphere.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/dense_solve.h"
#include "support/form_outputs.h"
#include "support/measured_asphere.h"
#include "support/near.h"
#include "support/recording_progress.h"

namespace texturon {
namespace {

double PeakToValley(const std::vector<double>& values) {
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  return *most - *least;
}

struct Prescription {
  const char* name;
  AsphereDescription asphere;
  double lengthMM, apexMM, slope;
};

// Even terms in the order u^4, u^6 ...
std::vector<double> Even(std::initializer_list<double> terms) {
  std::vector<double> coefficients{0.0, 0.0};
  for (const double term : terms) {
    coefficients.push_back(0.0);
    coefficients.push_back(term);
  }
  return coefficients;
}

const std::vector<Prescription>& Prescriptions() {
  static const std::vector<Prescription> all = {
      {"convex sphere", {-0.1, 1.0, {}}, 8.0, 3.0, 0.0},
      {"oblate ellipse", {-0.05, 1.8, {}}, 16.0, 6.0, 0.01},
      {"hyperboloid", {-0.06, -1.3, {}}, 14.0, 5.0, 0.02},
      {"catalogue lens", {-0.021008403361344536, 0.253113568, Even({-3e-6, 1e-9})}, 24.0, 11.0, 0.004},
      {"flat with fourth power", {0.0, 1.0, Even({1e-4})}, 10.0, 5.5, 0.0},
      {"ten even terms",
       {-0.03, 0.5, Even({1e-5, -2e-7, 3e-9, -1e-11, 1e-13, -2e-15, 1e-17, -1e-19, 5e-22})},
       22.0,
       10.0,
       0.01},
      {"all orders", {-0.05, 0.7, {0.0, 1e-3, -2e-4, 3e-5, 1e-6, -2e-7}}, 12.0, 5.0, -0.01},
      {"gull wing", {0.05, 1.0, Even({-1.2e-3, 1e-5})}, 12.0, 6.2, 0.01},
      {"apex near the end", {-0.06, -0.5, Even({3e-6})}, 12.0, 0.5, 0.02},
      {"steep and tilted", {-0.12, 0.8, Even({-2e-5, 1e-7})}, 11.0, 6.0, 0.08},
  };
  return all;
}

// Newton's method on the plain deviations, with differences for derivatives: another road to the same minimum.
double LeastSquaresMerit(const std::vector<double>& z, double spacingUM, const Prescription& p) {
  std::vector<long double> place = {p.apexMM, 0.31L, p.slope};
  const std::size_t m = p.asphere.IsPlainSphere() ? 2 : 3;
  const auto deviation = [&](std::size_t i, const std::vector<long double>& at) {
    return PlainDeviation(static_cast<long double>(i) * spacingUM * 0.001L, z[i] * 0.001L, at, p.asphere);
  };
  for (int round = 0; round < 12; ++round) {
    std::vector<std::vector<DoubleDouble>> matrix(m, std::vector<DoubleDouble>(m));
    std::vector<DoubleDouble> rhs(m);
    for (std::size_t i = 0; i < z.size(); ++i) {
      std::array<double, 3> slope{};
      for (std::size_t k = 0; k < m; ++k) {
        std::vector<long double> more = place, less = place;
        more[k] += 1e-6L;
        less[k] -= 1e-6L;
        slope[k] = static_cast<double>((deviation(i, more) - deviation(i, less)) / 2e-6L);
      }
      for (std::size_t k = 0; k < m; ++k) {
        for (std::size_t l = 0; l < m; ++l) matrix[k][l] += DoubleDouble(slope[k]) * slope[l];
        rhs[k] -= DoubleDouble(slope[k]) * static_cast<double>(deviation(i, place));
      }
    }
    const auto step = SolveDense(matrix, rhs);
    for (std::size_t k = 0; k < m; ++k) place[k] += step[k].hi;
  }
  long double sum = 0.0L;
  for (std::size_t i = 0; i < z.size(); ++i) sum += deviation(i, place) * deviation(i, place);
  return static_cast<double>(sum);
}

TEST(FormAsphere, ReachesTheLeastSquaresOfNoisyData) {
  std::vector<Prescription> all = Prescriptions();
  // Turned about their centre of curvature these hardly change: the minimum lies at the end of a long, bent valley.
  all.push_back({"weak hyperboloid", {-1.0 / 1500.0, -19.0, {}}, 24.0, 14.0, 0.07});
  all.push_back({"weak paraboloid", {-1.0 / 400.0, 0.0, {}}, 30.0, 12.0, -0.04});
  for (const Prescription& p : all) {
    const auto n = static_cast<std::size_t>(p.lengthMM * 100.0);
    std::mt19937_64 random(n);
    std::vector<double> z = MeasuredAsphere(p.asphere, {p.apexMM, 0.31, p.slope}, n, 10.0);
    for (double& height : z) {
      double noise = 0.0;
      for (int k = 0; k < 12; ++k) noise += Uniform(random, -0.5, 0.5);
      height += 0.1 * noise;
    }
    FormArrays out(n);
    const auto result = FitAsphere({.heights = z, .spacingUM = 10.0}, p.asphere, {}, out.Spans());
    ASSERT_TRUE(result.fit) << p.name;
    double sum = 0.0;
    for (const double residual : out.residual) sum += 1e-6 * residual * residual;
    EXPECT_TRUE(Near(sum / result.fit->meritMM2, 1.0, 1e-9)) << p.name << ": vertical residuals are what was minimised";
    EXPECT_TRUE(Near(result.fit->meritMM2 / LeastSquaresMerit(z, 10.0, p), 1.0, 1e-9)) << p.name;
  }
}

TEST(FormAsphere, TellsHowSureItIs) {
  // The inverse of the normal equations, their derivatives by differences; the conic factor is the fourth parameter.
  const Prescription& p = Prescriptions()[3];
  const std::size_t n = 1201;
  std::mt19937_64 random(8);
  std::vector<double> z = MeasuredAsphere(p.asphere, {p.apexMM, 0.31, p.slope}, n, 20.0);
  for (double& height : z) height += Uniform(random, -0.5, 0.5);
  FormArrays out(n);
  const auto fit = FitAsphere({.heights = z, .spacingUM = 20.0}, p.asphere, {.free = {.conic = true}}, out.Spans()).fit;
  ASSERT_TRUE(fit && fit->covariance);
  const std::vector<long double> at = {fit->apexXMM, 0.001L * fit->apexZUM, fit->slope, fit->conic + 1.0L};
  const auto deviation = [&](std::size_t i, const std::vector<long double>& place) {
    AsphereDescription asphere = p.asphere;
    asphere.conicFactor = static_cast<double>(place[3]);
    return PlainDeviation(static_cast<long double>(i) * 0.02L, z[i] * 0.001L, place, asphere);
  };
  std::vector<std::vector<DoubleDouble>> matrix(4, std::vector<DoubleDouble>(4));
  for (std::size_t i = 0; i < n; ++i) {
    std::array<double, 4> slope{};
    for (std::size_t k = 0; k < 4; ++k) {
      std::vector<long double> more = at, less = at;
      more[k] += 0x1p-20L;
      less[k] -= 0x1p-20L;
      slope[k] = static_cast<double>((deviation(i, more) - deviation(i, less)) / 0x1p-19L);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      for (std::size_t l = 0; l < 4; ++l) matrix[k][l] += DoubleDouble(slope[k]) * slope[l];
    }
  }
  using P = ShapeParameters;
  const double perSlope = 1.0 / (1.0 + fit->slope * fit->slope);  // angle per slope
  const std::pair<P::Index, double> parameters[] = {
      {P::kX, 1.0}, {P::kZ, 1.0}, {P::kAngle, perSlope}, {P::kConic, 1.0}};
  for (std::size_t k = 0; k < 4; ++k) {
    std::vector<DoubleDouble> unit(4);
    unit[k] = 1.0;
    const double variance = SolveDense(matrix, unit)[k].hi * fit->meritMM2 / static_cast<double>(n - 4);
    const auto [index, factor] = parameters[k];
    EXPECT_TRUE(Near(*fit->covariance->Uncertainty(index, 1.0) / (std::sqrt(variance) * factor), 1.0, 1e-6)) << k;
  }
  EXPECT_FALSE(fit->covariance->Uncertainty(P::kCurvature, 1.0)) << "held";
}

// A random asphere, its placement and the data's length, as steep as 80 degrees; the apex in the left fifth of the
// trace, in the right fifth or anywhere.
Prescription RandomPrescription(std::mt19937_64& random) {
  Prescription p{"random", {}, 0.0, 0.0, Uniform(random, -0.08, 0.08)};
  const double radius = Uniform(random, 3.0, 60.0);
  const double conic = Uniform(random, -2.0, 2.5);
  p.asphere = {(random() % 2 == 0 ? 1.0 : -1.0) / radius, conic, {}};
  const double half = Uniform(random, 0.15, 0.9) * radius / std::sqrt(std::max(1.0, conic));
  const std::size_t order = random() % 21;
  const bool hasOddTerms = random() % 3 == 0;
  for (std::size_t power = 1; power <= order; ++power) {
    const bool isUsed = power >= 3 && (hasOddTerms || power % 2 == 0);
    const double height = isUsed ? Uniform(random, -0.01, 0.01) * half : 0.0;
    p.asphere.coefficients.push_back(height / std::pow(half, static_cast<double>(power)));
  }
  const std::size_t where = random() % 3;
  const double share = where == 0   ? Uniform(random, 0.0, 0.2)
                       : where == 1 ? Uniform(random, 0.8, 1.0)
                                    : Uniform(random, 0.0, 1.0);
  p.lengthMM = 0.95 * half / std::max(share, 1.0 - share);
  p.apexMM = share * p.lengthMM;
  return p;
}

TEST(FormAsphere, ConvergesInTwoHundredRandomCases) {
  std::mt19937_64 random(2026);
  constexpr std::size_t kPoints = 601;
  int cases = 0;
  while (cases < 200) {
    const Prescription p = RandomPrescription(random);
    const double spacingUM = p.lengthMM * 1000.0 / (kPoints - 1);
    const std::vector<double> z = MeasuredAsphere(p.asphere, {p.apexMM, -0.2, p.slope}, kPoints, spacingUM);
    double steepest = 0.0;  // steeper than this no stylus measures, and the tilted surface may not be single-valued
    for (std::size_t i = 1; i < kPoints; ++i) steepest = std::max(steepest, std::abs(z[i] - z[i - 1]) / spacingUM);
    if (!(steepest < 5.0) || (p.asphere.IsPlainSphere())) continue;
    ++cases;
    FormArrays out(kPoints);
    const auto result = FitAsphere({.heights = z, .spacingUM = spacingUM}, p.asphere, {}, out.Spans());
    ASSERT_TRUE(result.fit) << cases;
    EXPECT_LT(PeakToValley(out.residual), 1e-5) << cases;
    EXPECT_TRUE(Near(result.fit->apexXMM, p.apexMM, 1e-6)) << cases;
    EXPECT_TRUE(Near(result.fit->apexZUM, -200.0, 1e-3)) << cases;
  }
}

// Nearly spherical ones whose apex lies anywhere, measured over a small part and with noise: several minima of nearly
// one depth.
TEST(FormAsphere, IsNeverWorseWithMoreFreedom) {
  std::mt19937_64 random(39);
  constexpr std::size_t kPoints = 400;
  for (int c = 0; c < 40; ++c) {
    const double radius = Uniform(random, 3.0, 60.0);
    const double half = Uniform(random, 0.05, 0.4) * radius;
    const double share = Uniform(random, -0.1, 1.1);
    const double lengthMM = half / std::max(std::abs(share), std::abs(1.0 - share));
    const double spacingUM = lengthMM * 1000.0 / (kPoints - 1);
    const AsphereDescription asphere{-1.0 / radius, 1.0 + Uniform(random, -0.2, 0.2), {}};
    const Placement place{share * lengthMM, 0.3, Uniform(random, -0.08, 0.08)};
    std::vector<double> z = MeasuredAsphere(asphere, place, kPoints, spacingUM);
    for (double& height : z) height += Uniform(random, -0.5, 0.5);
    double merit[4] = {};
    for (std::size_t free = 0; free < 4; ++free) {
      FormArrays out(kPoints);
      const AsphereFitOptions options{.free = {.curvature = (free & 1) != 0, .conic = (free & 2) != 0}};
      const auto fit = FitAsphere({.heights = z, .spacingUM = spacingUM}, asphere, options, out.Spans()).fit;
      ASSERT_TRUE(fit);
      merit[free] = fit->meritMM2;
      for (const std::size_t tighter : {free & 1, free & 2}) {
        EXPECT_LE(merit[free], merit[tighter] * (1.0 + 1e-9)) << c << ": " << free << " against " << tighter;
      }
    }
  }
}

TEST(FormAsphere, FreesAndHoldsWhatItIsTold) {
  const Prescription& p = Prescriptions()[3];
  const std::size_t n = 2401;
  const std::vector<double> z = MeasuredAsphere(p.asphere, {p.apexMM, 0.31, p.slope}, n, 10.0);
  const FormInput input{.heights = z, .spacingUM = 10.0};
  FormArrays out(n);
  AsphereDescription wrong = p.asphere;
  wrong.curvature *= 1.02;
  wrong.conicFactor += 0.1;
  struct Case {
    FreeTerms free;
    bool findsAll;
  };
  const Case cases[] = {
      {{.curvature = true, .conic = true}, true}, {{.curvature = true}, false}, {{.conic = true}, false}, {{}, false}};
  for (const Case& c : cases) {
    const auto fit = FitAsphere(input, wrong, {.free = c.free}, out.Spans()).fit;
    ASSERT_TRUE(fit);
    EXPECT_EQ(c.free.curvature, fit->curvaturePerMM != wrong.curvature);
    EXPECT_EQ(c.free.conic, fit->conic != wrong.conicFactor - 1.0);
    EXPECT_EQ(c.findsAll, PeakToValley(out.residual) < 1e-5);
    if (!c.findsAll) continue;
    EXPECT_TRUE(Near(fit->RadiusMM(), 1.0 / p.asphere.curvature, 1e-8));
    EXPECT_TRUE(Near(fit->conic, p.asphere.conicFactor - 1.0, 1e-6));
    EXPECT_TRUE(Near(fit->apexXMM, p.apexMM, 1e-6));
  }
  // A vertex held 0.1 mm off stays there.
  const auto held = FitAsphere(input, p.asphere, {.free = {.x = false}, .xMM = p.apexMM + 0.1}, out.Spans()).fit;
  ASSERT_TRUE(held);
  EXPECT_EQ(held->apexXMM, p.apexMM + 0.1);
  // A sphere looks the same from everywhere: with the curvature free its tilt is still 0.
  const std::vector<double> sphere = MeasuredAsphere({-0.05, 1.0, {}}, {11.0, 0.0, 0.0}, n, 10.0);
  const auto round =
      FitAsphere({.heights = sphere, .spacingUM = 10.0}, {-0.051, 1.0, {}}, {.free = {.curvature = true}}, out.Spans())
          .fit;
  ASSERT_TRUE(round);
  EXPECT_EQ(round->slope, 0.0);
  EXPECT_TRUE(Near(round->RadiusMM(), -20.0, 1e-9));
}

TEST(FormAsphere, MeasuresDefectsAlongItsAxisOrAcross) {
  // One point is raised or lowered by 1 um along z, outside the fit. With the slope S' at the place, the distance is 1
  // um times cos(atan S'), and along an axis leaning by t it is cos t - S' sin t, to first order.
  const AsphereDescription asphere{-0.05, 0.5, Even({1e-6})};
  const double slope = 0.05;
  const std::size_t n = 2001;
  std::vector<double> z = MeasuredAsphere(asphere, {10.0, 0.0, slope}, n, 10.0);
  const std::size_t at = 1700;
  const std::vector<double> exact = z;
  const double measuredSlope = (exact[at + 1] - exact[at - 1]) / 20.0;
  const double ownSlope = std::tan(std::atan(measuredSlope) - std::atan(slope));
  const double along = std::cos(std::atan(slope)) - ownSlope * std::sin(std::atan(slope));
  const IndexRange point = IndexRange::FromEnds(static_cast<int>(at), static_cast<int>(at));
  FormArrays out(n);
  for (const double defect : {1.0, -1.0}) {
    z[at] = exact[at] + defect;
    FormInput input{.heights = z, .spacingUM = 10.0, .exclusion = point};
    ASSERT_TRUE(FitAsphere(input, asphere, {}, out.Spans()).fit);
    EXPECT_TRUE(Near(out.residual[at], defect * along, 1e-4));
    EXPECT_TRUE(Near(out.form[at], exact[at], 1e-9));
    input.residual = ResidualKind::kPerpendicular;
    ASSERT_TRUE(FitAsphere(input, asphere, {}, out.Spans()).fit);
    EXPECT_TRUE(Near(out.residual[at], defect * std::cos(std::atan(measuredSlope)), 1e-4));
    EXPECT_TRUE(Near(out.residual[at - 1], 0.0, 1e-8));
  }
}

TEST(FormAsphere, FailsWithoutAnAnswer) {
  std::vector<double> z = MeasuredAsphere({-0.05, 0.5, {}}, {5.0, 0.0, 0.01}, 1001, 10.0);
  std::mt19937_64 random(5);
  for (double& height : z) height += Uniform(random, -1.0, 1.0);
  FormArrays out(1001);
  RecordingProgress closed(1);
  const AsphereDescription asphere{-0.08, 0.2, {}};
  const auto result = FitAsphere({.heights = z, .spacingUM = 10.0}, asphere, {.progress = &closed}, out.Spans());
  EXPECT_FALSE(result.fit);
  EXPECT_EQ(result.search.stop, MinimiseStop::kCancelled);
  EXPECT_FALSE(FitAsphere({.heights = z, .spacingUM = 10.0, .step = 501}, asphere, {}, out.Spans()).fit);
  EXPECT_FALSE(FitAsphere({.heights = z, .spacingUM = 10.0}, asphere, {}, {}).fit);
  EXPECT_FALSE(FitAsphere({.heights = z, .spacingUM = 10.0}, {-0.08, 0.2, {1e300, 1e300}}, {}, out.Spans()).fit);
  z[77] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(FitAsphere({.heights = z, .spacingUM = 10.0}, asphere, {}, out.Spans()).fit);
}

}  // namespace
}  // namespace texturon
