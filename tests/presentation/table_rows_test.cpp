// SPDX-License-Identifier: Apache-2.0

#include "presentation/table_rows.h"

#include <gtest/gtest.h>

namespace texturon {
namespace {

std::string Titles(const TableRows& table) {
  std::string titles;
  for (const TableRow& row : table.rows) titles += row.shown.title + " ";
  return titles;
}

TEST(TableRows, StandByGroupsWithTheLimitsFirstWhereThatIsWanted) {
  Document document = MakeDocument();
  document.settings.analysis.roughnessMaterialRatios[1].selected = true;
  ApplySettings(document, document.settings);
  for (ParameterDef& row : document.catalogue.rows) {
    if (row.name != "Wq" && row.name != "Pt" && row.name != "AR") continue;
    row.tolerance = {.toleranced = true, .upperLimit = 1.0};
    row.valid = true;
    row.value = row.name == "AR" ? 2.0 : 0.5;
  }
  const std::string roughness = "Ra Rt Rp Rv Rq Rsk Rku RzDIN Rsm Rk Rpk Rvk Rmr1 Rmr2 ";
  EXPECT_EQ(Titles(RowsOfTable(document, {})), roughness + "Pt Wt Wq AR Rmr 2 ");
  const TableRows first = RowsOfTable(document, {.tolerancedFirst = true});
  EXPECT_EQ(Titles(first), "Pt Wq AR " + roughness + "Wt Rmr 2 ");
  EXPECT_EQ(first.rows[2].group, RowGroup::kMotif);
  EXPECT_EQ(first.selected, document.catalogue.rows.size() + 1);
  EXPECT_EQ(RowsOfTable(document, {.showsAll = true}).rows.size(), first.selected);
  const VerdictCount count = CountVerdicts(document);
  EXPECT_EQ(count.judged, 3u);
  EXPECT_EQ(count.failed, 1u);
  EXPECT_EQ(count.firstBad, "AR");
  document.settings.decision.DecisionRule = kDecideGuarded;
  const VerdictCount open = CountVerdicts(document);
  EXPECT_EQ(open.undecided, 3u);
  EXPECT_EQ(open.firstBad, "Pt");
  EXPECT_EQ(open.doubt, "no uncertainty is known");
  for (ParameterDef& row : document.catalogue.rows) row.valid = row.valid && row.name == "AR";
  const VerdictCount missing = CountVerdicts(document);
  EXPECT_EQ(missing.judged, 1u);
  EXPECT_EQ(missing.missing, 2u);
  // A choice of the user's own is shown as it was made.
  document.catalogue.rows[1].selected = false;
  const TableRows chosen = RowsOfTable(document, {});
  EXPECT_FALSE(chosen.isGrouped);
  EXPECT_EQ(chosen.rows.front().shown.title, document.catalogue.rows[0].name);
  EXPECT_EQ(chosen.rows.size(), chosen.selected);
}

}  // namespace
}  // namespace texturon
