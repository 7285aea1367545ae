// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/feature_segments.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "parameters/edition2021/edition_list.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

using Heights = std::vector<double>;

/// The rules written out: a list of runs, dales searched through whole for the one that goes next, crossings counted
/// from the lower peak.
class Twin {
public:
  struct Item {
    double pit, left, right;  // places
    double pitHeight, leftHeight, rightHeight;
    bool lowerIsLeft;
    double Depth() const { return std::min(leftHeight, rightHeight) - pitHeight; }
  };

  explicit Twin(const Heights& z) : z_(z) {
    std::vector<std::pair<double, double>> runs;  // middle, height
    for (std::size_t i = 0; i < z.size();) {
      std::size_t end = i;
      while (end + 1 < z.size() && z[end + 1] == z[i]) ++end;
      runs.emplace_back(0.5 * static_cast<double>(i + end), z[i]);
      i = end + 1;
    }
    std::vector<std::size_t> peaks;
    for (std::size_t r = 1; r + 1 < runs.size(); ++r) {
      if (runs[r].second > runs[r - 1].second && runs[r].second > runs[r + 1].second) peaks.push_back(r);
    }
    for (std::size_t p = 0; p + 1 < peaks.size(); ++p) {
      const auto lowest =
          std::min_element(runs.begin() + static_cast<long>(peaks[p]), runs.begin() + static_cast<long>(peaks[p + 1]),
                           [](const auto& a, const auto& b) { return a.second < b.second; });
      const auto& left = runs[peaks[p]];
      const auto& right = runs[peaks[p + 1]];
      items.push_back({lowest->first, left.first, right.first, lowest->second, left.second, right.second,
                       left.second <= right.second});
    }
  }

  double Value(const Item& item, FeatureAttribute attribute) const {
    if (attribute == FeatureAttribute::kLocalDepth) return item.Depth();
    const double level = item.lowerIsLeft ? item.leftHeight : item.rightHeight;
    const double a = item.lowerIsLeft ? item.left : item.right;
    const double far = item.lowerIsLeft ? item.right : item.left;
    const int step = far > a ? 1 : -1;
    auto i = static_cast<long>(step > 0 ? std::floor(a) : std::ceil(a));
    while (At(i) == level && At(i + step) == level) i += step;
    double farthest = a, area = 0.0, areaThere = 0.0, line = std::abs(static_cast<double>(i) - a), lineThere = 0.0;
    int crossings = 0;
    bool isBelow = false;
    for (; static_cast<double>(i) * step < far * step; i += step) {
      const double from = At(i), to = At(i + step);
      const double before = isBelow && to >= level ? (level - from) / (to - from) : 1.0;
      if (isBelow && to >= level) {
        ++crossings;
        farthest = static_cast<double>(i) + step * before;
        areaThere = area + 0.5 * (level - from) * before;
        lineThere = line + before * std::hypot(1.0, to - from);
      } else if (!isBelow && to < level && crossings > 0) {
        ++crossings;
      }
      // Below the level, of a straight piece.
      const int parts = 2000;
      if (attribute == FeatureAttribute::kVolume) {
        for (int k = 0; k < parts; ++k) area += std::max(0.0, level - (from + (to - from) * (k + 0.5) / parts)) / parts;
      }
      line += std::hypot(1.0, to - from);
      isBelow = to < level;
    }
    EXPECT_EQ(crossings % 2, 1);
    if (attribute == FeatureAttribute::kVolume) return areaThere / static_cast<double>(z_.size());
    return 0.001 * (attribute == FeatureAttribute::kWidth ? std::abs(farthest - a) : lineThere);
  }

  void Prune(FeatureAttribute attribute, double threshold) {
    while (!items.empty()) {
      std::size_t next = 0;
      for (std::size_t i = 1; i < items.size(); ++i) {
        if (Value(items[i], attribute) < Value(items[next], attribute)) next = i;
      }
      if (!(Value(items[next], attribute) < threshold)) return;
      const Item gone = items[next];
      if (gone.lowerIsLeft && next > 0) {
        Item& merged = items[next - 1];
        merged.right = gone.right;
        merged.rightHeight = gone.rightHeight;
        merged.lowerIsLeft = merged.leftHeight <= merged.rightHeight;
      } else if (!gone.lowerIsLeft && next + 1 < items.size()) {
        Item& merged = items[next + 1];
        merged.left = gone.left;
        merged.leftHeight = gone.leftHeight;
        merged.lowerIsLeft = merged.leftHeight < merged.rightHeight;
      }
      items.erase(items.begin() + static_cast<long>(next));
    }
  }

