// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_fixed_radius.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "support/form_outputs.h"
#include "support/measured_asphere.h"
#include "support/near.h"

namespace texturon {
namespace {

constexpr double kSpacingUM = 2.0;

TEST(FormFixedRadius, FindsTheCentreOfConcaveAndConvexArcs) {
  struct Case {
    double radiusMM, apexMM;
  };
  for (const Case c : {Case{10.0, 3.0}, Case{-10.0, 3.0}, Case{-4.0, 0.2}, Case{2.9, 1.5}, Case{1e4, 2.0},
                       Case{-500.0, 5.9}, Case{30.0, -0.7}}) {
    const std::size_t n = c.radiusMM == 2.9 ? 1501 : 1801;
    const std::vector<double> z = MeasuredAsphere({1.0 / c.radiusMM, 1.0, {}}, {c.apexMM, 0.05, 0.0}, n, kSpacingUM);
    FormArrays out(n);
    const auto fit = FitFixedRadius({.heights = z, .spacingUM = kSpacingUM}, c.radiusMM, nullptr, out.Spans()).fit;
    ASSERT_TRUE(fit) << c.radiusMM;
    EXPECT_EQ(fit->radiusUM, c.radiusMM * 1000.0);
    // A flat arc tells its centre's X only by its slope: 1e-9 um of height there are 1e-9 R / length of X.
    EXPECT_TRUE(Near(fit->centreXUM, c.apexMM * 1000.0, 1e-5, 1e3 + std::abs(c.radiusMM))) << c.radiusMM;
    EXPECT_TRUE(Near(fit->centreYUM, 50.0 + c.radiusMM * 1000.0, 1e-9)) << c.radiusMM;
    EXPECT_TRUE(AllNear(out.residual, std::vector<double>(n, 0.0), 1e-6)) << c.radiusMM;
    EXPECT_TRUE(AllNear(out.form, z, 1e-6)) << c.radiusMM;
    double path = 0.0;
    for (std::size_t i = 1; i < n; ++i) path += std::hypot(kSpacingUM, z[i] - z[i - 1]);
    EXPECT_TRUE(Near(fit->residualSpacingUM, path / static_cast<double>(n - 1), 1e-12));
  }
}

TEST(FormFixedRadius, FindsVerticesFarBesideTheProfile) {
  // A flat arc that leans has its vertex metres or kilometres away.
  struct Case {
    double radiusMM, slope;
  };
  for (const Case c : {Case{100.0, 0.3}, Case{-1e4, 0.05}, Case{1e5, 0.3}, Case{-1e6, 0.05}, Case{1e8, 0.01}}) {
    const std::size_t n = 2001;
    const double u = c.radiusMM * c.slope / std::sqrt(1.0 + c.slope * c.slope);  // where the arc has this slope
    std::vector<double> z(n);
    for (std::size_t i = 0; i < n; ++i) {
      const long double at = u + (static_cast<double>(i) - 1000.0) * 1e-3 * kSpacingUM;
      const auto sag = [&](long double v) {
        return v * v / c.radiusMM / (1.0L + std::sqrt(1.0L - v * v / c.radiusMM / c.radiusMM));
      };
      z[i] = static_cast<double>((sag(at) - sag(u)) * 1000.0L);
    }
    FormArrays out(n);
    const auto fit = FitFixedRadius({.heights = z, .spacingUM = kSpacingUM}, c.radiusMM, nullptr, out.Spans()).fit;
    ASSERT_TRUE(fit) << c.radiusMM;
    // The slope of the data says where the centre is; its last digits are R times as long.
    EXPECT_TRUE(Near(fit->centreXUM / (2000.0 - 1000.0 * u), 1.0, 1e-9)) << c.radiusMM;
    EXPECT_TRUE(AllNear(out.residual, std::vector<double>(n, 0.0), 1e-6 + 1e-15 * 1000.0 * std::abs(u))) << c.radiusMM;
  }
}

TEST(FormFixedRadius, MeasuresFromTheCentre) {
  // A point farther from the centre counts positive on both kinds, so above a convex arc and below a concave one.
  for (const double radiusMM : {5.0, -5.0}) {
    std::vector<double> z = MeasuredAsphere({1.0 / radiusMM, 1.0, {}}, {2.0, 0.0, 0.0}, 2001, kSpacingUM);
    z[1000] += 1.0;
    FormArrays out(z.size());
    const FormInput input{.heights = z,
                          .spacingUM = kSpacingUM,
                          .exclusion = IndexRange::FromEnds(1000, 1000),
                          .residual = ResidualKind::kVertical};
    ASSERT_TRUE(FitFixedRadius(input, radiusMM, nullptr, out.Spans()).fit);
    EXPECT_TRUE(Near(out.residual[1000], radiusMM > 0.0 ? -1.0 : 1.0, 1e-9));
    // With a radius that is not the data's, distance minus radius all the same.
    const auto fit = FitFixedRadius(input, 1.1 * radiusMM, nullptr, out.Spans()).fit;
    ASSERT_TRUE(fit);
    for (std::size_t i = 0; i < z.size(); i += 50) {
      const double distance = std::hypot(kSpacingUM * static_cast<double>(i) - fit->centreXUM, z[i] - fit->centreYUM);
      EXPECT_TRUE(Near(out.residual[i], distance - 5500.0, 1e-9)) << i;
    }
    // The least-squares centre: vertical deviations have neither mean nor correlation with the slope.
    double sum = 0.0, moment = 0.0;
    for (std::size_t i = 0; i < z.size(); ++i) {
      if (i == 1000) continue;
      const double u = kSpacingUM * static_cast<double>(i) - fit->centreXUM;
      sum += z[i] - out.form[i];
      moment += (z[i] - out.form[i]) * u / std::sqrt(5500.0 * 5500.0 - u * u);
    }
    EXPECT_TRUE(Near(sum / 2000.0, 0.0, 1e-8));
    EXPECT_TRUE(Near(moment / 2000.0, 0.0, 1e-8));
  }
}

TEST(FormFixedRadius, DoubtsARadiusThatBendsTheOtherWay) {
  const std::vector<double> hill = {0.0, 1.0, 2.0, 1.0, 1.0};
  const std::vector<double> hollow = {2.0, 1.0, 0.0, 1.0, 2.0};
  const std::vector<double> level(5, 1.0);
  EXPECT_EQ(DoubtRadius(hill, 10.0), RadiusDoubt::kDataIsConvex);
  EXPECT_EQ(DoubtRadius(hill, -10.0), RadiusDoubt::kNone);
  EXPECT_EQ(DoubtRadius(hollow, 10.0), RadiusDoubt::kNone);
  EXPECT_EQ(DoubtRadius(hollow, -10.0), RadiusDoubt::kDataIsConcave);
  EXPECT_EQ(DoubtRadius(level, -10.0), RadiusDoubt::kDataIsConcave) << "level counts as concave";
  for (const double none : {0.0, 1e-101, -1e-101}) {
    EXPECT_EQ(DoubtRadius(hill, none), RadiusDoubt::kNone) << "what is no radius is not asked about";
    EXPECT_EQ(DoubtRadius(hollow, none), RadiusDoubt::kNone);
  }
}

TEST(FormFixedRadius, FailsWithoutARadiusOrData) {
  const std::vector<double> z(100, 1.0);
  FormArrays out(100);
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  for (const double radiusMM :
       {0.0, 1e-101, 1e10, 1e30, -1e160, 1e300, kInfinite, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(FitFixedRadius({.heights = z}, radiusMM, nullptr, out.Spans()).fit);
  }
  EXPECT_FALSE(FitFixedRadius({.heights = z, .step = 50}, 10.0, nullptr, out.Spans()).fit);
}

}  // namespace
}  // namespace texturon
