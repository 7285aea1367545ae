// SPDX-License-Identifier: Apache-2.0

#include "parameters/motifs.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "parameters/motif_finder.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

/// A profile of straight flanks, ten points each, through the given turning points.
std::vector<double> Zigzag(const std::vector<double>& turns) {
  std::vector<double> z = {turns[0]};
  for (std::size_t t = 1; t < turns.size(); ++t) {
    for (int k = 1; k <= 10; ++k) z.push_back(turns[t - 1] + (turns[t] - turns[t - 1]) * k / 10.0);
  }
  return z;
}

/// Peaks and dales in multiples of ten points.
std::vector<std::vector<int>> Places(const std::vector<Motif>& motifs) {
  std::vector<std::vector<int>> places;
  for (const Motif& m : motifs) places.push_back({m.firstPeak / 10, m.dale / 10, m.lastPeak / 10});
  return places;
}

TEST(MotifFinder, JoinsPairsThatMeetAllFourConditions) {
  struct Case {
    const char* what;
    std::vector<double> turns;
    double length;  // in points
    bool leftToRight, freesShort;
    std::vector<std::vector<int>> expected;
  };
  const Case cases[] = {
      {"joined over a shallow peak", {0, 10, 0, 5, 0, 10, 0}, 1000, false, false, {{1, 2, 5}}},
      {"width: 40 points at most 39", {0, 10, 0, 5, 0, 10, 0}, 39, false, false, {{1, 2, 3}, {3, 4, 5}}},
      {"envelope: the common peak is above both", {0, 9, 5, 10, 2, 9, 0}, 1000, false, false, {{1, 2, 3}, {3, 4, 5}}},
      {"enlargement: T falls from 9 to 8", {0, 10, 0, 9, 2, 8, -1}, 1000, false, false, {{1, 2, 3}, {3, 4, 5}}},
      {"relative depth: 7 of 10", {0, 10, 0, 7, 0, 10, 0}, 1000, false, false, {{1, 2, 3}, {3, 4, 5}}},
      {"relative depth: 6 of 10", {0, 10, 0, 6, 0, 10, 0}, 1000, false, false, {{1, 2, 5}}},
      {"a tremor below 5 % is no peak", {0, 10, 0, 0.3, 0, 10, 0}, 1000, false, false, {{1, 2, 5}}},
      {"until none is left", {0, 10, 0, 6, 4, 5, 0, 10, 0}, 1000, false, false, {{1, 2, 7}}},
      // From the left 1-3 is joined with 3-5 at once; the common peak of 3-5 and 5-7 is shallower. All three together
      // are longer than 55 points.
      {"from the left", {0, 10, 3.5, 6, 0, 8, 7, 10, 0}, 55, true, false, {{1, 4, 5}, {5, 6, 7}}},
      {"the shallowest first", {0, 10, 3.5, 6, 0, 8, 7, 10, 0}, 55, false, false, {{1, 2, 3}, {3, 4, 7}}},
      {"width: 40 points at most 40", {0, 10, 0, 5, 0, 10, 0}, 40, false, false, {{1, 2, 5}}},
      {"short is less than half as long", {0, 9, 6, 9.5, 3, 9, 0}, 60, false, true, {{1, 2, 3}, {3, 4, 5}}},
      {"5 % of the mean over segments of 19 points, a third of which hold no high peak",
       {0, 10, 0, 0.4, 0, 10, 0, 0.4, 0, 10, 0},
       38,
       false,
       false,
       {{1, 2, 3}, {3, 4, 5}, {5, 6, 7}, {7, 8, 9}}},
      {"one peak", {0, 10, 0}, 1000, false, false, {}},
      {"monotone", {0, 10}, 1000, false, false, {}},
      {"flat", {3, 3, 3}, 1000, false, false, {}},
      {"short motifs freed of the envelope", {0, 9, 6, 9.5, 3, 9, 0}, 1000, false, true, {{1, 4, 5}}},
  };
  for (const Case& c : cases) {
    const auto motifs = FindMotifs(Zigzag(c.turns), 1.0, {c.length, c.leftToRight, c.freesShort});
    EXPECT_EQ(Places(motifs), c.expected) << c.what;
  }
}

/// The rule taken at its word, motif by motif over all pairs: turning points 10 apart, all far enough from each other.
std::vector<std::vector<int>> JoinedOneByOne(const std::vector<double>& turns, double length, bool freesShort) {
  struct Plain {
    int first, dale, last;
  };
  std::vector<Plain> motifs;
  const auto at = [&turns](int t) { return turns[static_cast<std::size_t>(t)]; };
  const auto depth = [&](const Plain& m) { return std::min(at(m.first), at(m.last)) - at(m.dale); };
  for (int t = 1; t + 2 < static_cast<int>(turns.size()); t += 2) motifs.push_back({t, t + 1, t + 2});
  while (true) {
    std::size_t shallowest = 0;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < motifs.size(); ++i) {
      const Plain &a = motifs[i - 1], &b = motifs[i];
      const Plain joined = {a.first, at(b.dale) < at(a.dale) ? b.dale : a.dale, b.last};
      const int points = 10 * (joined.last - joined.first);
      const double common = at(b.first) - std::max(at(a.dale), at(b.dale));
      const bool isInEnvelope = at(b.first) <= std::max(at(a.first), at(b.last));
      if (points > length || !(isInEnvelope || (freesShort && points < 0.5 * length))) continue;
      if (depth(joined) < std::max(depth(a), depth(b)) || common > 0.6 * depth(joined) || common >= least) continue;
      shallowest = i;
      least = common;
    }
    if (shallowest == 0) break;
    Plain& left = motifs[shallowest - 1];
    const Plain right = motifs[shallowest];
    left = {left.first, at(right.dale) < at(left.dale) ? right.dale : left.dale, right.last};
    motifs.erase(motifs.begin() + static_cast<std::ptrdiff_t>(shallowest));
  }
  std::vector<std::vector<int>> places;
  for (const Plain& m : motifs) places.push_back({m.first, m.dale, m.last});
  return places;
}

