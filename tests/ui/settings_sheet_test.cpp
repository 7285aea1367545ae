// SPDX-License-Identifier: Apache-2.0

// The settings sheets, typed into and clicked as a user does.

#include "ui/sheets/settings_sheet.h"

#include <set>

#include "settings/setting_entry.h"
#include "ui/sheets/parameters_page.h"
#include "ui/sheets/shape_pages.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class SettingsSheet : public WindowTest {
protected:
  SettingsSheet() : WindowTest("ground.lmt") {}

  template <typename Sheet>
  Sheet& Open(const QString& command) {
    Choose(command);
    return Child<Sheet>(*frame_);
  }
  CSettingsSheet& OpenSettings() { return Open<CSettingsSheet>("settings"); }

  static CSettingField& Field(const QWidget& sheet, const QString& name) { return Child<CSettingField>(sheet, name); }
  static void Type(const QWidget& sheet, const QString& name, const QString& text) {
    texturon::Type(Child(Field(sheet, name)), text);
  }
  static void ChooseFrom(QComboBox& list, int index) {
    list.setCurrentIndex(index);
    emit list.activated(index);
  }
  QString Fault(const QWidget& sheet) { return Child<QLabel>(sheet, "fault").text(); }
  const AnalysisSettings& Analysis() { return InForce().settings.analysis; }
};

/// Enters something else, whether the field is greyed or not; returns what then must be in force.
SettingValue EnterAnother(const CSettingField& field, const SettingValue& present) {
  const SettingKey& key = *field.Place().key;
  if (auto* const box = field.findChild<QCheckBox*>()) {
    box->setChecked(!box->isChecked());
    emit box->clicked(box->isChecked());
    return box->isChecked();
  }
  if (auto* const list = field.findChild<QComboBox*>()) {
    const int index = list->currentIndex() == 0 ? 1 : 0;
    emit list->activated(index);
    return ChoicesOf(key)[static_cast<std::size_t>(index)].value;
  }
  for (const char* const text : {"0.5", "2", "30", "a word"}) {
    const EntryReading entry = ReadEntry(key, text, false);
    if (!entry.ok() || entry.value == present) continue;
    emit Child(field).textEdited(text);
    EXPECT_EQ(field.Fault(), "");
    return entry.value;
  }
  ADD_FAILURE() << "nothing to enter";
  return present;
}

TEST_F(SettingsSheet, EveryEntryGoesIntoTheAnalysisAndCancelTakesItBack) {
  Choose("metric");
  const Settings before = InForce().settings;
  std::set<const SettingKey*> reached;
  CLiveSheet* const sheets[] = {&OpenSettings(), &Open<CBearingRatioSheet>("bearingRatiosAndHtp")};
  for (CLiveSheet* const sheet : sheets) {
    for (const CSettingsPage* const page : sheet->findChildren<CSettingsPage*>()) {
      for (const SettingKey* const key : page->Keys()) reached.insert(key);
    }
    for (const CSettingField* const field : sheet->findChildren<CSettingField*>()) {
      const auto& [key, row] = field->Place();
      const auto wanted = EnterAnother(*field, key->binding.get(InForce().settings, row));
      sheet->ApplyNow();
      EXPECT_EQ(key->binding.get(InForce().settings, row), wanted) << field->objectName().toStdString();
      sheet->reject();
      EXPECT_EQ(InForce().settings, before) << field->objectName().toStdString();
      sheet->show();
    }
  }
  // Every setting that a person would choose can be reached in some sheet.
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
  for (const SettingKey& key : SettingsTable()) {
    const std::string_view section = key.binding.section;
    if (section == "TEXTURON" || section == "AUTO_LOADING") continue;
    EXPECT_NE(reached.contains(&key), reasoned.contains(key.binding.key)) << section << "." << key.binding.key;
  }
}