  std::vector<Item> items;

private:
  double At(long i) const { return z_[static_cast<std::size_t>(i)]; }
  const Heights& z_;
};

Heights FullOfTies(std::size_t n, std::mt19937& random) {
  Heights z(n);
  for (double& height : z) height = static_cast<double>(random() % 7);
  return z;
}

TEST(FeatureSegments, AgreeWithTheRulesOnRecordsFullOfTies) {
  std::mt19937 random(11);
  for (int round = 0; round < 300; ++round) {
    const bool hasTies = round % 3 != 0;
    Heights z = FullOfTies(40 + random() % 40, random);
    for (double& height : z) height += hasTies ? 0.0 : 1e-6 * static_cast<double>(random() % 1000);
    const DaleMeasure measure(z, 1.0);
    for (const auto& [attribute, threshold, tolerance] :
         {std::tuple(FeatureAttribute::kLocalDepth, static_cast<double>(1 + random() % 4), 0.0),
          std::tuple(FeatureAttribute::kWidth, 0.0005 * static_cast<double>(random() % 9), 1e-12),
          std::tuple(FeatureAttribute::kLineLength, 0.002 * static_cast<double>(random() % 7) + 1e-4, 1e-12)}) {
      // Lengths are sums: which of two equal ones is the smaller is a matter of rounding.
      if (hasTies && attribute == FeatureAttribute::kLineLength) continue;
      Twin twin(z);
      twin.Prune(attribute, threshold);
      std::vector<Dale> dales = FindDales(z);
      PruneDales(dales, measure, attribute, threshold);
      ASSERT_EQ(dales.size(), twin.items.size()) << round;
      for (std::size_t i = 0; i < dales.size(); ++i) {
        EXPECT_EQ(dales[i].pit.Place(), twin.items[i].pit);
        EXPECT_EQ(dales[i].left.Place(), twin.items[i].left);
        EXPECT_EQ(dales[i].right.Place(), twin.items[i].right);
        EXPECT_EQ(dales[i].lowerIsLeft, twin.items[i].lowerIsLeft);
        for (const FeatureAttribute each : {attribute, FeatureAttribute::kWidth, FeatureAttribute::kLineLength}) {
          EXPECT_TRUE(Near(measure.Of(dales[i], each), twin.Value(twin.items[i], each), 1e-12));
        }
        if (round >= 10) continue;  // its area is added up in small pieces
        EXPECT_TRUE(Near(measure.Of(dales[i], FeatureAttribute::kVolume),
                         twin.Value(twin.items[i], FeatureAttribute::kVolume), 1e-4));
      }
    }
  }
}

TEST(FeatureSegments, KeepWhatEqualsTheThreshold) {
  const Heights z = {0, 4, 2, 3, 0, 5, 1};  // dales 1 and 3 deep
  const DaleMeasure measure(z, 1.0);
  for (const auto& [threshold, left] :
       {std::pair(1.0, 2u), std::pair(1.0000001, 1u), std::pair(4.0, 1u), std::pair(4.1, 0u)}) {
    std::vector<Dale> dales = FindDales(z);
    PruneDales(dales, measure, FeatureAttribute::kLocalDepth, threshold);
    EXPECT_EQ(dales.size(), left) << threshold;
  }
  EXPECT_TRUE(FindDales(Heights{1, 0, 1}).empty()) << "ends are no peaks";
}

TEST(FeatureSegments, FindTheEvenestStage) {
  // Ten dales 5 deep, between them small ones of depths that vary.
  Heights z;
  for (int i = 0; i < 10; ++i) z.insert(z.end(), {0.0, 5.0, 4.9 - 0.11 * i, 4.95, -0.001 * i});
  z.insert(z.end(), {0.0, 5.0, 0.0});
  const DaleMeasure measure(z, 1.0);
  const std::vector<Dale> dales = FindDales(z);
  const double threshold = EvenestThreshold(dales, measure, FeatureAttribute::kLocalDepth);
  // Stage by stage by the twin.
  double best = 3.0, expected = 100.0;
  Twin twin(z);
  while (twin.items.size() > 3) {
    double mean = 0.0, squares = 0.0, smallest = INFINITY;
    const auto n = static_cast<double>(twin.items.size());
    for (const auto& item : twin.items) mean += item.Depth() / n;
    for (const auto& item : twin.items) squares += std::pow(item.Depth() - mean, 2);
    for (const auto& item : twin.items) smallest = std::min(smallest, item.Depth());
    if (const double ratio = mean / std::sqrt(squares / (n - 1.0)); ratio > best) {
      best = ratio;
      expected = smallest;
    }
    const std::size_t size = twin.items.size();
    for (double above = std::nextafter(smallest, 1e9); twin.items.size() == size;)
      twin.Prune(FeatureAttribute::kLocalDepth, above);
  }
  EXPECT_TRUE(Near(threshold, expected, 1e-12));
  EXPECT_LT(threshold, 100.0);
}