TEST(MotifFinder, JoinsInOneWalkWhatOneByOneGives) {
  std::mt19937 random(7);  // heights of few values: many common peaks are equally deep
  for (int k = 0; k < 3000; ++k) {
    std::vector<double> turns = {-10};
    while (turns.size() < 60) {
      turns.push_back(2.0 + static_cast<double>(random() % 7));
      turns.push_back(-static_cast<double>(random() % 7));
    }
    turns.push_back(-10);
    turns.erase(turns.end() - 2);
    const double length = 10.0 * static_cast<double>(4 + random() % 40);
    const bool freesShort = k % 3 == 0;
    const auto found = Places(FindMotifs(Zigzag(turns), 1.0, {length, false, freesShort}));
    ASSERT_EQ(found, JoinedOneByOne(turns, length, freesShort)) << k;
  }
}

TEST(MotifFinder, DoesNotDependOnTheDirectionAndDrawsItsLines) {
  const std::vector<double> z = RandomSurface(20'000, 30);
  const auto motifs = FindMotifs(z, 0.5, {500.0, false, false});
  ASSERT_GT(motifs.size(), 10u);
  const auto back = FindMotifs(std::vector<double>(z.rbegin(), z.rend()), 0.5, {500.0, false, false});
  ASSERT_EQ(back.size(), motifs.size());
  for (std::size_t k = 0; k < motifs.size(); ++k) {
    EXPECT_EQ(back[back.size() - 1 - k].dale, 19'999 - motifs[k].dale);
    EXPECT_EQ(back[back.size() - 1 - k].lastPeak, 19'999 - motifs[k].firstPeak);
    EXPECT_TRUE(k == 0 || motifs[k].firstPeak == motifs[k - 1].lastPeak) << k;
  }
  const auto line = MotifLine(z, motifs);
  const auto envelope = UpperEnvelope(z, motifs);
  ASSERT_EQ(line.size(), static_cast<std::size_t>(motifs.back().lastPeak - motifs.front().firstPeak + 1));
  ASSERT_EQ(envelope.size(), line.size());
  const auto at = [&](std::int32_t i) { return static_cast<std::size_t>(i - motifs.front().firstPeak); };
  for (const Motif& m : motifs) {
    EXPECT_EQ(line[at(m.dale)], z[static_cast<std::size_t>(m.dale)]);
    EXPECT_EQ(line[at(m.lastPeak)], envelope[at(m.lastPeak)]);
    const double along = static_cast<double>(m.dale - m.firstPeak) / (m.lastPeak - m.firstPeak);
    const double expected =
        z[static_cast<std::size_t>(m.firstPeak)] * (1.0 - along) + z[static_cast<std::size_t>(m.lastPeak)] * along;
    EXPECT_TRUE(Near(envelope[at(m.dale)], expected, 1e-12));
  }
}

TEST(MotifRows, MeasureHandBuiltMotifs) {
  // Grooves 10 deep every 20 points (0.1 mm) whose rims ride on a wave of 5 um over 20 grooves.
  std::vector<double> turns;
  for (int g = 0; g < 100; ++g) {
    turns.push_back(-10.0);
    turns.push_back(2.5 * std::cos(2.0 * std::numbers::pi * (g + 0.5) / 20.0));
  }
  turns.push_back(-10.0);
  RowCase row{.heights = Zigzag(turns), .letter = 'P', .spacingMM = 0.005};
  const auto value = [&row](const char* name) {
    const ParameterProfile profile('P', row.heights, {5.0, 1.0, 1.0});
    return FindWholeName(name)({profile, row.settings});
  };
  EXPECT_TRUE(Near(*value("AR"), 100.0, 1e-12));
  EXPECT_TRUE(Near(*value("R"), 10.0, 1e-2)) << "mean rim height is 0";
  EXPECT_TRUE(Near(*value("Rx"), 10.0 + 2.5 * std::cos(std::numbers::pi / 20.0), 1e-12)) << "within 1.65 deviations";
  const double crest = 2.5 * std::cos(std::numbers::pi / 20.0);
  EXPECT_TRUE(Near(*value("Wte"), 2.0 * crest, 1e-12));
  EXPECT_TRUE(Near(*value("W"), 2.0 * crest, 1e-12));
  EXPECT_TRUE(Near(*value("Wx"), 2.0 * crest, 1e-12));
  EXPECT_TRUE(Near(*value("AW"), 2000.0, 0.06)) << "crests are two rims wide";
  const auto waves = ComputeMotifs(Zigzag({-10, 1, -10, 5, -10, 1, -10, 5, -10, 1, -10}), 5.0, row.settings).waviness;
  EXPECT_EQ(Places(waves), (std::vector<std::vector<int>>{{3, 5, 7}}));
  // Depths of 10 and, once, 40 um in motifs of 20 points, of which no two may join.
  row.heights = Zigzag({0, 10, 0, 10, 0, 10, 0, 10, 0, 10, -30, 10, 0});
  row.settings.MotifAMM = 39 * row.spacingMM;
  EXPECT_TRUE(Near(*value("Rx"), 16.0 + 1.65 * std::sqrt(1440.0 / 9.0), 1e-9)) << "cut there";
  row.heights.assign(500, 0.0);
  for (const char* name : {"R", "Rx", "AR", "W", "Wx", "AW", "Wte"}) EXPECT_FALSE(value(name).has_value()) << name;
}

}  // namespace
}  // namespace texturon
