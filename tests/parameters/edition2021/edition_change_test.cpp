// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/edition_change.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace texturon {
namespace {

AnalysisSettings Of(const std::string& edition, std::vector<ParameterSelection> list) {
  AnalysisSettings settings;
  settings.parameters = std::move(list);
  settings.standard.Edition = edition;
  return settings;
}

ParameterSelection Limited(const std::string& name, double upper) {
  return {.name = name, .tolerance = {.toleranced = true, .upperLimit = upper}};
}

/// The selected rows with their limits.
std::string Chosen(const AnalysisSettings& settings) {
  std::string text;
  for (const ParameterSelection& row : settings.parameters) {
    if (!row.selected) continue;
    text += row.name;
    if (row.tolerance.toleranced) text += "<" + std::to_string(static_cast<int>(row.tolerance.upperLimit));
    text += " ";
  }
  return text;
}

TEST(EditionChange, RowsChosenByHandBecomeThoseOfTheEdition) {
  const std::vector<ParameterSelection> old = {
      Limited("RzDIN", 5), {.name = "Ra"},  Limited("Rp", 2), Limited("Rdq", 9),
      Limited("Rvdd", 1),  {.name = "Rvm"}, {.name = "Rpc"},  {.name = "Psm", .selected = false}};
  AnalysisSettings settings = Of("2021", old);
  const EditionChange now = TranslateList(EditionChoice::k1997, settings);
  EXPECT_EQ(Chosen(settings), "Rz<5 Ra Rpt<2 Rdq Rv ") << "Rp, Rvm and Rpc mean something else there";
  EXPECT_EQ(now.limitsLost, std::vector<std::string>{"Rdq"}) << "an angle before, a number now";
  EXPECT_EQ(now.without, (std::vector<std::string>{"Rvdd", "Rpc"}));
  EXPECT_EQ(now.limitsMoved.size(), 2u);
  // Back, and to both.
  settings.standard.Edition = "1997";
  EXPECT_EQ(TranslateList(EditionChoice::k2021, settings).without, std::vector<std::string>());
  EXPECT_EQ(Chosen(settings), "RzDIN<5 Ra Rp<2 Rdq Rvm ");
  EXPECT_EQ(settings.parameters.size(), DefaultSelection().size()) << "the others can be chosen";
  settings = Of("both", {Limited("RzDIN", 5), {.name = "Ra"}});
  EXPECT_TRUE(TranslateList(EditionChoice::k1997, settings).without.empty());
  EXPECT_EQ(Chosen(settings), "RzDIN<5 Rz<5 Ra ");
  settings.standard.Edition = "2021";
  TranslateList(EditionChoice::kBoth, settings);
  EXPECT_EQ(Chosen(settings), "Rz<5 Ra ");
  settings = Of("1997", {{.name = "Rmr(5,1.2)"}, {.name = "Ral"}, {.name = "Rsk"}});
  EXPECT_EQ(TranslateList(EditionChoice::k2021, settings).without, (std::vector<std::string>{"Rmr(5,1.2)", "Ral"}));
}

TEST(EditionChange, AllRowsWithALimitStayAllRows) {
  std::vector<ParameterSelection> list = DefaultSelection();
  const auto rz = std::find_if(list.begin(), list.end(), [](const auto& row) { return row.name == "RzDIN"; });
  rz->tolerance = {.toleranced = true, .upperLimit = 5};
  for (const char* const edition : {"2021", "both"}) {
    AnalysisSettings settings = Of(edition, list);
    EXPECT_TRUE(TranslateList(EditionChoice::k1997, settings).without.empty());
    const AnalysisSettings fresh = Of(edition, DefaultSelection());
    const ParameterCatalogue rows = MakeEditionList(settings);
    EXPECT_EQ(rows.rows.size(), MakeEditionList(fresh).rows.size()) << edition;
    const auto judged = std::count_if(rows.rows.begin(), rows.rows.end(),
                                      [](const ParameterDef& row) { return row.selected && row.tolerance.toleranced; });
    EXPECT_EQ(judged, std::string(edition) == "both" ? 2 : 1) << edition;
    // A limit that is typed then takes no row away, neither for an old name nor for a new one.
    for (const char* const name : {"Ra", "R10z"}) {
      std::vector<ParameterSelection> offered = OfferedRows(settings);
      std::find_if(offered.begin(), offered.end(), [name](const auto& row) { return row.name == name; })->tolerance = {
          .toleranced = true, .upperLimit = 1};
      EXPECT_EQ(TakeOfferedRows(offered, settings), 0u) << edition << name;
      EXPECT_EQ(MakeEditionList(settings).rows.size(), rows.rows.size()) << edition << name;
    }
    settings.standard.Edition = "1997";
    TranslateList(ChosenEdition(fresh), settings);
    EXPECT_TRUE(StandsForAll(settings.parameters));
  }
}

}  // namespace
}  // namespace texturon
