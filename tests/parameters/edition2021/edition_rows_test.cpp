// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "base/number_text.h"
#include "parameters/edition2021/crossing_parts.h"
#include "parameters/edition2021/edition_list.h"
#include "parameters/edition2021/material_rows.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

constexpr double kPi = 3.14159265358979323846;

/// A row of R by its name.
RowResult Value(std::string_view name, const RowCase& row) {
  const ParameterProfile profile(row.letter, row.heights,
                                 {row.spacingMM * 1000.0, row.samplingLengthMM, row.samplingLengthMM});
  const EditionName read = ParseEditionName(name);
  EXPECT_EQ(read.fault, "") << name;
  return ComputeEditionRow(read, {profile, row.settings});
}

std::vector<double> Sine(std::size_t n, double wavelength, double phase = 0.0) {
  std::vector<double> z(n);
  for (std::size_t i = 0; i < n; ++i) z[i] = std::sin(2.0 * kPi * static_cast<double>(i) / wavelength + phase);
  return z;
}

TEST(EditionRows, CutHillsAndDalesAtTheMeanLine) {
  struct Case {
    std::vector<double> z;
    std::vector<std::size_t> firsts, extremes;
  };
  const Case cases[] = {
      {{1, 2, -1, -3, 4}, {0, 2, 4}, {1, 3, 4}},
      {{1, 0, 0, -1}, {0, 3}, {0, 3}},  // zeros stay with what was before them
      {{1, 0, 1}, {0, 2}, {0, 2}},      // two hills in a row
      {{0, 0, 2, 2}, {0, 2}, {0, 2}},   // the first of equals; the zeros are neither
      {{-2, -2, 3, 3, 3}, {0, 2}, {0, 2}},
  };
  for (const Case& c : cases) {
    std::vector<std::size_t> firsts, extremes;
    for (const CrossingPart& part : FindCrossingParts(c.z)) {
      firsts.push_back(part.first);
      extremes.push_back(part.extreme);
    }
    EXPECT_EQ(firsts, c.firsts);
    EXPECT_EQ(extremes, c.extremes);
  }
}

TEST(EditionRows, SectionsOwnHillsByTheirSummit) {
  // Five sections of two points, the last point left over: its hill is that of point 10, in no section.
  RowCase row{.heights = {1, 3, 2, -4, -1, 2, 6, -2, 1, 0.5, 9}};
  // Hills: 3 at 1 (section 0), 6 at 6 (section 3), 9 at 10 (none). Dales: -4 at 3 (section 1), -2 at 7 (section 3).
  EXPECT_TRUE(Near(*Value("Rp", row), (3.0 + 6.0) / 5.0, 1e-15));
  EXPECT_TRUE(Near(*Value("Rv", row), (4.0 + 2.0) / 5.0, 1e-15));
  EXPECT_TRUE(Near(*Value("Rz", row), 15.0 / 5.0, 1e-15));
  EXPECT_EQ(*Value("Rpt", row), 9.0);
  EXPECT_EQ(*Value("Rvt", row), 4.0);
  row.settings.standard.Sections = 12;
  EXPECT_FALSE(Value("Rz", row));
  EXPECT_FALSE(Value("Rpd", row)) << "pruned by Rz";
  EXPECT_TRUE(Value("FC; P; None; All; Count; Sum", row));
  row.samplingLengthMM = 0.002;
  EXPECT_EQ(*Value("Rzx", row), 8.5) << "0.5 and 9 with the point before";
  EXPECT_EQ(*Value("Rzx(0.001)", row), 8.5);
  row.settings.standard.Sections = 2;
  row.settings.standard.EvaluationLengthMM = 0.02;
  EXPECT_EQ(*Value("Rzx", row), 13.0) << "a section of the stated length";
  EXPECT_EQ(*Value("Rzx(0.01)", row), 13.0);
  EXPECT_FALSE(Value("Rzx(0.02)", row));
}

