// SPDX-License-Identifier: Apache-2.0

// The table of parameters.

#include "presentation/shown_rows.h"
#include "ui/sheets/settings_sheet.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class ParamView : public WindowTest {
protected:
  ParamView() : WindowTest("ground.lmt") {}

  CGridCtrl& Grid() { return frame_->ParamView().Grid(); }
  const QStringList& Cells(qsizetype record) { return Grid().Records()[record].cells; }
};

TEST_F(ParamView, StandsInAnyNumberOfColumns) {
  const std::vector<ShownRow> rows = ShownRows(InForce());
  const QString text = Grid().AsText();
  const auto count = static_cast<int>(rows.size());
  ASSERT_EQ(Grid().Records().size(), count);
  for (int columns = 1; columns <= 6; ++columns) {
    Choose(QString("columns%1").arg(columns));
    const int height = (count + columns - 1) / columns;
    EXPECT_EQ(Grid().rowCount(), height);
    const int width = Grid().columnCount() / columns;
    for (int i = 0; i < count; ++i) {
      const ShownRow& row = rows[static_cast<std::size_t>(i)];
      const int column = i / height * width;
      ASSERT_EQ(Grid().item(i % height, column)->text(), FromText(row.title)) << columns;
      const QString value = row.value.empty() ? QString::fromUtf8("\u2013") : FromText(row.value);
      ASSERT_EQ(Grid().item(i % height, column + 1)->text(), value) << columns;
    }
    EXPECT_EQ(Grid().AsText(), text) << "however they stand";
  }
  ChangeDisplay([](DisplaySettings& display) { display.ParameterColumns = -3; });
  EXPECT_EQ(Grid().rowCount(), count);
  // Three of them fit into the window.
  Choose("columns3");
  EXPECT_LT(Grid().horizontalHeader()->length(), 1200);
}

TEST_F(ParamView, CopiesTheSelectedRecordsWhole) {
  Grid().clearSelection();
  for (const int row : {4, 2}) Grid().item(row, 0)->setSelected(true);
  EXPECT_EQ(Grid().AsText(), Cells(2).join('\t') + '\n' + Cells(4).join('\t') + '\n');
}

TEST_F(ParamView, RowsOutOfToleranceStandOut) {
  Change([](AnalysisSettings& analysis) {
    for (ParameterSelection& choice : analysis.parameters) {
      if (choice.name == "Ra" || choice.name == "Rq") {
        choice.tolerance = {.toleranced = true, .upperLimit = choice.name == "Ra" ? 0.1 : 1e6};
      }
    }
  });
  int out = 0;
  for (const QTableWidgetItem* const item : Grid().findItems("*", Qt::MatchWildcard)) {
    if (item->background().style() == Qt::NoBrush) continue;
    ++out;
    EXPECT_EQ(Cells(Grid().RecordAt(item->row(), item->column()))[0], "Ra");
  }
  EXPECT_GE(out, 4) << "the whole record";
}

TEST_F(ParamView, AsksForTheSettingsOfARecord) {
  const QSignalSpy asked(&frame_->ParamView(), &CTexturonParamView::ParameterActivated);
  const QRect cell = Grid().visualItemRect(Grid().item(3, 1));
  QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, cell.center());
  QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, cell.center());
  Grid().setCurrentCell(5, 0);
  QTest::keyClick(&Grid(), Qt::Key_Return);
  ASSERT_EQ(asked.size(), 2);
  EXPECT_EQ(asked[0][0].toString(), Cells(3)[0]);
  // Where its limits are entered.
  const auto& table = Child<QTableWidget>(*Child<CSettingsSheet>(*frame_).Pages().currentWidget(), "parameters");
  EXPECT_TRUE(table.isVisible());
  EXPECT_EQ(table.item(table.currentRow(), 0)->text(), Cells(5)[0]);
  EXPECT_EQ(table.horizontalHeaderItem(table.currentColumn())->text(), "Lower limit");
}

TEST_F(ParamView, BearingRatiosAreTitledAsChosen) {
  Change([](AnalysisSettings& analysis) {
    analysis.primaryMaterialRatios[0].selected = analysis.roughnessMaterialRatios[1].selected = true;
  });
  const auto titles = [&] {
    const qsizetype count = Grid().Records().size();
    return Cells(count - 2)[0] + ", " + Cells(count - 1)[0];
  };
  EXPECT_EQ(titles(), "Pmr 1, Rmr 2");
  Choose("primaryAsTpa");
  EXPECT_EQ(titles(), "Tpa 1, Rmr 2");
  Choose("roughnessAsTpi");
  EXPECT_EQ(titles(), "Tpa 1, Tpi 2");
}

}  // namespace
}  // namespace texturon
