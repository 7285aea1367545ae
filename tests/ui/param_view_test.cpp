// SPDX-License-Identifier: Apache-2.0

// The table of parameters.

#include "presentation/shown_rows.h"
#include "ui/plots/texturon_view.h"
#include "ui/sheets/settings_sheet.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class ParamView : public WindowTest {
protected:
  ParamView() : WindowTest("ground.lmt") {}

  /// All but one, so that every row stands where the settings have it.
  void ChooseEach() {
    Change([](AnalysisSettings& analysis) { analysis.parameters.back().selected = false; });
  }
  CGridCtrl& Grid() { return frame_->ParamView().Grid(); }
  const QStringList& Cells(qsizetype record) { return Grid().Records()[record].cells; }
};

TEST_F(ParamView, StandsInAnyNumberOfColumnsThatFit) {
  ChooseEach();
  frame_->resize(3000, 800);
  const std::vector<ShownRow> rows = ShownRows(InForce());
  const QString text = Grid().AsText();
  for (int columns = 1; columns <= 6; ++columns) {
    Choose(QString("columns%1").arg(columns));
    std::size_t i = 0;
    for (int column = 0; column < Grid().columnCount(); ++column) {
      if (Grid().horizontalHeaderItem(column)->text() != "Parameter") continue;
      for (int row = 0; row < Grid().rowCount() && i < rows.size(); ++row, ++i) {
        ASSERT_EQ(Grid().item(row, column)->text(), FromText(rows[i].title)) << columns;
        const QString value = rows[i].value.empty() ? QString::fromUtf8("\u2013") : FromText(rows[i].value);
        ASSERT_EQ(Grid().item(row, column + 1)->text(), Readable(value)) << columns;
      }
    }
    EXPECT_EQ(i, rows.size());
    EXPECT_EQ(Grid().AsText(), text) << "however they stand";
    EXPECT_EQ(Grid().Groups(), columns);
    EXPECT_EQ(Grid().horizontalHeader()->length(), Grid().viewport()->width()) << "they fill the width";
  }
  frame_->resize(700, 600);
  EXPECT_LT(Grid().Groups(), 6);
  EXPECT_LE(Grid().horizontalHeader()->length(), Grid().viewport()->width());
}

TEST_F(ParamView, ShowsTheCommonOnesUntilSomebodyChooses) {
  const auto names = [this] {
    QStringList all;
    for (const CGridCtrl::Record& record : Grid().Records()) all << record.cells[0];
    return all;
  };
  EXPECT_EQ(names(), QString("Roughness, R|Ra|Rt|Rp|Rv|Rq|Rsk|Rku|RzDIN|Rsm|Rk|Rpk|Rvk|Rmr1|Rmr2|"
                             "Primary profile, P|Pt|Waviness, W|Wt")
                         .split('|'));
  EXPECT_FALSE(Grid().AsText().contains("Roughness")) << "headings are not copied";
  Change([](AnalysisSettings& analysis) { analysis.parameters[20].tolerance.toleranced = true; });
  const QString limited = FromText(InForce().settings.analysis.parameters[20].name);
  EXPECT_TRUE(names().contains(limited)) << "what has limits is seen";
  Choose("tolerancedFirst");
  EXPECT_EQ(names().front(), limited);
  Child<QToolButton>(*frame_, "allParametersButton").click();
  EXPECT_TRUE(Child<QAction>(*frame_, "allParameters").isChecked());
  EXPECT_EQ(frame_->ParamView().Choice().showsAll, true);
  EXPECT_EQ(Grid().AsText().count('\n'), 108);
  Change([](AnalysisSettings& analysis) {
    for (ParameterSelection& row : analysis.parameters) row.selected = row.name == "Wseg" || row.name == "Ra";
  });
  Choose("allParameters");
  EXPECT_EQ(names(), QStringList({"Wseg", "Ra"})) << "in the order of the settings";
}