TEST_F(SettingsSheet, CutoffsAreChosenOrEnteredAndFieldsFollow) {
  CSettingsSheet& sheet = OpenSettings();
  ChooseFrom(Child<QComboBox>(Field(sheet, "ANALYSIS.FormRemovalType")), 4);
  EXPECT_TRUE(Field(sheet, "ANALYSIS.PolynomialOrder").isEnabled());
  EXPECT_FALSE(Field(sheet, "ANALYSIS.FixedRadiusMM").isEnabled()) << "belongs to another form";
  auto& cutoffs = Child<QComboBox>(sheet, "UserLcCutoffMMChoice");
  EXPECT_EQ(cutoffs.currentText(), "0.8 mm");
  ChooseFrom(cutoffs, 1);
  sheet.ApplyNow();
  EXPECT_EQ(Analysis().LcCutoffMM, 0.25);
  ChooseFrom(cutoffs, cutoffs.count() - 1);
  Type(sheet, "ANALYSIS.UserLcCutoffMM", "0.5");
  // Applied without asking, and what the analysis itself sets comes back into the sheet.
  ChooseFrom(Child<QComboBox>(Field(sheet, "ANALYSIS.UserDiscardType")), 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Analysis().LcCutoffMM == 0.5; }, 3000));
  EXPECT_FALSE(Analysis().StandardLcCutoff);
  EXPECT_EQ(Child(Field(sheet, "ANALYSIS.UserDiscardLengthMM")).text(), "0.25");
}

TEST_F(SettingsSheet, WrongEntriesAreMarkedAndLeaveTheSettings) {
  CSettingsSheet& sheet = OpenSettings();
  const Settings before = InForce().settings;
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"ANALYSIS.RoughnessPcLevel", "2,5", "decimal comma"}, {"MOTIF_PARAMETERS.MotifAMM", "", "is no number"}};
  for (const auto& [name, text, reason] : cases) {
    Type(sheet, name, text);
    EXPECT_TRUE(Field(sheet, name).Fault().contains(reason)) << Field(sheet, name).Fault().toStdString();
    EXPECT_TRUE(Fault(sheet).contains(reason));
    EXPECT_FALSE(Child(Field(sheet, name)).styleSheet().isEmpty());
    sheet.ApplyNow();
    EXPECT_EQ(InForce().settings, before);
    sheet.accept();
    EXPECT_TRUE(sheet.isVisible()) << "OK shows the entry instead of losing it";
    EXPECT_TRUE(Child(Field(sheet, name)).isVisible());
    Type(sheet, name, "0.5");
    EXPECT_EQ(Field(sheet, name).Fault(), "");
    sheet.reject();
    OpenSettings();
  }
  EXPECT_TRUE(prompts_.messages.empty()) << "no message box";
}

TEST_F(SettingsSheet, ParametersAreSelectedOrderedAndToleranced) {
  CSettingsSheet& sheet = OpenSettings();
  auto& table = Child<QTableWidget>(sheet, "parameters");
  auto& page = Child<CParametersPage>(sheet);
  page.SelectAll(false);
  const auto rowOf = [&](const QString& name) { return table.findItems(name, Qt::MatchExactly).front()->row(); };
  for (const auto& [name, column] : {std::pair("Ra", 0), {"Rq", 0}, {"Ra", 2}}) {
    table.item(rowOf(name), column)->setCheckState(Qt::Checked);
  }
  table.item(rowOf("Ra"), 5)->setText("a quarter");
  table.item(rowOf("Rq"), 4)->setText("0.5");
  EXPECT_TRUE(page.Fault().startsWith("Ra: "));
  sheet.ApplyNow();
  EXPECT_EQ(table.item(rowOf("Ra"), 5)->text(), "a quarter") << "a wrong entry is held while others apply";
  EXPECT_EQ(Analysis().parameters[static_cast<std::size_t>(rowOf("Rq"))].tolerance.lowerLimit, 0.5);
  sheet.accept();
  EXPECT_TRUE(sheet.isVisible());
  table.item(rowOf("Ra"), 5)->setText("0.25");
  EXPECT_EQ(page.Fault(), "");
  table.setCurrentCell(rowOf("Rq"), 0);
  while (rowOf("Rq") > rowOf("Ra")) page.Move(-1);
  sheet.accept();
  EXPECT_FALSE(sheet.isVisible());
  const QList<CGridCtrl::Record>& records = frame_->ParamView().Grid().Records();
  ASSERT_EQ(records.size(), 2);
  EXPECT_EQ(records[0].cells[0] + records[1].cells[0], "RqRa");
  EXPECT_EQ(records[0].cells[3] + records[1].cells[3], "out of tolerance");
}

