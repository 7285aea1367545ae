// SPDX-License-Identifier: Apache-2.0

#include "signal/form/minimise.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "support/near.h"
#include "support/recording_progress.h"

namespace texturon {
namespace {

double Square(double x) {
  return x * x;
}
double Valley(std::span<const double> p) {  // a bent, narrow valley with its minimum at (1, 1)
  return 100.0 * Square(p[1] - p[0] * p[0]) + Square(1.0 - p[0]);
}

TEST(Minimise, FindsMinimaThatAreKnown) {
  struct Case {
    const char* name;
    MeritFunction merit;
    std::vector<double> start, minimum;
    double tolerance, accuracy;
  };
  const Case cases[] = {
      {"bowl",
       [](auto p) { return 3.0 + Square(p[0] - 2.0) + 10.0 * Square(p[1] + 1.0); },
       {0, 0},
       {2, -1},
       1e-6,
       1e-3},
      {"leaning bowl",
       [](auto p) { return Square(p[0] + p[1] - 3.0) + 0.1 * Square(p[0] - p[1] - 1.0); },
       {-5, 40},
       {2, 1},
       1e-6,
       1e-6},
      {"bent valley", Valley, {-1.2, 1}, {1, 1}, 1e-12, 1e-6},
      {"four wells of a fourth power",
       [](auto p) { return Square(Square(p[0] - 1e3)) + Square(p[1]); },
       {0, 3},
       {1000, 0},
       1e-6,
       1e-2},
      {"kinked", [](auto p) { return std::abs(p[0] - 0.3) + 2.0 * std::abs(p[1]); }, {1, 1}, {0.3, 0}, 1e-6, 1e-3},
      {"already there", [](auto p) { return Square(p[0]) + Square(p[1]); }, {0, 0}, {0, 0}, 1e-6, 0.0},
  };
  for (const Case& c : cases) {
    std::vector<double> point = c.start;
    RecordingProgress progress;
    const auto result = Minimise(c.merit, point, std::vector<double>{0.1, 0.1}, c.tolerance, &progress);
    EXPECT_EQ(result.stop, MinimiseStop::kConverged) << c.name;
    EXPECT_GT(result.iterations, 0) << c.name;
    EXPECT_TRUE(AllNear(point, c.minimum, c.accuracy)) << c.name;
    EXPECT_EQ(result.merit, c.merit(point)) << c.name;
    for (std::size_t i = 0; i < progress.shown.size(); ++i) {
      EXPECT_GE(progress.shown[i], 0) << c.name;
      EXPECT_LE(progress.shown[i], 100) << c.name;
      EXPECT_TRUE(i == 0 || progress.shown[i] != progress.shown[i - 1]) << c.name << ": only when it changes";
    }
  }
}

TEST(Minimise, StopsForFourReasons) {
  const std::vector<double> steps = {0.1, 0.1};
  std::vector<double> point = {-1.2, 1.0};
  RecordingProgress closedAtOnce(1);
  EXPECT_EQ(Minimise(Valley, point, steps, 1e-6, &closedAtOnce).stop, MinimiseStop::kCancelled);
  EXPECT_LT(Valley(point), Valley(std::vector<double>{-1.2, 1.0})) << "what was gained stays";

  // A tolerance that nothing meets.
  const auto aboveOne = [](std::span<const double> p) { return 1.0 + Valley(p); };
  const auto endless = Minimise(aboveOne, point, steps, -1.0, nullptr);
  EXPECT_EQ(endless.stop, MinimiseStop::kIterationLimit);
  EXPECT_EQ(endless.iterations, kMinimiseIterationLimit);
  EXPECT_FALSE(endless.Succeeded());

  const auto undefined = [](std::span<const double>) { return std::numeric_limits<double>::quiet_NaN(); };
  EXPECT_EQ(Minimise(undefined, point, steps, 1e-6, nullptr).stop, MinimiseStop::kNotFinite);
}

}  // namespace
}  // namespace texturon
