// SPDX-License-Identifier: Apache-2.0

// The settings sheets, typed into and clicked as a user does.

#include "ui/sheets/settings_sheet.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <QWheelEvent>
#include <set>

#include "settings/settings_text.h"
#include "signal/form/asphere.h"
#include "ui/sheets/parameters_page.h"
#include "ui/sheets/shape_pages.h"
#include "ui/tables/grid_ctrl.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class SettingsSheet : public WindowTest {
protected:
  SettingsSheet() {
    EXPECT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
    frame_->show();
  }

  template <typename Sheet>
  Sheet& Open(const QString& command) {
    Choose(command);
    return *frame_->findChild<Sheet*>();
  }
  CSettingsSheet& OpenSettings() { return Open<CSettingsSheet>("settings"); }

  static CSettingField& Field(QWidget& sheet, const QString& name) {
    auto* const field = sheet.findChild<CSettingField*>(name);
    EXPECT_NE(field, nullptr) << name.toStdString();
    return *field;
  }
  static QLineEdit& Line(QWidget& sheet, const QString& name) { return *Field(sheet, name).findChild<QLineEdit*>(); }
  static void Type(QWidget& sheet, const QString& name, const QString& text) {
    QLineEdit& line = Line(sheet, name);
    line.selectAll();
    if (text.isEmpty()) QTest::keyClick(&line, Qt::Key_Delete);
    QTest::keyClicks(&line, text);
  }
  static void ChooseFrom(QComboBox& list, int index) {
    list.setCurrentIndex(index);
    emit list.activated(index);
  }
  const AnalysisSettings& InForce() { return frame_->Doc().document().settings.analysis; }
};

TEST_F(SettingsSheet, EntriesGoIntoTheAnalysis) {
  CSettingsSheet& sheet = OpenSettings();
  const auto element = [&](const char* name) { return Field(sheet, name).findChild<QComboBox*>(); };
  ChooseFrom(*element("ANALYSIS.FormRemovalType"), 4);
  EXPECT_TRUE(Field(sheet, "ANALYSIS.PolynomialOrder").isEnabled());
  EXPECT_FALSE(Field(sheet, "ANALYSIS.FixedRadiusMM").isEnabled()) << "belongs to another form";
  Type(sheet, "ANALYSIS.PolynomialOrder", "3");
  sheet.ApplyNow();
  EXPECT_EQ(frame_->Doc().document().results.formApplied, kFormPolynomial);
  EXPECT_EQ(InForce().PolynomialOrder, 3);
  auto& cutoffs = *sheet.findChild<QComboBox*>("UserLcCutoffMMChoice");
  EXPECT_EQ(cutoffs.currentText(), "0.8 mm");
  ChooseFrom(cutoffs, 1);
  sheet.ApplyNow();
  EXPECT_EQ(InForce().LcCutoffMM, 0.25);
  ChooseFrom(cutoffs, cutoffs.count() - 1);
  Type(sheet, "ANALYSIS.UserLcCutoffMM", "0.5");
  sheet.ApplyNow();
  EXPECT_EQ(InForce().LcCutoffMM, 0.5);
  EXPECT_FALSE(InForce().StandardLcCutoff);
  // What the analysis itself sets comes back into the sheet.
  ChooseFrom(*element("ANALYSIS.UserDiscardType"), 1);
  sheet.ApplyNow();
  EXPECT_EQ(Line(sheet, "ANALYSIS.UserDiscardLengthMM").text(), "0.25");
}

TEST_F(SettingsSheet, IsAppliedWithoutAsking) {
  CSettingsSheet& sheet = OpenSettings();
  Type(sheet, "ANALYSIS.RoughnessPcLevel", "0.3");
  EXPECT_TRUE(QTest::qWaitFor([&] { return InForce().RoughnessPcLevel == 0.3; }, 3000));
}

