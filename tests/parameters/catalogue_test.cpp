// SPDX-License-Identifier: Apache-2.0

#include "parameters/catalogue.h"

#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <string>

#include "base/charset.h"
#include "base/number_text.h"
#include "parameters/driver.h"
#include "parameters/labels.h"
#include "parameters/suffix_table.h"
#include "support/golden.h"
#include "support/near.h"

namespace texturon {
namespace {

/// Name, unit and factor of every row, what stands behind its value, and its name elsewhere.
TEST(MasterCatalogue, IsThisList) {
  AnalysisSettings settings;
  settings.ClosingRadiusForWvoid = 0.5;
  settings.OpeningRadiusForWcvx = 20.0;
  settings.RoughnessPcLevel = 1.0;
  std::string list, rkFamily;
  std::set<std::string_view> names;
  for (const MasterRow& row : MasterCatalogue()) {
    const Quantity& unit = row.quantity;
    list += std::string(row.name) + " [" + std::string(unit.metricUnit) + "] [" + std::string(unit.imperialUnit) +
            "] x " + ShortestText(unit.imperialFactor) + RowLabel(row.name, settings, true) + " |" +
            RowLabel(row.name, settings, false) + " = " + std::string(CatalogueToExternalName(row.name)) + "\n";
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
    EXPECT_EQ(ExternalToCatalogueName(CatalogueToExternalName(row.name)), row.name);
    const bool isMotif = FindWholeName(row.name) != nullptr;
    EXPECT_EQ(FamilyOfRow(row.name) == ParameterFamily::kMotif, isMotif) << row.name;
    EXPECT_TRUE(isMotif || FindSuffix(row.name.substr(1)) != nullptr) << row.name;
    if (IsRkFamily(row.name)) rkFamily += std::string(row.name) + " ";
  }
  EXPECT_EQ(rkFamily, "Rpk* Rpk+k Rpk/k Rk+vk Rvk/k Rvk* Rmr1 Rmr2 ");
  EXPECT_TRUE(MatchesGolden("parameters/catalogue.txt", Utf8FromWindows1252(list)));
  EXPECT_EQ(ExternalToCatalogueName("A2"), "Rvo");
  EXPECT_EQ(MaterialRatioLabel({.meanReferenced = true, .depthUM = -0.0}, true), "   (Mean + 0.0 \xB5m)");
  EXPECT_EQ(MaterialRatioLabel({.meanReferenced = true, .depthUM = -0.5}, false), "   (Mean - 20 \xB5in)");
  EXPECT_EQ(MaterialRatioLabel({.depthUM = 1.5, .offsetPercent = 2.0}, true), "   (1.50 \xB5m  2.0 %)");
}

TEST(WorkingList, GivesUnknownNamesTheUnitOfTheirSuffix) {
  const std::vector<ParameterSelection> selection = {{.name = "Pdq"}, {.name = "wKU"}, {.name = "Pxyz"}, {.name = ""}};
  const ParameterCatalogue catalogue = MakeWorkingList(selection);
  ASSERT_EQ(catalogue.rows.size(), 4u);
  EXPECT_EQ(catalogue.rows[0].quantity.metricUnit, "\xB0");
  EXPECT_EQ(catalogue.rows[1].quantity.metricUnit, "");
  EXPECT_EQ(catalogue.rows[2].quantity.metricUnit, "");
  EXPECT_EQ(MakeWorkingList(std::vector<ParameterSelection>(200)).rows.size(), 128u);
}

TEST(Limits, HoldWhatLiesWithin) {
  struct Case {
    bool toleranced, bilateral;
    double lower, upper, value;
    bool isWithin;
  };
  const Case cases[] = {
      {false, false, 0, 1, 5, true},
      {true, false, 0, 1, 1, true},
      {true, false, 0, 1, 1.001, false},
      {true, false, 0, 0, 9, true},
      {true, true, 0, 0, 9, true},
      {true, true, 1, 2, 0.5, false},
      {true, true, 1, 2, 2.5, false},
      {true, true, 1, 2, 2.0, true},
      {true, true, -1, 0, 0.5, false},
      {true, true, 0, 1, std::nan(""), false},
      {true, false, 0, 1, std::nan(""), false},
  };
  for (const Case& c : cases) {
    const Tolerance tolerance{
        .toleranced = c.toleranced, .bilateral = c.bilateral, .upperLimit = c.upper, .lowerLimit = c.lower};
    EXPECT_EQ(IsWithin(c.value, LimitsOf(tolerance)), c.isWithin) << c.value << " in " << c.lower << " to " << c.upper;
  }
}

class Driver : public ::testing::Test {
protected:
  DriverReport Run(const std::vector<std::string>& names) {
    catalogue_ = {};
    for (const std::string& name : names) catalogue_.rows.push_back({.name = name, .value = 77.0});
    return ComputeParameters(catalogue_, {.settings = settings_,
                                          .formSuppressed = {},
                                          .primary = View(primary_, ProfileKind::kPrimary),
                                          .waviness = View(waviness_, ProfileKind::kWaviness),
                                          .roughness = View(roughness_, ProfileKind::kRoughness)});
  }
  static std::optional<Profile> View(const std::vector<double>& z, ProfileKind kind) {
    return Profile{kind, z, IndexRange::FromCount(0, static_cast<std::int32_t>(z.size())), 100.0};
  }

