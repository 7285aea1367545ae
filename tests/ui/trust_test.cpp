// SPDX-License-Identifier: Apache-2.0

// The windows of uncertainty and comparison, and the verification as pages.

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTreeWidget>

#include "presentation/shown_rows.h"
#include "ui/qt_text.h"
#include "ui/trust/compare_window.h"
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
  EXPECT_EQ(row->ValueAndUncertainty(), row->value + " \xB1 " + row->expanded);
  EXPECT_EQ(table->item(static_cast<int>(index), 2)->text(), Readable(FromText(row->expanded)));
  Doc().ComputeAll();
  EXPECT_TRUE(ShownRows(Doc().document())[index].expanded.empty());
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
  EXPECT_EQ(table->topLevelItem(1)->child(0)->text(1), table->topLevelItem(1)->text(1)) << "the only step";
  EXPECT_FALSE(window.UseFile(0, folder_ / "none.ini"));
  EXPECT_TRUE(window.UseFile(0, folder_.Write("lc.ini", "[ANALYSIS]\nLcCutoffMM=0.25\n")));
  EXPECT_EQ(table->topLevelItem(1)->childCount(), 3);
}

}  // namespace
}  // namespace texturon