TEST_F(SettingsSheet, WrongEntriesAreMarkedAndLeaveTheSettings) {
  CSettingsSheet& sheet = OpenSettings();
  const Settings before = frame_->Doc().document().settings;
  struct Case {
    const char* name;
    const char* text;
    const char* reason;
  };
  for (const Case& c : {Case{"ANALYSIS.RoughnessPcLevel", "2,5", "decimal comma"},
                        {"ANALYSIS.SplineTension", "7", "Must be from 0 to 1"},
                        {"MOTIF_PARAMETERS.MotifAMM", "", "is no number"}}) {
    Type(sheet, c.name, c.text);
    EXPECT_TRUE(Field(sheet, c.name).Fault().contains(c.reason)) << Field(sheet, c.name).Fault().toStdString();
    EXPECT_TRUE(sheet.findChild<QLabel*>("fault")->text().contains(c.reason));
    sheet.ApplyNow();
    EXPECT_EQ(frame_->Doc().document().settings, before);
    sheet.accept();
    EXPECT_TRUE(sheet.isVisible()) << "OK shows the entry instead of losing it";
    EXPECT_TRUE(Line(sheet, c.name).isVisible());
    Type(sheet, c.name, "0.5");
    EXPECT_EQ(Field(sheet, c.name).Fault(), "");
    sheet.reject();
    EXPECT_EQ(frame_->Doc().document().settings, before) << "Cancel puts everything back";
    OpenSettings();
  }
  EXPECT_TRUE(prompts_.messages.empty()) << "no message box";
}

TEST_F(SettingsSheet, ImperialEntriesAreConverted) {
  Choose("metric");
  CSettingsSheet& sheet = OpenSettings();
  Type(sheet, "ANALYSIS.ClosingRadiusForWvoid", "20");
  Type(sheet, "ANALYSIS.FormFilterCutoffMM", "9");
  sheet.ApplyNow();
  Type(sheet, "ANALYSIS.WxpEndRegionsMM", "0.1");
  sheet.ApplyNow();
  EXPECT_NEAR(InForce().WxpEndRegionsMM, 2.54, 1e-12);
}

TEST_F(SettingsSheet, ParametersAreSelectedOrderedAndToleranced) {
  CSettingsSheet& sheet = OpenSettings();
  auto& table = *sheet.findChild<QTableWidget*>("parameters");
  auto& page = *sheet.findChild<CParametersPage*>();
  page.SelectAll(false);
  const auto rowOf = [&](const QString& name) { return table.findItems(name, Qt::MatchExactly).front()->row(); };
  table.item(rowOf("Ra"), 0)->setCheckState(Qt::Checked);
  table.item(rowOf("Rq"), 0)->setCheckState(Qt::Checked);
  table.item(rowOf("Ra"), 2)->setCheckState(Qt::Checked);
  table.item(rowOf("Ra"), 5)->setText("a quarter");
  EXPECT_TRUE(page.Fault().startsWith("Ra: "));
  table.item(rowOf("Ra"), 5)->setText("0.25");
  EXPECT_EQ(page.Fault(), "");
  table.setCurrentCell(rowOf("Rq"), 0);
  while (rowOf("Rq") > rowOf("Ra")) page.Move(-1);
  sheet.ApplyNow();
  const QList<CGridCtrl::Record>& records = frame_->findChild<CGridCtrl*>()->Records();
  ASSERT_EQ(records.size(), 2);
  EXPECT_EQ(records[0].cells[0], "Rq");
  EXPECT_EQ(records[1].cells[0], "Ra");
  EXPECT_EQ(records[1].cells[3], "out of tolerance");
  EXPECT_EQ(records[0].cells[3], "");
}

TEST_F(SettingsSheet, BearingRatioRowsAreEntries) {
  auto& sheet = Open<CBearingRatioSheet>("bearingRatiosAndHtp");
  EXPECT_EQ(sheet.Pages().count(), 4);
  for (const char* name : {"PRIMARY_BEARING_RATIOS.PSelected00", "ROUGHNESS_BEARING_RATIOS.Selected09",
                           "PRIMARY_HTPS.Selected03", "ROUGHNESS_HTPS.Selected00"}) {
    Field(sheet, name).findChild<QCheckBox*>()->click();
  }
  Type(sheet, "ROUGHNESS_BEARING_RATIOS.DepthUM09", "0.75");
  sheet.accept();
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_EQ(InForce().roughnessMaterialRatios[9].depthUM, 0.75);
  QStringList titles;
  for (const CGridCtrl::Record& record : frame_->findChild<CGridCtrl*>()->Records()) titles << record.cells[0];
  for (const char* title : {"Pmr 1", "Rmr 10", "PHtp 4", "RHtp 1"}) EXPECT_TRUE(titles.contains(title)) << title;
}

