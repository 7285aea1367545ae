// SPDX-License-Identifier: Apache-2.0

#include "signal/form/asphere.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "signal/form/asphere_tables.h"
#include "support/measured_asphere.h"
#include "support/near.h"

namespace texturon {
namespace {

TEST(AsphereSag, IsTheConicPlusThePolynomial) {
  struct Case {
    AsphereDescription asphere;
    Placement place;
    double x, height;
  };
  const Case cases[] = {
      {{0.1, 1.0, {}}, {}, 6.0, 10.0 - 8.0},           // 6-8-10 triangle
      {{-0.1, 1.0, {}}, {1.0, 0.5, 0.0}, 7.0, -1.5},   // convex, displaced
      {{0.25, 0.0, {}}, {}, 2.0, 0.5},                 // paraboloid x^2 / 2R
      {{0.0, 1.0, {}}, {1.0, 2.0, 0.5}, 4.0, 3.5},     // the tilted line p1 + u p2
      {{1e-201, 1.0, {0.0, 3.0}}, {}, -2.0, 12.0},     // flat but for A2
      {{0.0, 1.0, {1.0, 0.0, -2.0}}, {}, -3.0, 51.0},  // odd terms keep their sign
      {{0.1, 1.0, {}}, {0.0, 0.0, 0.25}, -6.0, 2.0 - 1.5},
  };
  for (const Case& c : cases) EXPECT_TRUE(Near(AsphereSag(c.x, c.place, c.asphere), c.height, 1e-14)) << c.x;
}

TEST(AsphereSag, GoesStraightOnBeyondTheVerticalTangent) {
  const AsphereDescription sphere{0.1, 1.0, {}};
  const Placement place{2.0, 0.3, 0.1};
  for (const double side : {-1.0, 1.0}) {
    const double first = side * 9.999, second = 0.999 * first;
    const auto on = [](double u) { return 10.0 - std::sqrt(100.0 - u * u) + 0.3 + 0.1 * u; };
    const double slope = (on(first) - on(second)) / (first - second);
    for (const double beyond : {10.0001, 11.0, 1e6}) {
      const double u = side * beyond;
      EXPECT_TRUE(Near(AsphereSag(2.0 + u, place, sphere), on(first) + slope * (u - first), 1e-9));
    }
    EXPECT_TRUE(Near(AsphereSag(2.0 + side * 9.9995, place, sphere), on(side * 9.9995), 1e-12)) << "still inside";
  }
  EXPECT_TRUE(Near(AsphereSag(10.0, {}, sphere), 10.0, 1e-7)) << "at the tangent itself";
  EXPECT_TRUE(std::isfinite(AsphereSag(1e300, {}, {0.1, -2.0, {}}))) << "a hyperboloid has no limit";
}

TEST(AsphereShape, HasTheSagAndItsDerivativesForManyAtOnce) {
  const AsphereDescription cases[] = {
      {0.1, 1.0, {}}, {-0.05, -1.3, {0.0, 0.0, 1e-4, -2e-5}}, {0.08, 2.0, {0.01, 0.0, 0.0, 1e-5}}, {0.0, 1.0, {0.2}}};
  std::vector<double> u;
  for (int i = -77; i <= 77; ++i) u.push_back(0.2 * i);  // beyond +-10 the sphere goes straight on; 155 is no multiple
  const std::size_t n = u.size();
  for (const AsphereDescription& asphere : cases) {
    AsphereShape shape(asphere);
    std::vector<double> height(n), slope(n), byCurvature(n), byConic(n), more(n), less(n);
    shape.Evaluate(u, {height, slope, byCurvature, byConic});
    const auto difference = [&](double curvatureStep, double conicStep, double uStep, std::vector<double>& to) {
      std::vector<double> moved = u;
      for (double& at : moved) at += uStep;
      shape.SetTerms(asphere.curvature + curvatureStep, asphere.conicFactor + conicStep);
      shape.Evaluate(moved, {.height = to});
      shape.SetTerms(asphere.curvature, asphere.conicFactor);
    };
    const double q = asphere.conicFactor * asphere.curvature * asphere.curvature;
    for (std::size_t i = 0; i < n; ++i) {
      EXPECT_TRUE(Near(height[i], AsphereSag(u[i], {}, asphere), 1e-13)) << u[i];
    }
    struct Step {
      double curvature, conic, u;
      const std::vector<double>& derivative;
    };
    for (const Step& step : {Step{0, 0, 1e-6, slope}, Step{1e-7, 0, 0, byCurvature}, Step{0, 1e-6, 0, byConic}}) {
      difference(step.curvature, step.conic, step.u, more);
      difference(-step.curvature, -step.conic, -step.u, less);
      const double h = step.curvature + step.conic + step.u;
      for (std::size_t i = 0; i < n; ++i) {
        if (q * u[i] * u[i] > 0.9) continue;  // near the tangent differences say nothing
        EXPECT_TRUE(Near(step.derivative[i], (more[i] - less[i]) / (2.0 * h), 1e-6, 10.0)) << u[i] << ' ' << h;
      }
    }
  }
}

TEST(AsphereTables, ListTheSagAtEqualSteps) {
  const AsphereDescription sphere{0.1, 1.0, {}};
  const auto rows = SagTable(sphere, 0.0, 6.0, 0.05);
  ASSERT_EQ(rows.size(), 121u) << "6 / 0.05 is 120 steps, whatever the digits";
  EXPECT_TRUE(Near(rows[120].xMM, 6.0, 1e-14));
  EXPECT_TRUE(Near(rows[120].zMM, 2.0, 1e-13));
  EXPECT_EQ(SagTable(sphere, -1.0, 1.0, 0.3).size(), 7u);
  EXPECT_TRUE(SagTable(sphere, 0.0, 6.0, 0.0).empty());
  EXPECT_TRUE(SagTable(sphere, 0.0, 6.0, 1e-9).empty());
  EXPECT_TRUE(SagTable(sphere, 0.0, -6.0, 0.1).empty());
}

TEST(AsphereTables, CutPadAndShiftTheResidual) {
  // Heights 0, 10, 20 ... 100 um over 0 to 1 mm, the apex at 0.4 mm: height 40 + 100 x there.
  std::vector<double> z;
  for (int i = 0; i <= 10; ++i) z.push_back(10.0 * i);
  struct Case {
    double side;
    ResidualPadding padding;
    std::size_t rows;
    double firstX, firstUM, lastUM;
    bool exceeds;
  };
  const Case cases[] = {
      {0.3, ResidualPadding::kNone, 13, -0.3, 10.0, 70.0, false},
      {0.4, ResidualPadding::kNone, 17, -0.4, 0.0, 80.0, false},
      {0.7, ResidualPadding::kNone, 21, -0.4, 0.0, 100.0, true},
      {0.7, ResidualPadding::kZero, 29, -0.7, 0.0, 0.0, true},
      {0.7, ResidualPadding::kNearest, 29, -0.7, 0.0, 100.0, true},
  };
  for (const Case& c : cases) {
    const auto table = MakeResidualTable(z, 100.0, 0.4, {c.side, 0.05, c.padding, 3.0});
    ASSERT_TRUE(table);
    EXPECT_EQ(table->exceedsData, c.exceeds) << c.side;
    ASSERT_EQ(table->rows.size(), c.rows) << c.side;
    EXPECT_TRUE(Near(table->rows.front().xMM, c.firstX, 1e-12));
    EXPECT_TRUE(Near(table->rows.front().zMM, 0.001 * (c.firstUM + 3.0), 1e-12));
    EXPECT_TRUE(Near(table->rows.back().zMM, 0.001 * (c.lastUM + 3.0), 1e-12));
    for (const TableRow& row : table->rows) {
      if (row.xMM < -0.4 || row.xMM > 0.6) continue;
      EXPECT_TRUE(Near(row.zMM, 0.001 * (43.0 + 100.0 * row.xMM), 1e-12)) << row.xMM;
    }
  }
  EXPECT_FALSE(MakeResidualTable(z, 100.0, 0.4, {0.3, 0.0}));
  EXPECT_FALSE(MakeResidualTable(z, 100.0, 0.4, {0.0, 0.1}));
  EXPECT_FALSE(MakeResidualTable({}, 100.0, 0.4, {0.3, 0.1}));
  EXPECT_FALSE(MakeResidualTable(z, 100.0, std::numeric_limits<double>::quiet_NaN(), {0.3, 0.1}));
}

}  // namespace
}  // namespace texturon