TEST(EditionRows, TheWindowOfRzxSpansItsLength) {
  std::mt19937_64 random(4);
  RowCase row{.heights = std::vector<double>(60)};
  for (double& height : row.heights) height = static_cast<double>(random() % 100);
  const std::vector<double>& z = row.heights;
  for (std::size_t steps = 1; steps <= z.size(); ++steps) {
    double greatest = 0.0;
    for (std::size_t i = 0; i < z.size(); ++i) {
      for (std::size_t j = i; j < z.size() && j <= i + steps; ++j) greatest = std::max(greatest, std::abs(z[i] - z[j]));
    }
    EXPECT_EQ(*Value("Rzx(" + FixedText(static_cast<double>(steps) * 1e-3, 3) + ")", row), greatest) << steps;
  }
}

/// Elements by walking point lists, the rules written out for one direction.
void TwinElements(const std::vector<double>& z, const PartThresholds& thresholds, std::vector<double>& widths,
                  std::vector<double>& heights) {
  struct Part {
    int side;
    double start, extreme;
    bool fromStart;
  };
  std::vector<Part> parts;
  for (std::size_t i = 0; i < z.size();) {
    std::size_t end = i + 1;
    double extreme = z[i];
    while (end < z.size() && !((z[end - 1] <= 0 && z[end] > 0) || (z[end - 1] >= 0 && z[end] < 0))) {
      if (std::abs(z[end]) > std::abs(extreme)) extreme = z[end];
      ++end;
    }
    const int side = extreme > 0 && extreme >= thresholds.peak ? 1 : extreme < 0 && -extreme >= thresholds.pit ? -1 : 0;
    if (side != 0 && (parts.empty() || parts.back().side != side)) {
      const double start = i == 0 ? 0.0 : static_cast<double>(i - 1) + z[i - 1] / (z[i - 1] - z[i]);
      parts.push_back({side, start, extreme, i == 0});
    } else if (side != 0 && std::abs(extreme) > std::abs(parts.back().extreme)) {
      parts.back().extreme = extreme;
    }
    i = end;
  }
  for (std::size_t i = 0; i + 2 < parts.size(); ++i) {
    if (parts[i].side < 0 || parts[i].fromStart) continue;
    widths.push_back(parts[i + 2].start - parts[i].start);
    heights.push_back(parts[i].extreme - parts[i + 1].extreme);
  }
}

TEST(EditionRows, ScanElementsInBothDirections) {
  std::mt19937 random(4);
  for (int round = 0; round < 200; ++round) {
    std::vector<double> z(60);
    for (double& height : z) height = static_cast<double>(random() % 9) - 4.0;
    const PartThresholds thresholds{static_cast<double>(random() % 4), static_cast<double>(random() % 4)};
    std::vector<double> widths, heights;
    TwinElements(z, thresholds, widths, heights);
    std::vector<double> mirrored(z.rbegin(), z.rend());
    TwinElements(mirrored, thresholds, widths, heights);
    std::vector<double> foundWidths, foundHeights, mirroredWidths;
    for (const CrossingElement& element : FindCrossingElements(z, thresholds)) {
      foundWidths.push_back(element.width);
      foundHeights.push_back(element.height);
    }
    for (const CrossingElement& e : FindCrossingElements(mirrored, thresholds)) mirroredWidths.push_back(e.width);
    EXPECT_TRUE(AllNear(foundWidths, widths, 1e-12));
    EXPECT_TRUE(AllNear(foundHeights, heights, 1e-12));
    std::sort(foundWidths.begin(), foundWidths.end());
    std::sort(mirroredWidths.begin(), mirroredWidths.end());
    EXPECT_EQ(foundWidths, mirroredWidths);
  }
  // A hill at the threshold of 10 % of Rp counts, one just below it joins the dale.
  RowCase row{.heights = Sine(4000, 100.0, 0.3), .spacingMM = 0.001};
  EXPECT_TRUE(Near(*Value("Rsm", row), 0.1, 1e-9));
  EXPECT_TRUE(Near(*Value("Rpc", row), 100.0, 1e-9));
  EXPECT_TRUE(Near(*Value("Rsmq", row), 0.0, 1e-9));
  EXPECT_TRUE(Near(*Value("Rc", row), 2.0, 1e-3));
}

