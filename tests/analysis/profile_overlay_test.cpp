// SPDX-License-Identifier: Apache-2.0

#include "analysis/profile_overlay.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "support/near.h"

namespace texturon {
namespace {

/// A surface that is straight between whole micrometres.
std::vector<double> Surface(std::size_t points) {
  std::mt19937 random(11);
  std::normal_distribution<double> noise;
  std::vector<double> z(points);
  double walk = 0.0;
  for (double& height : z) height = walk = 0.8 * walk + noise(random);
  return z;
}

std::vector<double> Part(const std::vector<double>& z, std::size_t from, std::size_t count, std::size_t step = 1) {
  std::vector<double> part;
  for (std::size_t i = from; i < from + count; i += step) part.push_back(z[i]);
  return part;
}

TEST(ProfileOverlay, FindsThePlacesOfPartsOfOneSurface) {
  const std::vector<double> surface = Surface(1000);
  const std::vector<double> first = Part(surface, 300, 400);
  const std::vector<double> earlier = Part(surface, 200, 400);
  std::vector<double> fine;  // half the spacing, later
  for (std::size_t i = 350; i < 600; ++i) fine.insert(fine.end(), {surface[i], 0.5 * (surface[i] + surface[i + 1])});
  const std::vector<double> flat(100, 2.0);
  std::vector<OverlaidProfile> profiles = {{first, 2.0}, {earlier, 2.0}, {fine, 1.0}, {flat, 2.0}};
  const std::vector<double> coefficients = AlignByCorrelation(profiles);
  const double starts[] = {0.0, -200.0, 100.0, 0.0};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(profiles[k].startUM, starts[k]) << k;
    EXPECT_TRUE(Near(coefficients[k], k < 3 ? 1.0 : 0.0, 1e-9)) << k;
  }
  profiles.pop_back();
  const auto band = BandOf(profiles);
  ASSERT_TRUE(band.has_value());
  EXPECT_EQ(band->mean.startUM, 100.0);
  EXPECT_EQ(band->mean.heightsUM.size(), 250u) << "the last point of the fine one is half a step on";
  for (std::size_t i = 0; i < band->mean.heightsUM.size(); ++i) {
    EXPECT_TRUE(Near(band->mean.heightsUM[i], surface[350 + i], 1e-12));
    EXPECT_TRUE(Near(band->highestUM[i] - band->lowestUM[i], 0.0, 1e-12));
  }
}

/// Height by straight lines, looked for point by point.
double Between(const OverlaidProfile& p, double x) {
  for (std::size_t i = 0; i + 1 < p.heightsUM.size(); ++i) {
    const double from = p.startUM + static_cast<double>(i) * p.spacingUM;
    if (x < from - 1e-9 || x > from + p.spacingUM + 1e-9) continue;
    return p.heightsUM[i] + (x - from) / p.spacingUM * (p.heightsUM[i + 1] - p.heightsUM[i]);
  }
  return NAN;
}

TEST(ProfileOverlay, MeanExtremesAndDifferenceAreThoseOfEachPlace) {
  const std::vector<double> surface = Surface(400);
  const std::vector<double> a = Part(surface, 0, 90), b = Part(surface, 100, 70), c = Part(surface, 200, 120);
  std::vector<OverlaidProfile> profiles = {{a, 0.5}, {b, 0.7}, {c, 0.3}};
  AlignByCursor(profiles, std::array{20.0, 12.3, 30.0});
  EXPECT_TRUE(Near(profiles[1].startUM, 7.7, 1e-12));
  const auto band = BandOf(profiles);
  const auto difference = DifferenceOf(profiles[0], profiles[1]);
  ASSERT_TRUE(band && difference);
  EXPECT_EQ(band->mean.startUM, 8.0);
  EXPECT_EQ(band->mean.heightsUM.size(), 36u) << "from 8 to 25.5 um, the last one's end at 25.7";
  EXPECT_EQ(difference->startUM, 8.0);
  EXPECT_EQ(difference->heightsUM.size(), 74u) << "to 44.5 um, where the first ends";
  for (std::size_t i = 0; i < band->mean.heightsUM.size(); ++i) {
    const double x = 8.0 + 0.5 * static_cast<double>(i);
    const double heights[] = {Between(profiles[0], x), Between(profiles[1], x), Between(profiles[2], x)};
    EXPECT_TRUE(Near(band->mean.heightsUM[i], (heights[0] + heights[1] + heights[2]) / 3.0, 1e-9)) << x;
    EXPECT_TRUE(Near(band->lowestUM[i], *std::min_element(heights, heights + 3), 1e-9)) << x;
    EXPECT_TRUE(Near(band->highestUM[i], *std::max_element(heights, heights + 3), 1e-9)) << x;
    EXPECT_TRUE(Near(difference->heightsUM[i], heights[0] - heights[1], 1e-9)) << x;
  }
  profiles[2].startUM = 1e6;
  EXPECT_FALSE(BandOf(profiles)) << "apart";
  EXPECT_FALSE(BandOf({}));
}

}  // namespace
}  // namespace texturon
