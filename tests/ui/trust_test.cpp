// SPDX-License-Identifier: Apache-2.0

// The windows of uncertainty and comparison, and the verification as pages.

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>

#include "presentation/shown_rows.h"
#include "ui/plots/profile_heading.h"
#include "ui/plots/texturon_view.h"
#include "ui/qt_text.h"
#include "ui/several/several_window.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/trust/compare_window.h"
#include "ui/trust/known_budget.h"
#include "ui/trust/uncertainty_window.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Trust : public WindowTest {};

// A budget from a file, tried; the window's table and reports have the interval until something else is computed.
TEST_F(Trust, UncertaintiesStandBesideTheValues) {
  ASSERT_TRUE(Doc().Open(Sample("turned.lmt")));
  CUncertaintyWindow window(Doc(), nullptr);
  EXPECT_FALSE(window.Try()) << "an empty budget";
  EXPECT_FALSE(window.findChild<QLabel*>("uncertaintySentence")->text().isEmpty());
  EXPECT_FALSE(window.LoadBudget(folder_.Write("none.ini", "[A]\nB=1\n")));
  ASSERT_TRUE(window.LoadBudget(
      folder_.Write("b.ini",
                    "[UNCERTAINTY_BUDGET]\nAmplificationPercent=1\nAmplificationPercent.Distribution=uniform\n"
                    "RepeatabilityPercent.Ra=2\n")));
  EXPECT_EQ(window.findChild<QLineEdit*>("AmplificationPercent")->text(), "1");
  ASSERT_TRUE(window.Try());
  const auto* const table = window.findChild<QTableWidget*>();
  const std::vector<ShownRow> rows = ShownRows(Doc().document());
  ASSERT_EQ(table->rowCount(), static_cast<int>(rows.size()));
  const auto row = std::find_if(rows.begin(), rows.end(), [](const ShownRow& shown) { return shown.title == "Ra"; });
  ASSERT_NE(row, rows.end());
  const auto index = static_cast<std::size_t>(row - rows.begin());
  const ParameterUncertainty& u = Doc().document().results.uncertainties.at(index).value();
  EXPECT_NEAR(u.standard / row->row.value, std::sqrt(0.0005), 0.1 * std::sqrt(0.0005));
  EXPECT_EQ(row->ValueAndUncertainty(), row->rounded + " \xB1 " + row->expanded);
  const auto decimals = [](const std::string& text) { return text.size() - text.find('.'); };
  EXPECT_EQ(decimals(row->rounded), decimals(row->expanded)) << row->ValueAndUncertainty();
  ASSERT_EQ(table->currentRow(), 0);
  EXPECT_EQ(table->item(0, 0)->text(), "Ra") << "what is looked for first";
  EXPECT_EQ(table->item(0, 1)->text(), Readable(FromText(row->rounded)));
  EXPECT_EQ(table->item(0, 2)->text(), Readable(FromText(row->expanded)));
  window.show();
  Press(window, "Close");
  EXPECT_FALSE(window.isVisible());
  Doc().ComputeAll();
  EXPECT_TRUE(ShownRows(Doc().document())[index].expanded.empty());
}

// Undecided in word and colour, with what it needs a click away; decided once there is an uncertainty.
TEST_F(Trust, SentencesOfTheWindowHaveWordsAndNoKeys) {
  for (const char* const sentence :
       {"HeightNoiseUM: \"x\" is no number from 0 on", "TipRadiusUncertaintyUM.Distribution: is no distribution",
        "has both HeightNoiseUM and a spectrum of the noise",
        "the budget has TipRadiusUncertaintyUM, and neither it (TipRadiusUM) nor the file tells the tip's radius"}) {
    const QString shown = BudgetSentence(sentence);
    EXPECT_FALSE(shown.contains("UM")) << shown.toStdString();
    EXPECT_TRUE(shown.contains("tip") || shown.contains("noise")) << shown.toStdString();
  }
}