TEST(FeatureRows, OfAProfileOfParabolas) {
  // Dales of z = 0.02 (i - 25)^2 - 5 by 50 points with peaks of 7.5 um between them, curvature 0.04 / um at spacing 1.
  RowCase row{.heights = {}, .spacingMM = 0.001};
  for (int k = 0; k < 8; ++k) {
    for (int i = 0; i < 50; ++i) row.heights.push_back(0.02 * (i - 25) * (i - 25) - 5.0 - 0.1 * k);
  }
  const ParameterProfile profile('R', row.heights, {1.0, 0.08, 0.08});
  const auto value = [&](const char* name) {
    const EditionName read = ParseEditionName(name);
    EXPECT_EQ(read.fault, "");
    return ComputeEditionRow(read, {profile, row.settings});
  };
  // The first and the last dale end with the record: their outer ends are no peaks.
  EXPECT_TRUE(Near(*value("Rvd"), 6.0 / 0.04, 1e-12));
  EXPECT_TRUE(Near(*value("Rmvc"), 0.04, 1e-9));
  EXPECT_TRUE(Near(*value("R5v"), (5.6 + 5.5 + 5.4 + 5.3 + 5.2) / 5.0, 1e-12));
  EXPECT_TRUE(Near(*value("R10z"), *value("R5p") + *value("R5v"), 1e-12));
  EXPECT_TRUE(Near(*value("FC; V; None; Bot 1; PVh; Max"), 5.6, 1e-12));
  EXPECT_TRUE(Near(*value("FC; V; None; All; Count; Sum"), 6.0, 1e-12));
  EXPECT_TRUE(Near(*value("FC; V; None; All; PVh; Perc 5.25"), 4.0 / 6.0, 1e-12));
  EXPECT_TRUE(Near(*value("FC; V; None; All; PVh; StdDev"), 0.1 * std::sqrt(3.5), 1e-12));
  EXPECT_TRUE(Near(*value("FC; D; None; Open 7; PVh; Max"), 5.6, 1e-12)) << "its lower peak at 6.8";
  EXPECT_TRUE(Near(*value("FC; D; None; Closed 6.95; Count; Sum"), 4.0, 1e-12));
  EXPECT_TRUE(Near(*value("FC; D; Wolfprune 100; All; Count; Density"), 0.0, 1e-12));
  EXPECT_FALSE(value("FC; D; Wolfprune 100; All; HDh; Mean"));
  EXPECT_FALSE(value("FC; D; None; All; HDh; Hist"));
  // Upside down, hills are what dales were.
  Heights mirrored = row.heights;
  for (double& height : mirrored) height = -height;
  const ParameterProfile upsideDown('R', mirrored, {1.0, 0.08, 0.08});
  for (const char* rest :
       {"Wolfprune 5 %; All; HDw; Mean", "Width 2 %; All; HDv; Max", "DevLength 0.01; Open 20 %; HDl; Sum",
        "None; All; HDh; StdDev", "Wolfprune opt; All; PVh; Min"}) {
    const FeatureParameter dales = *ParseFeature("FC; D; " + std::string(rest)).feature;
    FeatureParameter hills = dales;
    hills.ofHills = true;
    hills.level = {80.0, dales.level.isPercent};
    const auto of = [](const ParameterProfile& p, const FeatureParameter& f) {
      EditionName name;
      name.feature = f;
      return ComputeEditionRow(name, {p, AnalysisSettings{}});
    };
    EXPECT_EQ(of(profile, dales).value_or(-1.0), of(upsideDown, hills).value_or(-1.0)) << rest;
  }
}

}  // namespace
}  // namespace texturon