/// Every setting that a person would choose can be reached in some sheet.
TEST_F(SettingsSheet, NothingIsOutOfReach) {
  const std::set<std::string_view> reasoned = {
      // Follow from the choice of the cut-offs.
      "LcCutoffMM", "LsCutoffMM", "StandardLcCutoff", "StandardLsCutoff",
      // Chosen profile by profile in the View menu; named and asked for by commands of their own.
      "ProfileType", "Identification", "ParameterFile",
      // The rows of the parameters are those of the catalogue, in the order in which they stand.
      "AvailableParameters", "Name%02d", "SelectionRef%02d",
      // Always ten rows.
      "PrimaryAvailableBearingRatios", "RoughnessAvailableBearingRatios", "PrimaryAvailableHtps",
      "RoughnessAvailableHtps"};
  std::set<const SettingKey*> reached;
  const QDialog* const sheets[] = {&OpenSettings(), &Open<CBearingRatioSheet>("bearingRatiosAndHtp")};
  for (const QDialog* const sheet : sheets) {
    for (const CSettingsPage* const page : sheet->findChildren<CSettingsPage*>()) {
      for (const SettingKey* const key : page->Keys()) reached.insert(key);
    }
  }
  for (const SettingKey& key : SettingsTable()) {
    const std::string_view section = key.binding.section;
    if (section == "TEXTURON" || section == "AUTO_LOADING") continue;
    EXPECT_NE(reached.contains(&key), reasoned.contains(key.binding.key)) << section << "." << key.binding.key;
  }
}