TEST_F(SettingsSheet, WhatIsEnteredIsOneEditAndCancelTakesBackOnlyItsOwn) {
  CSettingsSheet& sheet = OpenSettings();
  const double preset = Analysis().SplineTension;
  for (const char* const tension : {"0.5", "0.25"}) {
    Type(sheet, "ANALYSIS.SplineTension", tension);
    sheet.ApplyNow();
  }
  sheet.accept();
  EXPECT_EQ(Analysis().SplineTension, 0.25);
  Doc().Undo();
  EXPECT_EQ(Analysis().SplineTension, preset);
  EXPECT_FALSE(Doc().CanUndo());
  for (const bool loads : {false, true}) {
    sheet.show();
    Type(sheet, "ANALYSIS.SplineTension", "0.5");
    sheet.ApplyNow();
    if (loads) {
      const auto file = folder_.Write("a.ini", "[ANALYSIS]\nLcCutoffMM=2.5\nStandardLcCutoff=1\n");
      ASSERT_TRUE(Doc().LoadSettingsFile(file));
    }
    EXPECT_EQ(Analysis().SplineTension, 0.5);
    sheet.reject();
    EXPECT_EQ(Analysis().SplineTension, preset);
    EXPECT_EQ(Analysis().LcCutoffMM, loads ? 2.5 : 0.8);
    EXPECT_TRUE(loads || !Doc().CanUndo()) << "what was cancelled never was";
  }
}

TEST_F(SettingsSheet, NeitherBoxNorEnterNorWheelDisturbsTyping) {
  CSettingsSheet& sheet = OpenSettings();
  auto& kinds = Child<QComboBox>(Field(sheet, "ANALYSIS.FilterType"));
  const int before = kinds.currentIndex();
  kinds.clearFocus();
  const QPointF place(5, 5);
  QWheelEvent wheel(place, kinds.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&kinds, &wheel);
  EXPECT_EQ(kinds.currentIndex(), before);
  ChooseFrom(kinds, kFilterIso13565);
  auto& cutoffs = Child<QComboBox>(sheet, "UserLcCutoffMMChoice");
  ChooseFrom(cutoffs, cutoffs.count() - 1);
  Type(sheet, "ANALYSIS.UserLcCutoffMM", "8");
  sheet.ApplyNow();
  EXPECT_TRUE(prompts_.messages.empty());
  EXPECT_EQ(Fault(sheet), "Waviness Not Computed - using Primary as Waviness");
  QTest::keyClick(&Child(Field(sheet, "ANALYSIS.UserLcCutoffMM")), Qt::Key_Return);
  EXPECT_TRUE(sheet.isVisible());
}