  AnalysisSettings settings_;
  std::vector<double> primary_ = std::vector<double>(60, 1.0);
  std::vector<double> waviness_ = std::vector<double>(60, 2.0);
  std::vector<double> roughness_ = std::vector<double>(60, 3.0);
  ParameterCatalogue catalogue_;
};

TEST_F(Driver, ChoosesProfileAndRoutineWithoutRegardToCase) {
  Run({"Pa", "wA", "rA", "RQ"});
  const double expected[] = {1.0, 2.0, 3.0, 3.0};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_TRUE(catalogue_.rows[i].valid);
    EXPECT_TRUE(Near(catalogue_.rows[i].value, expected[i], 1e-12)) << catalogue_.rows[i].name;
  }
}

TEST_F(Driver, ReportsUnknownNamesAndSkipsQuietly) {
  catalogue_.rows.clear();
  const DriverReport report = Run({"Xa", "Rnone", "special", "Ft", "R", "RA"});
  EXPECT_EQ(report.messages, (std::vector<std::string>{"Xa - Unknown profile", "Rnone - Unknown parameter"}));
  for (std::size_t i = 0; i < 5; ++i) EXPECT_FALSE(catalogue_.rows[i].valid) << catalogue_.rows[i].name;
  EXPECT_EQ(catalogue_.rows[3].value, 77.0) << "a skipped row keeps what it held";
  EXPECT_TRUE(catalogue_.rows[5].valid);
}

TEST_F(Driver, ZeroesARowThatFails) {
  Run({"R3z"});
  EXPECT_FALSE(catalogue_.rows[0].valid);
  EXPECT_EQ(catalogue_.rows[0].value, 0.0);
}

TEST_F(Driver, TakesAValueThatIsNotFiniteForAFailureExceptInRatiosToTheCore) {
  roughness_.assign(60, 0.0);
  roughness_[20] = 3.0;  // no core
  primary_ = {1e200, -1e200};
  primary_.resize(60, 0.0);
  Run({"Rpk/k", "Rvk/k", "Rk", "Pq", "Pku", "Pm4", "Ptwi", "Pt"});
  for (const ParameterDef& row : catalogue_.rows) {
    const bool isRatio = row.name.ends_with("/k");
    const bool fails = row.name.starts_with("P") && row.name != "Pt";
    EXPECT_EQ(row.valid, !fails) << row.name;
    EXPECT_EQ(std::isfinite(row.value), !isRatio) << row.name;
    EXPECT_TRUE(!fails || row.value == 0.0) << row.name;
  }
}

TEST_F(Driver, NamesTheHeightsThatTheElementFinderSawLast) {
  EXPECT_FALSE(Run({"Ra"}).elementHeights.has_value());
  const DriverReport report = Run({"Rsm", "Psm", "Rc", "Wa"});
  ASSERT_TRUE(report.elementHeights.has_value());
  EXPECT_EQ(report.elementHeights->data(), roughness_.data());
}

TEST(ShownValue, HasThreeFiguresAtLeastAndTheSignOfWhatIsThere) {
  const struct {
    double value;
    int decimals;
    const char* text;
  } cases[] = {{12.3456, 4, "12.3456"}, {0.000034012, 6, "0.0000340"}, {-0.0466, 3, "-0.0466"},  {91.0, 0, "91"},
               {0.99951, 2, "1.000"},   {-1e-17, 3, "0.000"},          {2e-9, 3, "0.000000002"}, {INFINITY, 3, "inf"}};
  for (const auto& [value, decimals, text] : cases) {
    ParameterDef row{.valid = true, .value = value, .format = {{decimals, decimals}}};
    EXPECT_EQ(ShownValue(row, true), text);
  }
}

}  // namespace
}  // namespace texturon