TEST_F(Trust, VerdictsOfTheWindowFollowTheRule) {
  ASSERT_TRUE(Doc().Open(Sample("turned.lmt")));
  Settings settings = InForce().settings;
  settings.decision.DecisionRule = kDecideGuarded;
  settings.analysis.parameters.front().tolerance = {.toleranced = true, .upperLimit = 1e6};
  Doc().ReplaceSettings(settings);
  const auto verdict = [this] { return frame_->View().Heading().Verdict().accessibleName(); };
  EXPECT_EQ(verdict(), "1 of 1 toleranced parameter undecided");
  const auto cells = [this] { return frame_->ParamView().Grid().Records(); };
  const auto isOpen = [](const CGridCtrl::Record& record) { return record.isUndecided; };
  const QList<CGridCtrl::Record> records = cells();
  const auto open = std::find_if(records.begin(), records.end(), isOpen);
  ASSERT_NE(open, records.end());
  EXPECT_EQ(open->cells[3], "undecided");
  EXPECT_TRUE(open->tip.contains("no uncertainty is known"));
  EXPECT_FALSE(KnownBudget());
  settings.decision.DecisionRule = kDecideGuardedFail;
  Doc().ReplaceSettings(settings);
  EXPECT_TRUE(verdict().contains("out of tolerance (no uncertainty is known)")) << verdict().toStdString();
  settings.decision.DecisionRule = kDecideGuarded;
  Doc().ReplaceSettings(settings);
  frame_->View().Heading().Verdict().click();
  auto* const window = frame_->findChild<CUncertaintyWindow*>();
  ASSERT_NE(window, nullptr);
  window->findChild<QLineEdit*>("AmplificationPercent")->setText("1");
  ASSERT_TRUE(window->Try());
  EXPECT_TRUE(verdict().endsWith("1 toleranced parameter within tolerance")) << verdict().toStdString();
  EXPECT_EQ(KnownBudget()->budget.Of(BudgetItem::kAmplification).standard, 1.0);
  EXPECT_EQ(CUncertaintyWindow(Doc(), nullptr).findChild<QLineEdit*>("AmplificationPercent")->text(), "1");
  settings.decision.DecisionRule = kDecideGuardedFail;
  Doc().ReplaceSettings(settings);
  EXPECT_TRUE(verdict().endsWith("1 toleranced parameter within tolerance")) << "another rule, the same trials";
  // Several profiles are judged by the budget that is known now.
  CSeveralWindow several(Doc(), nullptr);
  several.AddFiles({Sample("turned.lmt")});
  EXPECT_EQ(several.Table().Records().front().cells.last(), "within tolerance");
}

TEST_F(Trust, PracticesAreRankedByTheInstrumentsValues) {
  ASSERT_TRUE(Doc().Open(std::filesystem::path(TEXTURON_SOURCE_DIR) / "tests/golden/files/results.txt"));
  CCompareWindow window(Doc(), nullptr);
  auto* const tabs = window.findChild<QTabWidget*>();
  tabs->setCurrentIndex(1);
  auto* const practices = window.findChild<QTableWidget*>();
  ASSERT_GT(practices->rowCount(), 5);
  EXPECT_EQ(practices->item(0, 2)->text(), "0.42 %") << "as the console has it";
  EXPECT_EQ(practices->item(0, 3)->text(), "3 of 3");
  emit practices->cellActivated(0, 0);
  EXPECT_EQ(tabs->currentIndex(), 0);
  EXPECT_EQ(window.findChild<QComboBox*>("to")->currentText(), practices->item(0, 0)->text());
  ASSERT_TRUE(Doc().Open(Sample("turned.lmt")));
  tabs->setCurrentIndex(1);
  EXPECT_EQ(practices->rowCount(), 0);
}

TEST_F(Trust, ComparisonGoesByTheChosenSides) {
  ASSERT_TRUE(Doc().Open(Sample("turned.lmt")));
  CCompareWindow window(Doc(), nullptr);
  const auto* const table = window.findChild<QTreeWidget*>();
  ASSERT_GT(table->topLevelItemCount(), 100);
  EXPECT_EQ(table->topLevelItem(1)->childCount(), 0) << "nothing differs";
  auto* const to = window.findChild<QComboBox*>("to");
  to->setCurrentIndex(to->findData("no-short-wave-filter"));
  ASSERT_EQ(table->topLevelItem(1)->childCount(), 2);
  EXPECT_NE(table->topLevelItem(0)->text(1), "0") << "what changes stands first";
  EXPECT_EQ(table->topLevelItem(1)->child(0)->text(1), table->topLevelItem(1)->text(1)) << "the only step";
  EXPECT_FALSE(window.UseFile(0, folder_ / "none.ini"));
  EXPECT_TRUE(window.UseFile(0, folder_.Write("lc.ini", "[ANALYSIS]\nLcCutoffMM=0.25\n")));
  EXPECT_EQ(table->topLevelItem(1)->childCount(), 3);
}

}  // namespace
}  // namespace texturon
