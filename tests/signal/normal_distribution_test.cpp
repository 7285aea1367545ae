// SPDX-License-Identifier: Apache-2.0

#include "signal/normal_distribution.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "support/near.h"

namespace texturon {
namespace {

TEST(NormalQuantile, HasFullDoublePrecisionInAllThreeRegions) {
  // From Phi(x) = p solved with 60 digits.
  struct Case {
    double p, x;
  };
  const Case cases[] = {{1e-300, -37.047096299361199237},
                        {1e-100, -21.273453560965324294},
                        {1e-20, -9.2623400897984075796},
                        {1e-9, -5.9978070150076868614},
                        {6.666666666666667e-07, -4.8347197629596973607},
                        {0.001, -3.0902323061678135354},
                        {0.0749999, -1.4395321773759005864},
                        {0.075, -1.4395314709384559349},
                        {0.0750001, -1.4395307645017296865},
                        {0.1, -1.2815515655446004353},
                        {0.25, -0.6744897501960817432},
                        {0.4, -0.25334710313579974132},
                        {0.49999, -0.000025066282748960008527}};
  for (const Case& c : cases) {
    EXPECT_TRUE(Near(NormalQuantile(c.p), c.x, 1e-15, 1e-9)) << c.p;
    if (c.p > 0.01) {
      EXPECT_TRUE(Near(NormalQuantile(1.0 - c.p), -c.x, 2e-15)) << c.p;
    }
    EXPECT_TRUE(Near(NormalProbability(c.x) / c.p, 1.0, 1e-11)) << c.p;
  }
  EXPECT_EQ(NormalQuantile(0.5), 0.0);
  EXPECT_EQ(NormalQuantile(0.0), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(NormalQuantile(1.0), std::numeric_limits<double>::infinity());
  for (const double p : {-0.1, 1.1, std::nan("")}) EXPECT_TRUE(std::isnan(NormalQuantile(p))) << p;
}

TEST(NormalQuantile, IsTheSameForMany) {
  std::vector<double> p, quantiles(1000);
  for (int i = 0; i < 1000; ++i) p.push_back(i < 3 ? i * 0.5 : (i + 0.5) / 1000.0);
  NormalQuantileOfEach(p, quantiles);
  for (std::size_t i = 0; i < p.size(); ++i) ASSERT_EQ(quantiles[i], NormalQuantile(p[i])) << p[i];
}

}  // namespace
}  // namespace texturon
