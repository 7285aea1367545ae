// SPDX-License-Identifier: Apache-2.0

// The table of parameters.

#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>

#include "presentation/shown_rows.h"
#include "ui/sheets/settings_sheet.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class ParamView : public WindowTest {
protected:
  ParamView() {
    EXPECT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
    frame_->show();
  }
  CGridCtrl& Grid() { return frame_->ParamView().Grid(); }
  /// What stands in the table, read down each group.
  QStringList NamesInReadingOrder() {
    QStringList names;
    for (int column = 0; column < Grid().columnCount(); ++column) {
      if (Grid().horizontalHeaderItem(column)->text() != "Parameter") continue;
      for (int row = 0; row < Grid().rowCount(); ++row) {
        if (Grid().item(row, column) != nullptr) names << Grid().item(row, column)->text();
      }
    }
    return names;
  }
};

TEST_F(ParamView, StandsInAnyNumberOfColumns) {
  const QString text = Grid().AsText();
  const qsizetype count = Grid().Records().size();
  EXPECT_EQ(text.count('\n'), count + 1) << "one line a parameter, and the titles";
  QStringList names;
  for (const CGridCtrl::Record& record : Grid().Records()) names << record.cells[0];
  for (int columns = 1; columns <= 6; ++columns) {
    Choose(QString("columns%1").arg(columns));
    EXPECT_EQ(frame_->Doc().document().settings.display.ParameterColumns, columns);
    EXPECT_EQ(Grid().rowCount(), (count + columns - 1) / columns);
    EXPECT_EQ(NamesInReadingOrder(), names) << columns;
    EXPECT_EQ(Grid().AsText(), text) << "however they stand";
  }
  DisplaySettings display = frame_->Doc().document().settings.display;
  display.ParameterColumns = -3;
  frame_->Doc().ReplaceDisplay(display);
  EXPECT_EQ(Grid().rowCount(), count);
  // Three of them fit into the window.
  Choose("columns3");
  EXPECT_LT(Grid().horizontalHeader()->length(), 1200);
}

TEST_F(ParamView, CopiesTheSelectedRecordsWhole) {
  Grid().clearSelection();
  for (const int row : {4, 2}) Grid().item(row, 0)->setSelected(true);
  const QStringList lines = Grid().AsText().split('\n');
  ASSERT_EQ(lines.size(), 3);
  EXPECT_TRUE(lines[0].startsWith(Grid().Records()[2].cells[0] + "\t" + Grid().Records()[2].cells[1]));
  EXPECT_TRUE(lines[1].startsWith(Grid().Records()[4].cells[0] + "\t"));
}

TEST_F(ParamView, RowsOutOfToleranceStandOut) {
  Settings settings = frame_->Doc().document().settings;
  std::size_t ra = 0;
  while (settings.analysis.parameters[ra].name != "Ra") ++ra;
  settings.analysis.parameters[ra].tolerance = {.toleranced = true, .upperLimit = 0.1};
  settings.analysis.parameters[ra + 1].tolerance = {.toleranced = true, .upperLimit = 1e6};
  frame_->Doc().ReplaceSettings(settings);
  int out = 0;
  for (int row = 0; row < Grid().rowCount(); ++row) {
    for (int column = 0; column < Grid().columnCount(); ++column) {
      const QTableWidgetItem* const item = Grid().item(row, column);
      if (item == nullptr || item->background().style() == Qt::NoBrush) continue;
      ++out;
      const int record = Grid().RecordAt(row, column);
      EXPECT_EQ(Grid().Records()[record].cells[0], "Ra");
      EXPECT_EQ(Grid().Records()[record].cells[3], "out of tolerance");
    }
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
  EXPECT_EQ(asked[0][0].toString(), Grid().Records()[3].cells[0]);
  EXPECT_EQ(asked[1][0].toString(), Grid().Records()[5].cells[0]);
  // Where its limits are entered.
  auto& sheet = *frame_->findChild<CSettingsSheet*>();
  EXPECT_TRUE(sheet.isVisible());
  auto* const table = sheet.Pages().currentWidget()->findChild<QTableWidget*>("parameters");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->item(table->currentRow(), 0)->text(), Grid().Records()[5].cells[0]);
  EXPECT_EQ(table->horizontalHeaderItem(table->currentColumn())->text(), "Lower limit");
}

TEST_F(ParamView, BearingRatiosAreTitledAsChosen) {
  Settings settings = frame_->Doc().document().settings;
  settings.analysis.primaryMaterialRatios[0].selected = true;
  settings.analysis.roughnessMaterialRatios[1].selected = true;
  frame_->Doc().ReplaceSettings(settings);
  const auto titles = [&] {
    const qsizetype count = Grid().Records().size();
    return QStringList{Grid().Records()[count - 2].cells[0], Grid().Records()[count - 1].cells[0]};
  };
  EXPECT_EQ(titles(), (QStringList{"Pmr 1", "Rmr 2"}));
  Choose("primaryAsTpa");
  EXPECT_EQ(titles(), (QStringList{"Tpa 1", "Rmr 2"}));
  Choose("roughnessAsTpi");
  EXPECT_EQ(titles(), (QStringList{"Tpa 1", "Tpi 2"}));
}

}  // namespace
}  // namespace texturon
