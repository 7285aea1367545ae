// SPDX-License-Identifier: Apache-2.0

#include "presentation/cursor_measures.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

#include "base/counter_random.h"
#include "formats/import.h"

namespace texturon {
namespace {

std::vector<double> Heights(const std::function<double(double)>& of) {
  std::vector<double> heights(1000);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = of(2.0 * static_cast<double>(i));
  return heights;
}

TEST(CursorMeasures, StepAngleAndRadiusAreThoseOfTheShape) {
  // A plateau of 3 um between 400 and 1000 um, on a ground that rises by 1 in 100.
  const auto step =
      MeasureBetween(Heights([](double x) { return 0.01 * x + (x >= 400 && x <= 1000 ? 3.0 : 0.0); }), 2.0, 200, 500);
  ASSERT_TRUE(step && step->stepUM);
  EXPECT_NEAR(*step->stepUM, 3.0, 1e-9);
  EXPECT_NEAR(*step->distanceUM, 3.0 * std::cos(std::atan(0.01)), 1e-9);
  EXPECT_NEAR(step->angleDegrees, std::atan(0.01) * 180.0 / 3.141592653589793, 1e-9);
  EXPECT_NEAR(step->lineUM.second, 13.0, 1e-9);
  EXPECT_FALSE(step->radiusMM) << "a straight line has none";
  for (const double sign : {1.0, -1.0}) {
    const auto arc = MeasureBetween(
        Heights([sign](double x) { return 7.0 + sign * std::sqrt(25e6 - (x - 900.0) * (x - 900.0)); }), 2.0, 100, 900);
    ASSERT_TRUE(arc && arc->radiusMM);
    EXPECT_NEAR(*arc->radiusMM, sign * 5.0, 1e-6) << "a dome is positive";
  }
  // Noise of the sides and of the plateau goes into the means alone.
  const auto noisy = MeasureBetween(
      Heights([](double x) { return std::cos(x) + (x >= 400 && x <= 1000 ? -2.0 : 0.0); }), 2.0, 200, 500);
  EXPECT_NEAR(*noisy->stepUM, -2.0, 0.02);
  EXPECT_FALSE(MeasureBetween(Heights([](double) { return 1.0; }), 2.0, 0, 999)->stepUM) << "there are no sides";
  EXPECT_FALSE(MeasureBetween(Heights([](double x) { return x; }), 2.0, 0, 990)->stepUM) << "hardly any";
  EXPECT_FALSE(MeasureBetween(Heights([](double) { return 1.0; }), 2.0, 5, 6));
  EXPECT_FALSE(MeasureBetween({}, 2.0, 0, 0));
  // An arc of 0.5 um in 2 mm under a texture of 2 um: its circle is found. Under twenty times the texture there is
  // none.
  const auto worn = [](double radius, double amplitude) {
    return MeasureBetween(Heights([=](double x) {
                            return 0.02 * x - (x - 1000.0) * (x - 1000.0) / (2.0 * radius) +
                                   amplitude * std::sin(x / 4.1) * std::cos(x / 90.0);
                          }),
                          2.0, 0, 999);
  };
  ASSERT_TRUE(worn(1e6, 1.0)->radiusMM);
  EXPECT_NEAR(*worn(1e6, 1.0)->radiusMM, 1000.0, 100.0);
  EXPECT_FALSE(worn(1e6, 20.0)->radiusMM);
}

TEST(CursorMeasures, RadiusOfASteepTiltedArcIsThatOfTheCircle) {
  for (const double radius : {1010.0, 1500.0, 1e5}) {
    const auto arc = MeasureBetween(
        Heights([radius](double x) { return -std::sqrt(radius * radius - (x - 990.0) * (x - 990.0)); }), 2.0, 0, 990);
    ASSERT_TRUE(arc && arc->radiusMM) << radius;
    EXPECT_NEAR(*arc->radiusMM, -1e-3 * radius, 1e-8 * radius);
  }
}

TEST(CursorMeasures, ThereIsARadiusWhereACircleDescribesTheStretch) {
  constexpr std::size_t kCount = 4000;
  constexpr double kStepUM = 1.0;
  const CounterRandom random(7, 0, 0);
  const auto heightsOf = [&](const std::function<double(double)>& of, double noise) {
    std::vector<double> heights(kCount);
    for (std::size_t i = 0; i < kCount; ++i) {
      heights[i] = of(static_cast<double>(i) * kStepUM - 2000.0) + noise * (random.Uniform(i) - 0.5);
    }
    return heights;
  };
  const auto sphere = [](double x) { return std::sqrt(1e10 - x * x) - 1e5 + 0.01 * x; };
  const auto step = [](double x) { return std::abs(x) < 1300.0 ? 3.0 : 0.0; };
  const auto trapezium = [](double x) { return std::min(10.0 - std::abs(x) / 200.0, 7.0); };
  struct Case {
    const char* name;
    std::vector<double> heights;
    double spacingUM;
    double radiusMM;  ///< 0: none
    bool isBent;
  };
  const auto sample = [](const char* name) {
    SilentPrompts nobody;
    return LoadProfileFile(std::filesystem::path(TEXTURON_SOURCE_DIR) / "samples" / name, {}, nobody).profile.heightsUM;
  };
  const std::vector<double> ground = sample("ground.lmt");
  const Case cases[] = {
      {"sphere", heightsOf(sphere, 0.0), kStepUM, 100.0, true},
      {"sphere with noise", heightsOf(sphere, 2.0), kStepUM, 100.0, true},
      {"arc with grooves", sample("arc.lmt"), 0.5, 12.0, true},
      {"step", heightsOf(step, 0.0), kStepUM, 0.0, true},
      {"step with noise", heightsOf(step, 0.1), kStepUM, 0.0, true},
      {"trapezium", heightsOf(trapezium, 0.1), kStepUM, 0.0, true},
      {"roof", heightsOf([](double x) { return -std::abs(x); }, 1.0), kStepUM, 0.0, true},
      {"waves of a ground surface", {ground.begin() + 2000, ground.begin() + 6000}, 0.5, 0.0, true},
      {"tilted", heightsOf([](double x) { return 0.1 * x; }, 1.0), kStepUM, 0.0, false},
      {"flat", heightsOf([](double) { return 0.0; }, 1.0), kStepUM, 0.0, false},
  };
  for (const Case& shape : cases) {
    const auto measures = MeasureBetween(shape.heights, shape.spacingUM, 0, shape.heights.size() - 1);
    ASSERT_TRUE(measures) << shape.name;
    EXPECT_EQ(measures->radiusMM || measures->shareOfCircle, shape.isBent) << shape.name;
    EXPECT_NEAR(measures->radiusMM.value_or(0.0), shape.radiusMM, 0.015 * shape.radiusMM) << shape.name;
  }
  // A bend of 1 um under noise of 2 um: what is left is the noise's.
  const auto flat = MeasureBetween(heightsOf([](double x) { return -x * x / 4e6; }, 2.0), kStepUM, 0, kCount - 1);
  EXPECT_NEAR(flat->radiusMM.value_or(0.0), 2000.0, 150.0);
}

}  // namespace
}  // namespace texturon