class ShapeSheet : public SettingsSheet {
protected:
  template <typename Page>
  Page& OpenPage(const char* profile, const char* settings) {
    EXPECT_TRUE(frame_->Doc().LoadSettingsFile(Sample(settings)));
    EXPECT_TRUE(frame_->OpenFile(Sample(profile)));
    sheet_ = &OpenSettings();
    auto& page = *sheet_->findChild<Page*>();
    for (int i = 0; i < sheet_->Pages().count(); ++i) {
      if (sheet_->Pages().widget(i)->isAncestorOf(&page)) sheet_->Pages().setCurrentIndex(i);
    }
    return page;
  }
  static void Press(QWidget& page, const QString& text) {
    for (QPushButton* const button : page.findChildren<QPushButton*>()) {
      if (button->text() == text) return button->click();
    }
    ADD_FAILURE() << text.toStdString();
  }
  /// Types into a cell as a user does.
  static void TypeInto(QTableView& table, int row, int column, const QString& text) {
    const QModelIndex index = table.model()->index(row, column);
    table.setCurrentIndex(index);
    table.edit(index);
    auto* const editor = table.viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  static QString RowName(QTableView& table, int row) {
    return table.model()->headerData(row, Qt::Vertical, Qt::DisplayRole).toString();
  }

  CSettingsSheet* sheet_ = nullptr;
};

TEST_F(ShapeSheet, CoefficientsAreATable) {
  auto& page = OpenPage<CAspherePage>("asphere.lmt", "asphere.ini");
  QTableView& table = page.Table();
  ASSERT_EQ(table.model()->rowCount(), 4);
  EXPECT_TRUE(RowName(table, 0).contains("not used"));
  EXPECT_TRUE(RowName(table, 2).endsWith(QString::fromUtf8("u\u2074"))) << RowName(table, 2).toStdString();
  Press(page, "&Add");
  EXPECT_EQ(RowName(table, 4), QString::fromUtf8("A8  u\u2078"));
  TypeInto(table, 4, 0, "5e-6");
  TypeInto(table, 2, 0, "2,5e-4");
  EXPECT_TRUE(page.Fault().contains("decimal comma")) << page.Fault().toStdString();
  EXPECT_TRUE(sheet_->findChild<QLabel*>("fault")->text().contains("decimal comma"));
  EXPECT_EQ(table.model()->index(2, 0).data().toString(), "2,5e-4") << "is shown, not lost";
  EXPECT_TRUE(table.model()->index(2, 0).data(Qt::BackgroundRole).isValid());
  sheet_->ApplyNow();
  EXPECT_EQ(InForce().asphereCoefficients, (std::vector<double>{0.0, 0.0, 2e-4, -1e-6, 5e-6}));
  TypeInto(table, 2, 0, "3e-4");
  EXPECT_EQ(page.Fault(), "");
  // A power in the middle cannot go without moving the others.
  table.selectionModel()->select(table.model()->index(2, 0), QItemSelectionModel::ClearAndSelect);
  table.selectionModel()->select(table.model()->index(4, 0), QItemSelectionModel::Select);
  Press(page, "&Remove");
  sheet_->ApplyNow();
  EXPECT_EQ(InForce().asphereCoefficients, (std::vector<double>{0.0, 0.0, 0.0, -1e-6}));
  Field(*sheet_, "ASPHERIC_PARAMETERS.EvenTermsOnly").findChild<QCheckBox*>()->click();
  EXPECT_EQ(RowName(table, 2), QString::fromUtf8("A4  u\u00B3")) << "every power";
  for (int i = 0; i < 120; ++i) Press(page, "&Add");
  EXPECT_EQ(table.model()->rowCount(), 100);
}

TEST_F(ShapeSheet, TheAspheresPreviewShowsTheSag) {
  auto& page = OpenPage<CAspherePage>("asphere.lmt", "asphere.ini");
  Type(*sheet_, "DISPLAY.AspherePreviewMinXMM", "-2");
  Type(*sheet_, "DISPLAY.AspherePreviewMaxXMM", "3");
  QCustomPlot& plot = page.Preview();
  EXPECT_EQ(plot.xAxis->range(), QCPRange(-2.0, 3.0));
  const AsphereDescription asphere{-0.025, 0.2, {0.0, 0.0, 0.0, 2e-4, 0.0, -1e-6}};
  ASSERT_GT(plot.graph(0)->dataCount(), 1000);
  for (const QCPGraphData& point : *plot.graph(0)->data()) {
    ASSERT_NEAR(point.value, 1000.0 * AsphereSag(point.key, {}, asphere), 1e-6);
  }
  Type(*sheet_, "ASPHERIC_PARAMETERS.C_CurvatureMM", "0");
  Type(*sheet_, "ASPHERIC_PARAMETERS.E_ConicConstant", "-1");
  EXPECT_NEAR((plot.graph(0)->data()->constEnd() - 1)->value, 1000.0 * (81.0 * 2e-4 - 729.0 * 1e-6), 1e-6)
      << "follows the entries at once";
  page.findChild<QPushButton*>("fit")->click();
  EXPECT_EQ(plot.xAxis->range(), QCPRange(-5.0, 5.0)) << "the clear aperture";
  EXPECT_EQ(Line(*sheet_, "DISPLAY.AspherePreviewMaxXMM").text(), "5");
  for (const QCPGraphData& point : *plot.graph(0)->data()) ASSERT_TRUE(plot.yAxis->range().contains(point.value));
}

TEST_F(ShapeSheet, FreeFormPointsComeFromTextAndTable) {
  auto& page = OpenPage<CFreeFormPage>("freeform.lmt", "freeform.ini");
  QTableView& table = page.Table();
  ASSERT_EQ(table.model()->rowCount(), 251);
  QApplication::clipboard()->setText("X\tZ\n0\t1,5\n1\t2\n2\t4\n4\t3\n");
  Press(page, "&Paste");
  sheet_->ApplyNow();
  const std::vector<FreeFormPoint> wanted = {{0, 1.5}, {1, 2}, {2, 4}, {4, 3}};
  EXPECT_EQ(InForce().freeFormPoints, wanted);
  EXPECT_EQ(page.Preview().xAxis->range(), QCPRange(0.0, 4.0)) << "the preview shows them all";
  EXPECT_EQ(page.Preview().graph(1)->dataCount(), 4);
  table.setCurrentIndex(table.model()->index(1, 0));
  Press(page, "&Add");
  TypeInto(table, 2, 0, "1.5");
  TypeInto(table, 2, 1, "x");
  EXPECT_FALSE(page.Fault().isEmpty());
  TypeInto(table, 2, 1, "3.25");
  table.selectionModel()->select(table.model()->index(0, 0), QItemSelectionModel::ClearAndSelect);
  Press(page, "&Remove");
  sheet_->ApplyNow();
  EXPECT_EQ(InForce().freeFormPoints, (std::vector<FreeFormPoint>{{1, 2}, {1.5, 3.25}, {2, 4}, {4, 3}}));
  const ScratchFolder folder;
  EXPECT_FALSE(page.TakeFile(folder.Write("bad.txt", "1 2\n3 four\n")));
  EXPECT_FALSE(page.TakeFile(folder / "none.txt"));
  ASSERT_EQ(prompts_.messages.size(), 2U);
  EXPECT_NE(prompts_.messages[0].find("line 2: not two numbers."), std::string::npos) << prompts_.messages[0];
  EXPECT_EQ(table.model()->rowCount(), 4) << "the points stay";
  EXPECT_TRUE(page.TakeFile(folder.Write("good.txt", "0;0\n1;1\n2;4\n3;9\n4;16\n")));
  EXPECT_EQ(table.model()->rowCount(), 5);
  sheet_->reject();
  EXPECT_EQ(InForce().freeFormPoints.size(), 251U) << "Cancel puts everything back";
}

TEST_F(SettingsSheet, CancelTakesBackOnlyItsOwn) {
  const ScratchFolder folder;
  CSettingsSheet& sheet = OpenSettings();
  Type(sheet, "ANALYSIS.SplineTension", "0.5");
  sheet.ApplyNow();
  Choose("metric");
  ASSERT_TRUE(
      frame_->Doc().LoadSettingsFile(folder.Write("a.ini", "[ANALYSIS]\nLcCutoffMM=2.5\nStandardLcCutoff=1\n")));
  EXPECT_EQ(InForce().SplineTension, 0.5);
  sheet.reject();
  EXPECT_EQ(InForce().SplineTension, 0.625242);
  EXPECT_EQ(InForce().LcCutoffMM, 2.5);
  EXPECT_FALSE(frame_->Doc().document().settings.display.Metric);
  Choose("metric");
}

TEST_F(SettingsSheet, WhatIsEnteredIsOneEdit) {
  CSettingsSheet& sheet = OpenSettings();
  for (const char* const tension : {"0.5", "0.25"}) {
    Type(sheet, "ANALYSIS.SplineTension", tension);
    sheet.ApplyNow();
  }
  sheet.accept();
  EXPECT_EQ(InForce().SplineTension, 0.25);
  frame_->Doc().Undo();
  EXPECT_EQ(InForce().SplineTension, 0.625242);
  EXPECT_FALSE(frame_->Doc().CanUndo());
  sheet.show();
  Type(sheet, "ANALYSIS.SplineTension", "0.5");
  sheet.ApplyNow();
  sheet.reject();
  EXPECT_FALSE(frame_->Doc().CanUndo()) << "what was cancelled never was";
}

TEST_F(SettingsSheet, NeitherBoxNorEnterNorWheelDisturbsTyping) {
  CSettingsSheet& sheet = OpenSettings();
  auto& kinds = *Field(sheet, "ANALYSIS.FilterType").findChild<QComboBox*>();
  const int before = kinds.currentIndex();
  kinds.clearFocus();
  QWheelEvent wheel({5, 5}, kinds.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                    false);
  QApplication::sendEvent(&kinds, &wheel);
  EXPECT_EQ(kinds.currentIndex(), before);
  ChooseFrom(kinds, kFilterIso13565);
  auto& cutoffs = *sheet.findChild<QComboBox*>("UserLcCutoffMMChoice");
  ChooseFrom(cutoffs, cutoffs.count() - 1);
  Type(sheet, "ANALYSIS.UserLcCutoffMM", "8");
  sheet.ApplyNow();
  EXPECT_TRUE(prompts_.messages.empty());
  EXPECT_EQ(sheet.findChild<QLabel*>("fault")->text(), "Waviness Not Computed - using Primary as Waviness");
  QTest::keyClick(&Line(sheet, "ANALYSIS.UserLcCutoffMM"), Qt::Key_Return);
  EXPECT_TRUE(sheet.isVisible());
}

TEST_F(SettingsSheet, EveryWrongLimitIsHeld) {
  CSettingsSheet& sheet = OpenSettings();
  sheet.Pages().setCurrentIndex(2);
  auto& table = *sheet.findChild<QTableWidget*>("parameters");
  table.item(0, 4)->setText("abc");
  table.item(1, 4)->setText("0.5");
  sheet.ApplyNow();
  EXPECT_EQ(InForce().parameters[1].tolerance.lowerLimit, 0.5);
  EXPECT_EQ(table.item(0, 4)->text(), "abc");
  sheet.accept();
  EXPECT_TRUE(sheet.isVisible()) << "a wrong entry is shown rather than lost";
  table.item(0, 4)->setText("0.25");
  sheet.accept();
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_EQ(InForce().parameters[0].tolerance.lowerLimit, 0.25);
}

}  // namespace
}  // namespace texturon
