// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/edition_list.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "parameters/edition2021/edition_change.h"

namespace texturon {
namespace {

std::string Names(const std::vector<ParameterSelection>& rows, std::size_t first, std::size_t count) {
  std::string names;
  for (std::size_t i = first; i < std::min(rows.size(), first + count); ++i) {
    names += rows[i].name + (rows[i].selected ? " " : "- ");
  }
  return names;
}

TEST(OfferedRows, AreThoseOfTheEdition) {
  AnalysisSettings settings;
  settings.parameters = DefaultSelection();
  EXPECT_EQ(Names(OfferedRows(settings), 0, 99), Names(settings.parameters, 0, 99));
  settings.standard.Edition = "2021";
  std::vector<ParameterSelection> offered = OfferedRows(settings);
  EXPECT_EQ(Names(offered, 0, 6), "Pa Pq Psk Pku Pt Pzx ");
  const std::size_t all = offered.size();
  ASSERT_GT(all, kMostParameters);
  // One of them taken off: no list holds the rest, and the last of P go.
  offered[1].selected = false;
  EXPECT_EQ(TakeOfferedRows(offered, settings), all - 1 - kMostParameters);
  EXPECT_EQ(settings.parameters.size(), kMostParameters);
  EXPECT_EQ(settings.parameters.back().name, "R10z");
  offered = OfferedRows(settings);
  EXPECT_EQ(offered.size(), all) << "they are still offered, at their place";
  EXPECT_EQ(Names(offered, 0, 3), "Pa Pq- Psk ");
  const auto lastOfP = std::find_if(offered.begin(), offered.end(), [](const auto& row) { return row.name == "P10z"; });
  EXPECT_FALSE(lastOfP == offered.end() || lastOfP->selected);
  EXPECT_EQ((lastOfP + 1)->name, "Wa");
  // A few chosen rows keep their order, and the others stand behind their neighbours.
  settings.parameters = {{.name = "Rz"}, {.name = "Rmr(1.5)"}, {.name = "Ra"}};
  EXPECT_EQ(TakeOfferedRows(OfferedRows(settings), settings), 0u);
  EXPECT_EQ(settings.parameters.size(), kMostParameters);
  const auto z = std::find_if(settings.parameters.begin(), settings.parameters.end(),
                              [](const ParameterSelection& row) { return row.name == "Rz"; });
  EXPECT_EQ(Names(settings.parameters, static_cast<std::size_t>(z - settings.parameters.begin()), 2), "Rz Ral- ");
  settings.standard.Edition = "both";
  settings.parameters = DefaultSelection();
  const std::size_t before = settings.parameters.size();
  EXPECT_GT(OfferedRows(settings).size(), before);
  for (const ParameterSelection& row : OfferedRows(settings)) EXPECT_TRUE(row.selected) << row.name;
  // How a value beyond its limits is shown chooses no rows.
  settings.parameters.front().tolerance.highlightIfOut = false;
  for (const ParameterSelection& row : OfferedRows(settings)) EXPECT_TRUE(row.selected) << row.name;
}

TEST(EditionList, LimitsOfAnotherUnitAreNotThoseOfTheNamesake) {
  EXPECT_TRUE(HasTwoUnits("Rdq"));
  EXPECT_FALSE(HasTwoUnits("Ra") || HasTwoUnits("no row"));
  AnalysisSettings settings;
  settings.standard.Edition = "both";
  settings.parameters = {{.name = "Rdq", .tolerance = {.toleranced = true, .upperLimit = 5.0}},
                         {.name = "Rq", .tolerance = {.toleranced = true, .upperLimit = 5.0}}};
  for (const ParameterDef& row : MakeEditionList(settings, {}).rows) {
    EXPECT_EQ(row.tolerance.toleranced, row.name == "Rq" || row.edition == Edition::k1997) << row.name;
  }
  // Neither do they come along to where the row is of the other unit.
  const auto limitsKept = [](const char* from, const char* to) {
    AnalysisSettings changed;
    changed.standard.Edition = from;
    const EditionChoice before = ChosenEdition(changed);
    changed.standard.Edition = to;
    changed.parameters = {{.name = "Rdq", .tolerance = {.toleranced = true, .upperLimit = 5.0}}};
    const EditionChange change = TranslateList(before, changed);
    const auto held = std::find_if(changed.parameters.begin(), changed.parameters.end(),
                                   [](const ParameterSelection& row) { return row.name == "Rdq"; });
    EXPECT_NE(held, changed.parameters.end());
    EXPECT_NE(held->tolerance.toleranced, !change.limitsLost.empty()) << "what is lost is told";
    return held->tolerance.toleranced;
  };
  EXPECT_TRUE(limitsKept("1997", "both") && limitsKept("both", "1997"));
  EXPECT_FALSE(limitsKept("2021", "both") || limitsKept("both", "2021"));
}

TEST(EditionList, SaysWhyRowsDifferUnderTheFilterInForce) {
  AnalysisSettings settings;
  settings.standard.Edition = "both";
  settings.standard.features = {"", "R: FC; D; None; All; Count; Sum"};
  settings.parameters = {{.name = "Rk"}, {.name = "Rpk"}};
  const auto differences = [&settings] {
    std::string text;
    for (const ParameterDef& row : MakeEditionList(settings, {}).rows) text += std::string(row.difference) + "|";
    return text;
  };
  EXPECT_EQ(differences(),
            "|the roughness comes from the robust regression filter|"
            "|the roughness comes from the robust regression filter, and the curve is straight between its points||")
      << "an empty feature is no row";
  settings.standard.CoreFilter = "roughness";
  EXPECT_EQ(differences(), "|the same definition||the curve is straight between its points||");
}

}  // namespace
}  // namespace texturon