TEST_F(ParamView, CopiesTheSelectedRecordsWhole) {
  ChooseEach();
  Grid().clearSelection();
  for (const int row : {4, 2}) Grid().item(row, 0)->setSelected(true);
  EXPECT_EQ(Grid().AsText(), Cells(2).join('\t') + '\n' + Cells(4).join('\t') + '\n');
}

TEST_F(ParamView, RowsOutOfToleranceStandOut) {
  Choose("columns1");
  Change([](AnalysisSettings& analysis) {
    for (ParameterSelection& choice : analysis.parameters) {
      choice.tolerance = {.toleranced = true, .upperLimit = choice.name == "Ra" ? 0.1 : 1e9};
    }
  });
  for (int row = 0; row < Grid().rowCount(); ++row) {
    const QStringList& cells = Cells(Grid().RecordAt(row, 0));
    const bool isOpen = cells[1] == QString::fromUtf8("\u2013");
    EXPECT_EQ(cells[3] == "no value", isOpen) << row;
    EXPECT_EQ(Grid().item(row, 0)->background().style() != Qt::NoBrush, isOpen || cells[0] == "Ra") << row;
    const bool tellsLimit = Grid().item(row, 0)->toolTip().contains(QString::fromUtf8("Upper limit: 0.1000 \u00B5m"));
    EXPECT_EQ(tellsLimit, cells[0] == "Ra") << row;
  }
  EXPECT_TRUE(Grid().AsText().contains("Ra7\t\u2013")) << "a limit without a value is seen";
  // One that can only be without a value.
  Change([](AnalysisSettings& analysis) {
    for (ParameterSelection& choice : analysis.parameters) choice.tolerance.toleranced = choice.name == "Ra7";
  });
  QPushButton& verdict = frame_->View().Heading().Verdict();
  EXPECT_EQ(verdict.text(), "? 1 toleranced parameter without a value");
  verdict.click();
  EXPECT_EQ(Grid().item(Grid().currentRow(), Grid().currentColumn())->text(), "Ra7");
}

TEST_F(ParamView, TheRightButtonOffersWhatIsDoneWithARow) {
  Choose("columns1");
  QMenu menu;
  frame_->ParamView().FillMenu(menu, 1);
  ASSERT_EQ(menu.actions().size(), 5);
  menu.actions()[0]->trigger();
  EXPECT_EQ(QApplication::clipboard()->text(), Cells(1).join('\t') + '\n');
  menu.actions()[1]->trigger();
  EXPECT_EQ(QApplication::clipboard()->text(), Cells(1)[1]);
  const DialogDriver driver({[this](QWidget& dialog) {
    EXPECT_EQ(dynamic_cast<QMessageBox&>(dialog).text(), Grid().Records()[1].tip);
    dialog.close();
  }});
  menu.actions()[4]->trigger();
  const QSignalSpy asked(&frame_->ParamView(), &CTexturonParamView::ParameterActivated);
  menu.actions()[3]->trigger();
  EXPECT_EQ(asked.size(), 1);
  QMenu ofHeading;
  frame_->ParamView().FillMenu(ofHeading, 0);
  EXPECT_FALSE(ofHeading.actions()[3]->isEnabled()) << "a heading has no limits";
}

TEST_F(ParamView, AsksForTheSettingsOfARecord) {
  ChooseEach();
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
  EXPECT_EQ(table.horizontalHeaderItem(table.currentColumn())->text(), "Lower\nlimit");
}

TEST_F(ParamView, BearingRatiosAreTitledAsChosen) {
  Change([](AnalysisSettings& analysis) {
    analysis.primaryMaterialRatios[0].selected = analysis.roughnessMaterialRatios[1].selected = true;
  });
  const char* const last[] = {"Pmr 1, Rmr 2", "Tpa 1, Rmr 2", "Tpa 1, Tpi 2"};
  const qsizetype count = Grid().Records().size();
  for (int i = 0; i < 3; ++i) {
    if (i > 0) Choose(i == 1 ? "primaryAsTpa" : "roughnessAsTpi");
    EXPECT_EQ(Cells(count - 2)[0] + ", " + Cells(count - 1)[0], last[i]);
  }
}

}  // namespace
}  // namespace texturon