TEST(EditionRows, SpatialAndSlopeRowsOfASine) {
  const double wavelength = 100.0;  // points of 1 um
  RowCase row{.heights = Sine(4000, wavelength), .spacingMM = 0.001};
  EXPECT_TRUE(Near(*Value("Ral", row), 0.1 * std::acos(0.2) / (2.0 * kPi), 4e-3));
  EXPECT_TRUE(Near(*Value("Rsw", row), 0.1, 1e-12));
  RowCase impulse{.heights = std::vector<double>(101, -0.01)};
  impulse.heights[50] = 1.0;
  EXPECT_TRUE(Near(*Value("Rsw", impulse), 0.101, 1e-12)) << "the first of wavelengths that all have the same";
  EXPECT_FALSE(Value("Ral(-1.5)", row));
  const double slope = 2.0 * kPi / wavelength;  // um by um
  EXPECT_TRUE(Near(*Value("Rdq", row), slope / std::sqrt(2.0), 1e-3));
  EXPECT_TRUE(Near(*Value("Rda", row), slope * 2.0 / kPi, 1e-3));
  EXPECT_TRUE(Near(*Value("Rdt", row), slope, 1e-4));
  RowCase ramp{.heights = std::vector<double>(1000), .spacingMM = 0.0005};
  for (std::size_t i = 0; i < 1000; ++i) ramp.heights[i] = 0.375 * static_cast<double>(i);  // 0.75 um by um
  EXPECT_TRUE(Near(*Value("Rdr", ramp), 25.0, 1e-12));
  EXPECT_TRUE(Near(*Value("Rdl", ramp), 0.5 * 1.25, 1e-12));
  // The lag by its definition, on noise.
  RowCase noise{.heights = RandomSurface(3000, 5), .spacingMM = 0.001};
  const std::vector<double>& z = noise.heights;
  const auto mean = [&z](std::size_t lag) {
    double sum = 0.0;
    for (std::size_t i = 0; i + lag < z.size(); ++i) sum += z[i] * z[i + lag];
    return sum / static_cast<double>(z.size() - lag);
  };
  std::size_t lag = 1;
  while (mean(lag) / mean(0) > 0.2) ++lag;
  const double above = mean(lag - 1) / mean(0), below = mean(lag) / mean(0);
  EXPECT_TRUE(
      Near(*Value("Ral", noise), 0.001 * (static_cast<double>(lag - 1) + (above - 0.2) / (above - below)), 1e-10));
}

TEST(EditionRows, ReadTheMaterialRatioCurve) {
  RowCase row{.heights = {-6, 5, -1, 4, 2, 0, 3, -1, 1, -1}};  // sorted 5 4 3 2 1 0 -1 -1 -1 -6
  const std::pair<const char*, double> cases[] = {
      {"Rmr(-1)", 90.0}, {"Rmr(0.5)", 50.0},  {"Rmr(9)", 0.0},        {"Rmr(20,2)", 40.0},
      {"Rcm(0)", 0.0},   {"Rcm(30)", -2.0},   {"Rcm(30.0001)", -3.0}, {"Rcm(100)", -11.0},
      {"Rmc(70)", -1.0}, {"Rdc(10,80)", 6.0}, {"Rvm(30)", 0.3},       {"Rvv(60)", 0.9},
      {"Rvmp", 0.0},     {"Rvmc", 2.1 - 0.0}, {"Rvvv", 0.5},          {"Rvvc", 4.4 - 0.5},
  };
  for (const auto& [name, value] : cases) EXPECT_TRUE(Near(*Value(name, row), value, 1e-12)) << name;
  for (const char* name :
       {"Rcm(-1)", "Rmc(101)", "Rdc(80,10)", "Rdc(10,10)", "Rmr(-5,1)", "Rvmc(80,10)", "Rvvc(10,10)"}) {
    EXPECT_FALSE(Value(name, row)) << name;
  }
  // 64.4 % of 250 are 161, though the product is a little more.
  std::vector<double> sorted(250);
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = -static_cast<double>(i);
  EXPECT_EQ(*HeightAtMaterialRatio(sorted, 64.4), -160.0);
}

