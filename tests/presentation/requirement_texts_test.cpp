// SPDX-License-Identifier: Apache-2.0

#include "presentation/requirement_texts.h"

#include <gtest/gtest.h>

#include "parameters/edition2021/edition_list.h"
#include "presentation/report_texts.h"
#include "presentation/table_rows.h"

namespace texturon {
namespace {

TEST(RequirementTexts, NameTheDrawingWithItsVerdict) {
  Document document = MakeDocument();
  Settings settings = document.settings;
  settings.analysis.standard.Indication = "U Rz 6,3 T16% | L Ra 0.4 | Rk 2 | -0.8/Rk 3";
  ApplySettings(document, settings);
  document.catalogue.rows = {MakeEditionRow("Rz"), MakeEditionRow("Ra"), MakeEditionRow("Rk")};
  for (ParameterDef& row : document.catalogue.rows) row.valid = true;
  document.catalogue.rows[0].value = 4.0;
  document.catalogue.rows[1].value = 0.39;
  std::vector<std::string> lines;
  for (const auto& [title, text] : MakeReportTexts(document, "now").facts) {
    if (title == "Drawing") lines.push_back(text);
  }
  const std::vector<std::string> expected = {
      "U Rz 6,3 T16%: 4.0000 \xB5m, conforming (short procedure)", "L Ra 0.4: 0.3900 \xB5m, not conforming (maximum)",
      "Rk 2: 0.0000 \xB5m, undecided (settings are missing)",
      "-0.8/Rk 3: undecided (no value)",  // the row of that edition is not there
  };
  EXPECT_EQ(lines, expected);
  // Over several profiles the rule is the requirement's: one of seven may be beyond its limit, the highest is told.
  SeveralResults results;
  for (const double height : {4.0, 5.0, 5.0, 6.5, 5.0, 5.0, 5.0}) {
    document.catalogue.rows[0].value = height;
    results.Add(document);
  }
  const SeveralReport several{results.Rows(AcceptanceRule::kMaximum), {}, results.Requirements()};
  lines.clear();
  for (const auto& [title, text] : MakeReportTexts(document, "now", several).facts) {
    if (title == "Drawing") lines.push_back(text);
  }
  EXPECT_EQ(lines.at(0), "U Rz 6,3 T16%: 7 values, at most 6.5000 \xB5m, conforming (share)");
  EXPECT_EQ(lines.at(1), "L Ra 0.4: 7 values, at least 0.3900 \xB5m, not conforming (maximum)");
  settings.analysis.standard.Class = "Sc3";
  ApplySettings(document, settings);
  EXPECT_EQ(RequirementsOf(document).at(2).requirement.className, "Sc3") << "the class of the settings completes it";
  // The drawing decides where no row has limits, and leaves open what the rows keep.
  document.catalogue.rows = {MakeEditionRow("Ra")};
  document.catalogue.rows[0].valid = true;
  const ReportTexts failed = MakeReportTexts(document, "now");
  EXPECT_EQ(failed.outcome, ReportOutcome::kFail);
  EXPECT_EQ(failed.summary, "Drawing not conforming (L Ra 0.4: maximum).");
  EXPECT_EQ(CountVerdicts(document).drawing, Acceptance::kFail);
  settings.analysis.standard.Indication = "U Rz 5 T16%";
  ApplySettings(document, settings);
  document.catalogue.rows = {MakeEditionRow("Rz")};
  document.catalogue.rows[0].valid = true;
  document.catalogue.rows[0].value = 4.0;
  document.catalogue.rows[0].tolerance = {.toleranced = true, .upperLimit = 5.0};
  const ReportTexts open = MakeReportTexts(document, "now");
  EXPECT_EQ(open.outcome, ReportOutcome::kOpen) << open.summary;
  EXPECT_EQ(open.summary,
            "The toleranced parameter is within tolerance. Drawing undecided (U Rz 5 T16%: fewer than three "
            "values).");
  const VerdictCount count = CountVerdicts(document);
  EXPECT_EQ(count.failed + count.undecided + count.missing, 0u);
  EXPECT_EQ(count.drawing, Acceptance::kUndecided);
  EXPECT_EQ(count.firstBad, "Rz") << "a click leads there";
}

TEST(RequirementTexts, SayWhatIsTyped) {
  EXPECT_EQ(IndicationFault(ReadIndication("Rz 3 x", BuiltInClasses())), "Character 6: \"x\" is not understood.");
  const IndicationResult read = ReadIndication("Rk 1.5", BuiltInClasses());
  std::string meaning;
  for (const auto& [title, line] : MeaningOf({read.requirements.at(0), std::nullopt}))
    meaning += title + ": " + line + "\n";
  EXPECT_EQ(meaning,
            "Edition: ISO 21920-1:2021\nUpper limit: Rk 1.5 \xB5m\nRule: Tmax\nClass: -\nLong-wave index: open\n"
            "Short-wave index: open\nSections: open of open\nEvaluation length: open\n"
            "Incomplete: a class (Sc1 to Sc5) or the long-wave index (L=Nic) must be written\n");
}

}  // namespace
}  // namespace texturon
