// SPDX-License-Identifier: Apache-2.0

#include "signal/envelope/morphological_envelope.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

#include "support/near.h"

namespace texturon {
namespace {

std::vector<double> Closing(const std::vector<double>& z, double spacing, double radius) {
  std::vector<double> envelope(z.size(), -77.0);
  EXPECT_TRUE(ClosingEnvelope(z, envelope, spacing, radius));
  return envelope;
}

/// The disc lowered onto the profile at positions `fine` times denser than the points, and what its underside leaves.
std::vector<double> RolledDisc(const std::vector<double>& z, double spacing, double radius, int fine) {
  const auto n = static_cast<int>(z.size());
  const auto drop = [radius](double x) { return std::sqrt(std::max(0.0, radius * radius - x * x)); };
  std::vector<double> envelope(z.size(), INFINITY);
  const int reach = static_cast<int>(radius / spacing * fine) + 1;
  for (int k = -reach; k <= (n - 1) * fine + reach; ++k) {
    const double x = k * spacing / fine;
    double centre = -INFINITY;
    for (int i = 0; i < n; ++i) {
      if (std::abs(i * spacing - x) <= radius)
        centre = std::max(centre, z[static_cast<std::size_t>(i)] + drop(i * spacing - x));
    }
    for (int i = 0; i < n; ++i) {
      if (std::abs(i * spacing - x) > radius) continue;
      double& e = envelope[static_cast<std::size_t>(i)];
      e = std::min(e, centre - drop(i * spacing - x));
    }
  }
  return envelope;
}

TEST(MorphologicalEnvelope, IsWhatARolledDiscLeaves) {
  std::mt19937_64 random(12);
  std::normal_distribution<double> noise;
  for (const double radius : {6.0, 20.0, 90.0}) {
    std::vector<double> z(160);
    double walk = 0.0;
    for (double& height : z) height = walk += 0.3 * noise(random);
    const std::vector<double> envelope = Closing(z, 0.5, radius);
    // The disc of the twin stands on a grid, so its traces are a little high, never low.
    const std::vector<double> twin = RolledDisc(z, 0.5, radius, 200);
    for (std::size_t i = 0; i < z.size(); ++i) {
      EXPECT_GE(envelope[i], z[i]);
      EXPECT_LE(envelope[i], twin[i] + 1e-9) << radius << " at " << i;
      EXPECT_GE(envelope[i], twin[i] - 2e-3) << radius << " at " << i;
    }
  }
}

TEST(MorphologicalEnvelope, BridgesAValleyByTheArcOfTheDisc) {
  // Rims at 0 um, 20 um apart; a disc of 1 m hangs r - sqrt(r^2 - 10^2) below them.
  for (const double radius : {11.0, 1e3, 1e6}) {
    std::vector<double> z(60, 0.0);
    for (std::size_t i = 21; i < 40; ++i) z[i] = -8.0;
    const std::vector<double> envelope = Closing(z, 1.0, radius);
    for (std::size_t i = 0; i < z.size(); ++i) {
      const long double u = static_cast<long double>(i) - 30.0L;
      const long double r = radius;
      const long double sag = std::sqrt(r * r - u * u) - std::sqrt(r * r - 100.0L);
      const double expected = i > 20 && i < 40 ? -static_cast<double>(sag) : 0.0;
      EXPECT_TRUE(Near(envelope[i], expected, 1e-9, 1e-4)) << radius << " at " << i;
    }
  }
  std::vector<double> wide(60, 0.0);
  for (std::size_t i = 21; i < 40; ++i) wide[i] = -8.0;
  EXPECT_EQ(Closing(wide, 1.0, 9.9)[30], -8.0) << "a valley wider than the disc is followed";
}

TEST(MorphologicalEnvelope, EqualsTheProfileWhereEveryPointIsAContact) {
  std::vector<double> slope(500);
  std::vector<double> cap(500);
  for (std::size_t i = 0; i < slope.size(); ++i) {
    slope[i] = 0.37 * static_cast<double>(i);
    const double x = static_cast<double>(i) - 250.0;
    cap[i] = -1e-3 * x * x;  // convex upwards
  }
  EXPECT_EQ(Closing(slope, 0.5, 1e6), slope);
  EXPECT_EQ(Closing(cap, 0.5, 1e6), cap);
  for (std::size_t n = 0; n < 3; ++n) {
    const std::vector<double> few(n, 2.0);
    EXPECT_EQ(Closing(few, 0.5, 10.0), few);
  }
  for (const double radius : {0.0, -5.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(Closing(slope, 0.5, radius), slope) << radius;
  }
}

TEST(MorphologicalEnvelope, OpensAsItClosesTheTurnedProfileAndIsIdempotent) {
  std::mt19937_64 random(5);
  std::normal_distribution<double> noise;
  std::vector<double> z(2000);
  for (double& height : z) height = noise(random);
  std::vector<double> turned = z;
  for (double& height : turned) height = -height;
  std::vector<double> opening(z.size());
  ASSERT_TRUE(OpeningEnvelope(z, opening, 0.5, 5000.0));
  std::vector<double> closing = Closing(turned, 0.5, 5000.0);
  for (double& height : closing) height = -height;
  EXPECT_EQ(opening, closing);
  const std::vector<double> once = Closing(z, 0.5, 5000.0);
  EXPECT_TRUE(AllNear(Closing(once, 0.5, 5000.0), once, 1e-9));
}

TEST(MorphologicalEnvelope, KeepsOutOfTroubleWithHugeHeights) {
  std::vector<double> z(50, 0.0);
  for (std::size_t i = 0; i < z.size(); i += 3) z[i] = i % 2 == 0 ? 1e300 : -std::numeric_limits<double>::max();
  const std::vector<double> envelope = Closing(z, 0.5, 1e6);
  for (std::size_t i = 0; i < z.size(); ++i) EXPECT_GE(envelope[i], z[i]);
}

}  // namespace
}  // namespace texturon