TEST(EditionRows, CoreIsTheRowOfBeforeUpToItsPoints) {
  for (const unsigned seed : {1u, 2u, 3u}) {
    RowCase row{.heights = RandomSurface(8000, seed)};
    for (std::size_t i = 0; i < 8000; i += 60) row.heights[i] -= 3.0;
    EXPECT_TRUE(Near(*Value("Rk", row), *RowValue("k", row), 1e-12));
    EXPECT_TRUE(Near(*Value("Rpkx", row), *RowValue("pk*", row) - *RowValue("k", row) / 8000.0, 1e-10));
    const std::pair<const char*, const char*> near[] = {
        {"Rpk", "pk"}, {"Rvk", "vk"}, {"Rmrk1", "mr1"}, {"Rmrk2", "mr2"}};
    for (const auto& [name, before] : near) EXPECT_TRUE(Near(*Value(name, row), *RowValue(before, row), 0.02)) << name;
    EXPECT_TRUE(Near(*Value("Rpk", row) * *Value("Rmrk1", row) / 2.0, *Value("Rak1", row), 1e-12));
    // The area by many narrow steps along the curve.
    std::vector<double> sorted = row.heights;
    std::sort(sorted.rbegin(), sorted.rend());
    const CoreCurve core = *ComputeCoreCurve(sorted);
    double area = 0.0;
    const int steps = 800000;
    for (int i = 0; i < steps; ++i) {
      const double place = (i + 0.5) / steps * 8000.0 - 1.0;  // from 0 at the first point
      const double at = std::clamp(place, 0.0, 7999.0);
      const auto low = static_cast<std::size_t>(at);
      const double high = sorted[std::min<std::size_t>(low + 1, 7999)];
      const double height = sorted[low] + (at - static_cast<double>(low)) * (high - sorted[low]);
      area += std::max(0.0, core.lower - height) * 100.0 / steps;
    }
    EXPECT_TRUE(Near(core.lowerArea, area, 1e-4));
  }
  // An exact ramp has its core and nothing beyond.
  RowCase ramp;
  for (int i = 0; i < 100; ++i) ramp.heights.push_back(i * 0.1);
  EXPECT_TRUE(Near(*Value("Rk", ramp), 10.0, 1e-12));
  EXPECT_TRUE(Near(*Value("Rvk", ramp), 0.0, 1e-9));
}

TEST(EditionNames, AreReadOrRefused) {
  EXPECT_EQ(ParseEditionName("rMR( 5 ; 1.2 )").arguments, (std::vector<double>{5.0, 1.2}));
  EXPECT_EQ(ParseEditionName("W: FC; P; None; All; Count; Sum").letter, 'W');
  for (const char* name :
       {"", "Fa", "Rx", "Rmr", "Rmr(1,2,3)", "Ra(1)", "Rdc(10)", "Rmr(1", "Rmr(x)", "Rmr()",
        "F: FC; P; None; All; Count; Sum", "FC; P; None; All; Count", "FC; Q; None; All; Count; Sum",
        "FC; P; Wolfprune; All; Count; Sum", "FC; P; Wolfprune -1; All; Count; Sum", "FC; P; VolS 5 %; All; Count; Sum",
        "FC; P; None; Top 0; Count; Sum", "FC; P; None; Open 120 %; Count; Sum", "FC; P; None; All; Count; Perc"}) {
    EXPECT_NE(ParseEditionName(name).fault, "") << name;
  }
  AnalysisSettings settings;
  settings.parameters = DefaultSelection();
  settings.standard.Edition = "2021";
  std::size_t plain = 0;
  for (const EditionRow& row : EditionTable()) plain += row.leastArguments == 0 ? 1 : 0;
  EXPECT_EQ(MakeEditionList(settings).rows.size(), 3 * plain);
  settings.parameters = {{.name = "Rz"}, {.name = "Rmr(1,2)"}, {.name = "Rp"}};
  EXPECT_EQ(MakeEditionList(settings).rows.size(), 3u);
  settings.standard.Edition = "both";
  const ParameterCatalogue both = MakeEditionList(settings);
  ASSERT_EQ(both.rows.size(), 4u);
  EXPECT_EQ(both.rows[2].edition, Edition::k1997);
  EXPECT_EQ(both.rows[3].edition, Edition::k2021);
  EXPECT_NE(both.rows[3].difference, "");
}

}  // namespace
}  // namespace texturon
