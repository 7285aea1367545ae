// SPDX-License-Identifier: Apache-2.0

#include "presentation/table_rows.h"

#include <gtest/gtest.h>

#include "parameters/edition2021/edition_list.h"

namespace texturon {
namespace {

std::string Titles(const TableRows& table) {
  std::string titles;
  for (const ListedRow& row : table.rows) titles += row.shown.title + " ";
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

/// The rows of an edition with a limit on Ra, as the window shows them at first.
TableRows OfEdition(const std::string& edition, std::vector<std::string> features = {}) {
  Document document = MakeDocument();
  Settings settings = document.settings;
  settings.analysis.standard.Edition = edition;
  settings.analysis.standard.features = std::move(features);
  ApplySettings(document, settings);
  EXPECT_TRUE(RowsOfTable(document, {}).isGrouped) << edition;
  settings.analysis.parameters = OfferedRows(settings.analysis);
  for (ParameterSelection& row : settings.analysis.parameters) row.tolerance.toleranced = row.name == "Rdq";
  (void)TakeOfferedRows(settings.analysis.parameters, settings.analysis);
  ApplySettings(document, settings);
  return RowsOfTable(document, {});
}

TEST(TableRows, OfEveryEditionTheCommonOnesStandFirstAndPairsTogether) {
  const TableRows now = OfEdition("2021", {"P: FC; D; Wolfprune 5 %; All; HDh; Mean"});
  EXPECT_TRUE(now.isGrouped) << "a limit is no choice among the rows";
  EXPECT_EQ(Titles(now),
            "Ra Rq Rsk Rku Rt Rp Rv Rz Rdq Rk Rpk Rvk Rmrk1 Rmrk2 Rsm Pt P: FC; D; Wolfprune 5 %; All; HDh; Mean Wt ");
  const TableRows both = OfEdition("both");
  EXPECT_EQ(Titles(both),
            "Ra/1997 Ra/2021 Rt/1997 Rt/2021 Rp/1997 Rp/2021 Rv/1997 Rv/2021 Rq/1997 Rq/2021 Rdq/1997 "
            "Rsk/1997 Rsk/2021 Rku/1997 Rku/2021 RzDIN/1997 Rz/2021 Rsm/1997 Rsm/2021 Rk/1997 Rk/2021 "
            "Rpk/1997 Rpk/2021 Rvk/1997 Rvk/2021 Rmr1/1997 Rmrk1/2021 Rmr2/1997 Rmrk2/2021 "
            "Pt/1997 Pt/2021 Wt/1997 Wt/2021 ");
  // The rows of before with their limits, seen under both.
  Document document = MakeDocument();
  Settings settings = document.settings;
  settings.analysis.parameters[5].tolerance.toleranced = true;
  settings.analysis.standard.Edition = "both";
  ApplySettings(document, settings);
  EXPECT_TRUE(RowsOfTable(document, {}).isGrouped);
  const std::vector<std::size_t> order = OrderOfInterest(document);
  const std::vector<ShownRow> rows = ShownRows(document);
  ASSERT_EQ(order.size(), rows.size());
  EXPECT_EQ(rows[order[0]].title, "Pku/1997") << "what has limits";
  EXPECT_EQ(rows[order[2]].title, "Ra/1997") << "then what is common";
  settings.analysis.parameters[7].selected = false;
  ApplySettings(document, settings);
  EXPECT_FALSE(RowsOfTable(document, {}).isGrouped) << "somebody has chosen";
}

}  // namespace
}  // namespace texturon