class ShapeSheet : public SettingsSheet {
protected:
  template <typename Page>
  Page& OpenPage(const char* profile, const char* settings) {
    EXPECT_TRUE(Doc().LoadSettingsFile(Sample(settings)));
    EXPECT_TRUE(frame_->OpenFile(Sample(profile)));
    sheet_ = &OpenSettings();
    // The preview is drawn where it is seen.
    sheet_->Pages().setCurrentIndex(std::is_same_v<Page, CAspherePage> ? 7 : 9);
    return Child<Page>(*sheet_);
  }
  /// Types into a cell as a user does.
  static void TypeInto(QTableView& table, int row, int column, const QString& text) {
    const QModelIndex index = table.model()->index(row, column);
    table.setCurrentIndex(index);
    table.edit(index);
    auto& editor = Child(*table.viewport());
    texturon::Type(editor, text);
    QTest::keyClick(&editor, Qt::Key_Return);
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  CSettingsSheet* sheet_ = nullptr;
};

TEST_F(ShapeSheet, CoefficientsAreATable) {
  auto& page = OpenPage<CAspherePage>("asphere.lmt", "asphere.ini");
  QTableView& table = page.Table();
  const auto name = [&table](int row) { return table.model()->headerData(row, Qt::Vertical).toString(); };
  ASSERT_EQ(table.model()->rowCount(), 4);
  Press(page, "&Add");
  EXPECT_EQ(name(4), QString::fromUtf8("A8  u\u2078"));
  TypeInto(table, 4, 0, "5e-6");
  TypeInto(table, 2, 0, "2,5e-4");
  EXPECT_TRUE(page.Fault().contains("decimal comma") && Fault(*sheet_).contains("decimal comma"));
  EXPECT_EQ(table.model()->index(2, 0).data().toString(), "2,5e-4") << "is shown, not lost";
  sheet_->ApplyNow();
  EXPECT_EQ(Analysis().asphereCoefficients, (std::vector<double>{0.0, 0.0, 2e-4, -1e-6, 5e-6}));
  TypeInto(table, 2, 0, "3e-4");
  EXPECT_EQ(page.Fault(), "");
  // A power in the middle cannot go without moving the others.
  for (const int row : {2, 4}) {
    table.selectionModel()->select(table.model()->index(row, 0), QItemSelectionModel::Select);
  }
  Press(page, "&Remove");
  sheet_->ApplyNow();
  EXPECT_EQ(Analysis().asphereCoefficients, (std::vector<double>{0.0, 0.0, 0.0, -1e-6}));
  Child<QCheckBox>(Field(*sheet_, "ASPHERIC_PARAMETERS.EvenTermsOnly")).click();
  EXPECT_EQ(name(2), QString::fromUtf8("A4  u\u00B3")) << "every power";
  for (int i = 0; i < 120; ++i) Press(page, "&Add");
  EXPECT_EQ(table.model()->rowCount(), 100);
}

TEST_F(ShapeSheet, TheAspheresPreviewShowsTheSag) {
  auto& page = OpenPage<CAspherePage>("asphere.lmt", "asphere.ini");
  const QCustomPlot& plot = page.Preview();
  Type(*sheet_, "DISPLAY.AspherePreviewMaxXMM", "3");
  Type(*sheet_, "ASPHERIC_PARAMETERS.C_CurvatureMM", "0");
  Type(*sheet_, "ASPHERIC_PARAMETERS.E_ConicConstant", "-1");
  EXPECT_NEAR((plot.graph(0)->data()->constEnd() - 1)->value, 1000.0 * (81.0 * 2e-4 - 729.0 * 1e-6), 1e-6)
      << "follows the entries at once";
  Child<QPushButton>(page, "fit").click();
  EXPECT_EQ(plot.xAxis->range(), QCPRange(-5.0, 5.0)) << "the clear aperture";
}

TEST_F(ShapeSheet, FreeFormPointsComeFromTextAndTable) {
  auto& page = OpenPage<CFreeFormPage>("freeform.lmt", "freeform.ini");
  QTableView& table = page.Table();
  QApplication::clipboard()->setText("X\tZ\n0\t1,5\n1\t2\n2\t4\n4\t3\n");
  Press(page, "&Paste");
  sheet_->ApplyNow();
  EXPECT_EQ(Analysis().freeFormPoints, (std::vector<FreeFormPoint>{{0, 1.5}, {1, 2}, {2, 4}, {4, 3}}));
  EXPECT_EQ(page.Preview().xAxis->range(), QCPRange(0.0, 4.0)) << "the preview shows them all";
  EXPECT_EQ(page.Preview().graph(1)->dataCount(), 4);
  table.setCurrentIndex(table.model()->index(1, 0));
  Press(page, "&Add");
  TypeInto(table, 2, 0, "1.5");
  TypeInto(table, 2, 1, "3.25");
  table.selectionModel()->select(table.model()->index(0, 0), QItemSelectionModel::ClearAndSelect);
  Press(page, "&Remove");
  sheet_->ApplyNow();
  EXPECT_EQ(Analysis().freeFormPoints, (std::vector<FreeFormPoint>{{1, 2}, {1.5, 3.25}, {2, 4}, {4, 3}}));
  EXPECT_FALSE(page.TakeFile(folder_.Write("bad.txt", "1 2\n3 four\n")));
  ASSERT_EQ(prompts_.messages.size(), 1U);
  EXPECT_NE(prompts_.messages[0].find("line 2: not two numbers."), std::string::npos) << prompts_.messages[0];
  EXPECT_TRUE(page.TakeFile(folder_.Write("good.txt", "0;0\n1;1\n2;4\n3;9\n4;16\n")));
  EXPECT_EQ(table.model()->rowCount(), 5);
  sheet_->reject();
  EXPECT_EQ(Analysis().freeFormPoints.size(), 251U) << "Cancel puts everything back";
}

}  // namespace
}  // namespace texturon
