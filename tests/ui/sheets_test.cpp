// SPDX-License-Identifier: Apache-2.0

// The settings sheets and the dialogs that say what to compute over, typed into and clicked as a user does.

#include <set>

#include "settings/setting_entry.h"
#include "settings/settings_text.h"
#include "support/small_profiles.h"
#include "ui/sheets/parameters_page.h"
#include "ui/sheets/presets.h"
#include "ui/sheets/region_dialogs.h"
#include "ui/sheets/settings_sheet.h"
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
  static void Enter(const QWidget& sheet, const QString& name, const QString& text) {
    Type(Child(Field(sheet, name)), text);
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
    const std::vector<std::string_view> words = WordsOf(key.binding);
    if (!words.empty()) return std::string(words[static_cast<std::size_t>(index)]);
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
  // A short record and no window that draws it: the analysis runs for every field.
  Environment environment = SystemEnvironment();
  environment.traceFile.clear();
  CTexturonDoc doc(prompts_, environment, nullptr);
  ASSERT_TRUE(doc.Open(folder_.Write("short.lmt", SmallProfile(100, 1.0))));
  DisplaySettings inches = doc.document().settings.display;
  inches.Metric = !inches.Metric;
  doc.ReplaceDisplay(inches);
  const Settings before = doc.document().settings;
  std::set<const SettingKey*> reached;
  CSettingsSheet settingsSheet(doc, nullptr);
  CBearingRatioSheet ratioSheet(doc, nullptr);
  for (CLiveSheet* const sheet : {static_cast<CLiveSheet*>(&settingsSheet), static_cast<CLiveSheet*>(&ratioSheet)}) {
    for (const CSettingsPage* const page : sheet->findChildren<CSettingsPage*>()) {
      for (const SettingKey* const key : page->Keys()) reached.insert(key);
      for (const CSettingField* const field : page->findChildren<CSettingField*>()) {
        const auto& [key, row] = field->Place();
        sheet->show();
        const auto wanted = EnterAnother(*field, key->binding.get(doc.document().settings, row));
        sheet->ApplyNow();
        EXPECT_EQ(key->binding.get(doc.document().settings, row), wanted) << field->objectName().toStdString();
        sheet->reject();
        EXPECT_EQ(doc.document().settings, before) << field->objectName().toStdString();
      }
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
  EXPECT_FALSE(Field(sheet, "ANALYSIS.FixedRadiusMM").isEnabled());
  auto& cutoffs = Child<QComboBox>(sheet, "UserLcCutoffMMChoice");
  ChooseFrom(cutoffs, 1);
  sheet.ApplyNow();
  EXPECT_EQ(Analysis().LcCutoffMM, 0.25);
  ChooseFrom(cutoffs, cutoffs.count() - 1);
  Enter(sheet, "ANALYSIS.UserLcCutoffMM", "0.5");
  // Applied without asking, and what the analysis itself sets comes back into the sheet.
  ChooseFrom(Child<QComboBox>(Field(sheet, "ANALYSIS.UserDiscardType")), 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Analysis().LcCutoffMM == 0.5; }, 3000));
  EXPECT_FALSE(Analysis().StandardLcCutoff);
  EXPECT_EQ(Child(Field(sheet, "ANALYSIS.UserDiscardLengthMM")).text(), "0.25");
}

TEST_F(SettingsSheet, WrongEntriesAreMarkedAndLeaveTheSettings) {
  CSettingsSheet& sheet = OpenSettings();
  const Settings before = InForce().settings;
  const char* const name = "ANALYSIS.RoughnessPcLevel";
  Enter(sheet, name, "2,5");
  EXPECT_TRUE(Field(sheet, name).Fault().contains("decimal comma"));
  EXPECT_TRUE(Fault(sheet).contains("decimal comma"));
  EXPECT_FALSE(Child(Field(sheet, name)).styleSheet().isEmpty());
  sheet.ApplyNow();
  EXPECT_EQ(InForce().settings, before);
  sheet.accept();
  EXPECT_TRUE(sheet.isVisible()) << "OK shows the entry instead of losing it";
  EXPECT_TRUE(Child(Field(sheet, name)).isVisible());
  Enter(sheet, name, "0.5");
  EXPECT_EQ(Field(sheet, name).Fault(), "");
  EXPECT_TRUE(prompts_.messages.empty()) << "no message box";
}

TEST_F(SettingsSheet, ParametersAreSelectedOrderedAndToleranced) {
  CSettingsSheet& sheet = OpenSettings();
  auto& table = Child<QTableWidget>(sheet, "parameters");
  auto& page = Child<CParametersPage>(sheet);
  page.SelectAll(false);
  const auto rowOf = [&](const QString& name) { return table.findItems(name, Qt::MatchExactly).front()->row(); };
  // Who looks for a name is not shown the definitions that hold its letters.
  for (const auto& [text, hidesRange] : {std::pair("ra", true), {"range", false}, {"", false}}) {
    Child<QLineEdit>(page).setText(text);
    EXPECT_EQ(table.isRowHidden(rowOf("Rt")), hidesRange) << text;
  }
  for (const auto& [name, column] : {std::pair("Ra", 0), {"Rq", 0}, {"Ra", 2}}) {
    table.item(rowOf(name), column)->setCheckState(Qt::Checked);
  }
  table.item(rowOf("Ra"), 5)->setText("a quarter");
  EXPECT_TRUE(page.Fault().startsWith("Ra: "));
  sheet.ApplyNow();
  EXPECT_EQ(table.item(rowOf("Ra"), 5)->text(), "a quarter") << "a wrong entry is held while others apply";
  sheet.accept();
  EXPECT_TRUE(sheet.isVisible());
  auto& leader = Child<QPushButton>(sheet, "leadToFault");
  Child<QLineEdit>(page).setText("Wt");
  EXPECT_TRUE(table.isRowHidden(rowOf("Ra")) && leader.isVisible());
  leader.click();
  EXPECT_TRUE(!table.isRowHidden(rowOf("Ra")) && table.currentRow() == rowOf("Ra") && table.currentColumn() == 5);
  table.item(rowOf("Ra"), 5)->setText("0.25");
  EXPECT_FALSE(leader.isVisible());
  Child<QLineEdit>(page).setText("Rz");
  EXPECT_EQ(table.currentRow(), rowOf("RzDIN")) << "which drawings call Rz";
  EXPECT_TRUE(table.item(rowOf("RzDIN"), table.columnCount() - 1)->text().endsWith("Also called Rz."));
  Child<QLineEdit>(page).clear();
  table.item(rowOf("Rq"), 4)->setText("1.5");
  EXPECT_EQ(table.item(rowOf("Rq"), 2)->checkState(), Qt::Checked) << "who types a limit wants it to count";
  EXPECT_EQ(table.item(rowOf("Rq"), 3)->checkState(), Qt::Checked) << "the lower one counts where both do";
  EXPECT_EQ(table.item(rowOf("Ra"), 3)->checkState(), Qt::Unchecked);
  table.item(rowOf("Rq"), 2)->setCheckState(Qt::Unchecked);
  table.setCurrentCell(rowOf("Rq"), 0);
  while (rowOf("Rq") > rowOf("Ra")) page.Move(-1);
  sheet.accept();
  EXPECT_FALSE(sheet.isVisible());
  const QList<CGridCtrl::Record>& records = frame_->ParamView().Grid().Records();
  ASSERT_EQ(records.size(), 2);
  EXPECT_EQ(records[0].cells[0] + records[1].cells[0], "RqRa");
  EXPECT_EQ(records[0].cells[3] + records[1].cells[3], "out of tolerance");
}

TEST_F(SettingsSheet, RowsAndFeaturesOfTheEditionChosen) {
  CSettingsSheet& sheet = OpenSettings();
  auto& table = Child<QTableWidget>(sheet, "parameters");
  auto& edition = Child<QComboBox>(Field(sheet, "STANDARD.Edition"));
  const auto show = [&](const char* name) {
    ChooseFrom(edition, edition.findText(name));
    sheet.ApplyNow();
  };
  const auto rowOf = [&](const QString& name) { return table.findItems(name, Qt::MatchExactly).value(0); };
  auto& longWaves = Child<QComboBox>(Field(sheet, "STANDARD.LongWaveFilter"));
  EXPECT_EQ(longWaves.currentText(), "as on the page Filters");
  ChooseFrom(longWaves, longWaves.findText("robust Gaussian, second order"));
  sheet.ApplyNow();
  EXPECT_EQ(InForce().settings.analysis.standard.LongWaveFilter, "robust-gaussian-2");
  ChooseFrom(longWaves, 0);
  show("both");
  ASSERT_TRUE(rowOf("Rp (both)") && rowOf("Rpt (2021)") && rowOf("RzDIN (1997)"));
  EXPECT_TRUE(table.item(rowOf("Rp (both)")->row(), 7)->text().contains(" 2021: Mean over the sections"));
  show("2021");
  ASSERT_TRUE(rowOf("Rpt") && !rowOf("RzDIN"));
  Child<CParametersPage>(sheet).SelectAll(false);
  rowOf("Rpt")->setCheckState(Qt::Checked);
  auto& features = Child<QPlainTextEdit>(sheet, "features");
  features.setPlainText("R: FC; D; None; All; HDh");
  EXPECT_TRUE(Fault(sheet).contains("has 5 pieces")) << Fault(sheet).toStdString();
  features.setPlainText("\nR: FC; D; None; All; HDh; Mean\n");
  EXPECT_EQ(Fault(sheet), "");
  sheet.accept();
  const QList<CGridCtrl::Record>& records = frame_->ParamView().Grid().Records();
  ASSERT_EQ(records.size(), 2);
  EXPECT_EQ(records[0].cells[0] + ", " + records[1].cells[0], "Rpt, R: FC; D; None; All; HDh; Mean");
}

TEST_F(SettingsSheet, AListFollowsTheEditionAndComesBackWhole) {
  CSettingsSheet& sheet = OpenSettings();
  auto& table = Child<QTableWidget>(sheet, "parameters");
  auto& edition = Child<QComboBox>(Field(sheet, "STANDARD.Edition"));
  const auto rowOf = [&](const QString& name) { return table.findItems(name, Qt::MatchExactly).value(0); };
  table.item(rowOf("Rdq")->row(), 5)->setText("9");
  table.item(rowOf("RzDIN")->row(), 5)->setText("5");
  rowOf("Pku")->setCheckState(Qt::Unchecked);
  sheet.accept();
  const std::vector<ParameterSelection> before = Analysis().parameters;
  sheet.show();
  ChooseFrom(edition, edition.findText("2021"));
  EXPECT_TRUE(Fault(sheet).startsWith("2021: there is no row for ")) << Fault(sheet).toStdString();
  EXPECT_TRUE(Fault(sheet).contains("the limits of Rdq are left out")) << Fault(sheet).toStdString();
  sheet.ApplyNow();
  EXPECT_TRUE(prompts_.messages.empty()) << "no row is unknown";
  ASSERT_TRUE(rowOf("Rz") && !rowOf("RzDIN"));
  EXPECT_EQ(rowOf("Rz")->checkState(), Qt::Checked);
  EXPECT_EQ(table.item(rowOf("Rz")->row(), 5)->text(), "5");
  // Who only looks at another edition has his own list again.
  ChooseFrom(edition, edition.findText("1997"));
  sheet.ApplyNow();
  EXPECT_EQ(Analysis().parameters, before);
  ChooseFrom(edition, edition.findText("2021"));
  sheet.accept();
  EXPECT_NE(Analysis().parameters, before);
  Doc().Undo();
  EXPECT_EQ(Analysis().parameters, before);
  // A settings file that names an edition, but no rows.
  ASSERT_TRUE(Doc().LoadSettingsFile(folder_.Write("edition.ini", "[STANDARD]\nEdition=2021\n")));
  EXPECT_TRUE(std::any_of(Analysis().parameters.begin(), Analysis().parameters.end(),
                          [](const ParameterSelection& row) { return row.name == "Rz"; }));
}

TEST_F(SettingsSheet, WhatIsEnteredIsOneEditAndCancelTakesBackOnlyItsOwn) {
  CSettingsSheet& sheet = OpenSettings();
  const double preset = Analysis().SplineTension;
  const auto enter = [&](const char* tension) {
    Enter(sheet, "ANALYSIS.SplineTension", tension);
    sheet.ApplyNow();
  };
  enter("0.5");
  enter("0.25");
  sheet.accept();
  Choose("undo");
  EXPECT_EQ(Analysis().SplineTension, preset);
  EXPECT_FALSE(Doc().CanUndo());
  sheet.show();
  enter("0.5");
  sheet.reject();
  EXPECT_FALSE(Doc().CanUndo()) << "what was cancelled never was";
  EXPECT_EQ(
      frame_->statusBar()->currentMessage().toStdString(),
      "Put back as it was: tension of the spline Gaussian and robust Gaussian filters. Redo brings the changes back.");
  Choose("redo");
  EXPECT_EQ(Analysis().SplineTension, 0.5);
  Choose("undo");
  sheet.show();
  enter("0.5");
  ASSERT_TRUE(Doc().LoadSettingsFile(folder_.Write("a.ini", "[ANALYSIS]\nLcCutoffMM=2.5\nStandardLcCutoff=1\n")));
  EXPECT_EQ(Analysis().SplineTension, 0.5);
  sheet.reject();
  EXPECT_EQ(Analysis().SplineTension, preset);
  EXPECT_EQ(Analysis().LcCutoffMM, 2.5);
}

TEST_F(SettingsSheet, AnEntryThatIsTypedBackIsNoPartOfTheFormerEdit) {
  Change([](AnalysisSettings& analysis) { analysis.LcCutoffMM = 0.25; });
  CSettingsSheet& sheet = OpenSettings();
  for (const char* const tension : {"0.5", "0.625242", "0.25"}) {
    Enter(sheet, "ANALYSIS.SplineTension", tension);
    sheet.ApplyNow();
  }
  sheet.accept();
  Choose("undo");
  EXPECT_EQ(Analysis().LcCutoffMM, 0.25);
}

TEST_F(SettingsSheet, NeitherEnterNorWheelDisturbsTyping) {
  CSettingsSheet& sheet = OpenSettings();
  auto& kinds = Child<QComboBox>(Field(sheet, "ANALYSIS.FilterType"));
  const int before = kinds.currentIndex();
  kinds.clearFocus();
  const QPointF place(5, 5);
  QWheelEvent wheel(place, kinds.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&kinds, &wheel);
  EXPECT_EQ(kinds.currentIndex(), before);
}

TEST_F(SettingsSheet, EnterIsOkWhereverItIsPressed) {
  CSettingsSheet& sheet = OpenSettings();
  Enter(sheet, "ANALYSIS.SplineTension", "0.5");
  QTest::keyClick(&Child(Field(sheet, "ANALYSIS.SplineTension")), Qt::Key_Return);
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_EQ(Analysis().SplineTension, 0.5);
  const auto before = Analysis().parameters;
  for (const char* const button : {"Up", "Down", "None"}) {
    OpenSettings().Pages().setCurrentIndex(2);
    Child<QTableWidget>(sheet, "parameters").setCurrentCell(3, 0);
    for (QPushButton* const each : sheet.findChildren<QPushButton*>()) {
      if (each->text().remove('&') == button) QTest::keyClick(each, Qt::Key_Return);
    }
    EXPECT_FALSE(sheet.isVisible()) << button;
    EXPECT_EQ(Analysis().parameters, before) << button;
  }
  OpenSettings();
  Enter(sheet, "ANALYSIS.SplineTension", "0.25");
  QTest::keyClick(&Child(Field(sheet, "ANALYSIS.SplineTension")), Qt::Key_Escape);
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_EQ(Analysis().SplineTension, 0.5);
}

TEST_F(SettingsSheet, StandsBesideTheProfileAndFitsAnyScreen) {
  for (const auto& [size, language] : {std::pair(QSize(1366, 700), "en"), std::pair(QSize(960, 486), "de"),
                                       std::pair(QSize(960, 486), "en"), std::pair(QSize(683, 360), "en")}) {
    UseLanguage(language);
    MakeFrame(prompts_);
    frame_->show();
    frame_->resize(size);
    CSettingsSheet& sheet = OpenSettings();
    auto& panel = dynamic_cast<QDockWidget&>(*sheet.parentWidget());
    EXPECT_EQ(panel.isFloating(), size.width() < 900) << "beside the profile where that leaves room for it";
    for (int page = 0; page < sheet.Pages().count(); ++page) {
      sheet.Pages().setCurrentIndex(page);
      QTest::qWait(1);
      const auto& area = dynamic_cast<const QScrollArea&>(*sheet.Pages().widget(page));
      EXPECT_GE(area.viewport()->width(), area.widget()->minimumSizeHint().width()) << page;
      for (const QLineEdit* const line : area.findChildren<QLineEdit*>()) {
        const int length = line->fontMetrics().horizontalAdvance(line->text());
        EXPECT_TRUE(!line->isVisible() || length < line->width()) << line->text().toStdString() << " is cut";
      }
    }
    EXPECT_EQ(sheet.Pages().List().isVisible(), size.width() > 1000) << "else a box of the pages";
    EXPECT_LE(panel.width(), size.width() - (panel.isFloating() ? 0 : 400)) << size.width();
    EXPECT_LE(frame_->minimumSizeHint().height(), 620) << "with the panel";
    panel.close();
    EXPECT_FALSE(sheet.isVisible());
  }
}

TEST_F(SettingsSheet, EveryFieldHasANameALetterAndItsTurn) {
  CSettingsSheet& sheet = OpenSettings();
  QString menus;
  for (const QAction* const menu : frame_->menuBar()->actions())
    menus += QKeySequence::mnemonic(menu->text()).toString();
  for (int page = 0; page < sheet.Pages().count(); ++page) {
    sheet.Pages().setCurrentIndex(page);
    QTest::qWait(1);
    QStringList letters;
    for (const QAbstractButton* const button : sheet.findChildren<QAbstractButton*>()) {
      if (button->isVisible()) letters << QKeySequence::mnemonic(button->text()).toString();
    }
    for (const QLabel* const label : sheet.findChildren<QLabel*>()) {
      if (label->isVisible() && label->buddy() != nullptr) letters << QKeySequence::mnemonic(label->text()).toString();
    }
    letters.removeAll("");
    EXPECT_EQ(QSet<QString>(letters.begin(), letters.end()).size(), letters.size()) << letters.join(' ').toStdString();
    for (const QString& letter : letters) EXPECT_FALSE(menus.contains(letter)) << letter.toStdString();
    const QWidget& content = *sheet.Pages().currentWidget();
    int lowest = -1;
    QWidget* widget = &sheet.Pages().List();
    for (int i = 0; i < 300; ++i) {
      widget = widget->nextInFocusChain();
      const bool isStop = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() && widget->isEnabled();
      if (!content.isAncestorOf(widget) || !isStop || widget->focusProxy() != nullptr) continue;
      const auto* const button = qobject_cast<QAbstractButton*>(widget);
      const bool isNamed = !widget->accessibleName().isEmpty() || (button != nullptr && !button->text().isEmpty());
      EXPECT_TRUE(isNamed || qobject_cast<QScrollArea*>(widget) != nullptr)
          << sheet.Pages().Title(page).toStdString() << ": " << widget->metaObject()->className() << " "
          << widget->objectName().toStdString();
      const QPoint place = widget->mapTo(&content, QPoint(0, 0));
      EXPECT_GE(place.y() + widget->height(), lowest) << "jumps up: " << widget->objectName().toStdString();
      lowest = place.y();
    }
  }
}

TEST_F(SettingsSheet, DefaultsAndPresetsAreOneEdit) {
  CSettingsSheet& sheet = OpenSettings();
  Change([](AnalysisSettings& analysis) {
    analysis.PolynomialOrder = 5;
    analysis.LcCutoffMM = 2.5;
    analysis.parameters[0].selected = false;
    analysis.asphereCoefficients = {0.0, 1.0};
  });
  sheet.TakeDefaults(false);
  EXPECT_EQ(Analysis().PolynomialOrder, MakeDocument().settings.analysis.PolynomialOrder);
  EXPECT_EQ(Analysis().LcCutoffMM, 2.5) << "of another page";
  sheet.TakeDefaults(true);
  EXPECT_EQ(Analysis(), MakeDocument().settings.analysis);
  EXPECT_GE(ListPresets().size(), 5);
  for (const Preset& preset : ListPresets()) {
    EXPECT_FALSE(preset.title.isEmpty() || preset.remark.isEmpty()) << preset.file.toStdString();
    QFile file(preset.file);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    Settings read;
    EXPECT_TRUE(LoadSettingsText(IniFile(file.readAll().toStdString()), read).empty()) << preset.file.toStdString();
  }
  auto& presets = Child<QMenu>(sheet, "presets");
  const auto choose = [&presets](const QString& title) {
    emit presets.aboutToShow();
    for (QAction* const action : presets.actions()) {
      if (action->text().remove('&') == title) return action->trigger();
    }
    ADD_FAILURE() << title.toStdString();
  };
  choose("Plateau-honed");
  EXPECT_EQ(Analysis().FilterType, kFilterIso13565);
  prompts_.textAnswer = "Our bores";
  choose("Keep as Preset...");
  choose("Turned, coarse feed");
  EXPECT_EQ(Analysis().LcCutoffMM, 2.5);
  choose("Our bores");
  EXPECT_EQ(Analysis().FilterType, kFilterIso13565);
  EXPECT_EQ(Analysis().LcCutoffMM, 0.8);
  QFile letter(PresetFolder() + "/letter.ini");
  ASSERT_TRUE(letter.open(QIODevice::WriteOnly) && letter.write("Dear all,\n") > 0);
  letter.close();
  choose("letter");
  EXPECT_TRUE(Child<QLabel>(sheet, "fault").text().endsWith("letter.ini holds no settings."));
  sheet.accept();
  // What the test itself has changed, then what the sheet has.
  Choose("undo");
  EXPECT_EQ(Analysis().PolynomialOrder, 5);
}

TEST_F(SettingsSheet, ProposesACutoffAndTakesItByAClick) {
  CSettingsSheet& sheet = OpenSettings();
  sheet.Pages().setCurrentIndex(1);
  auto& take = Child<QPushButton>(sheet, "cutoffByRsm");
  ASSERT_TRUE(take.isVisible());
  EXPECT_TRUE(take.text().remove('&').startsWith("Take 0.08 mm")) << take.text().toStdString();
  EXPECT_FALSE(Child<QPushButton>(sheet, "cutoffByRa").isVisible()) << "what is in force is right";
  take.click();
  sheet.ApplyNow();
  EXPECT_EQ(Analysis().LcCutoffMM, 0.08);
  EXPECT_TRUE(Analysis().StandardLcCutoff);
}

class ShapeSheet : public SettingsSheet {
protected:
  template <typename Page>
  Page& OpenPage(const std::string& shape, int page) {
    EXPECT_TRUE(Doc().LoadSettingsFile(Sample((shape + ".ini").c_str())));
    sheet_ = &OpenSettings();
    sheet_->Pages().setCurrentIndex(page);
    return Child<Page>(*sheet_);
  }
  /// Types into a cell as a user does.
  static void TypeInto(QTableView& table, int row, int column, const QString& text) {
    const QModelIndex index = table.model()->index(row, column);
    table.setCurrentIndex(index);
    table.edit(index);
    auto& editor = Child(*table.viewport());
    Type(editor, text);
    QTest::keyClick(&editor, Qt::Key_Return);
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  CSettingsSheet* sheet_ = nullptr;
};

TEST_F(ShapeSheet, CoefficientsAreATable) {
  auto& page = OpenPage<CAspherePage>("asphere", 7);
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
  Child<QPushButton>(page, "fit").click();
  EXPECT_EQ(page.Preview().xAxis->range(), QCPRange(-5.0, 5.0)) << "the clear aperture";
  Enter(*sheet_, "ASPHERIC_PARAMETERS.C_CurvatureMM", "0");
  // A power alone, 5 mm from the apex.
  EXPECT_NEAR((page.Preview().graph(0)->data()->constEnd() - 1)->value, 1000.0 * 15625.0 * -1e-6, 1e-6);
  Child<QCheckBox>(Field(*sheet_, "ASPHERIC_PARAMETERS.EvenTermsOnly")).click();
  EXPECT_EQ(name(2), QString::fromUtf8("A4  u\u00B3")) << "every power";
}

TEST_F(ShapeSheet, FreeFormPointsComeFromTextAndTable) {
  auto& page = OpenPage<CFreeFormPage>("freeform", 9);
  QTableView& table = page.Table();
  QApplication::clipboard()->setText("X\tZ\n0\t1,5\n1\t2\n2\t4\n4\t3\n");
  Press(page, "&Paste");
  sheet_->ApplyNow();
  EXPECT_EQ(Analysis().freeFormPoints, (std::vector<FreeFormPoint>{{0, 1.5}, {1, 2}, {2, 4}, {4, 3}}));
  EXPECT_EQ(page.Preview().xAxis->range(), QCPRange(0.0, 4.0)) << "the preview shows them all";
  EXPECT_FALSE(page.TakeFile(folder_.Write("bad.txt", "1 2\n3 four\n")));
  ASSERT_EQ(prompts_.messages.size(), 1U);
  EXPECT_NE(prompts_.messages[0].find("line 2: not two numbers."), std::string::npos) << prompts_.messages[0];
  EXPECT_TRUE(page.TakeFile(folder_.Write("good.txt", "0;0\n1;1\n2;4\n3;9\n4;16\n")));
  EXPECT_EQ(table.model()->rowCount(), 5);
  sheet_->reject();
  EXPECT_EQ(Analysis().freeFormPoints.size(), 251U) << "Cancel puts everything back";
}

TEST_F(SettingsSheet, RegionsAreEnteredByKindAndLength) {
  Choose("computeOverRegion", {[](QWidget& dialog) {
           Child<QComboBox>(dialog, "mode").setCurrentIndex(kLengthUpToEndOffset);
           EXPECT_FALSE(Child(dialog, "length0").isEnabled());
           Type(Child(dialog, "length1"), "0.5");
           Type(Child(dialog, "length2"), "7");
           EXPECT_FALSE(Ok(dialog).isEnabled());
           EXPECT_EQ(Child(dialog, "length2").accessibleDescription(), "Must be from 0 to 4");
           Type(Child(dialog, "length2"), "2");
           EXPECT_EQ(Child<QLabel>(dialog, "stretch").text(), "4001 points = 2.0005 mm, from 1.5000 mm to 3.5000 mm");
           Ok(dialog).click();
         }});
  EXPECT_EQ(InForce().profiles.computeRange, IndexRange::FromEnds(3000, 7000));
}

TEST_F(SettingsSheet, TheClearApertureIsForAspheres) {
  ASSERT_TRUE(Doc().LoadSettingsFile(Sample("asphere.ini")));
  ASSERT_TRUE(frame_->OpenFile(Sample("asphere.lmt")));
  Choose("computeOverClearAperture", {[](QWidget& dialog) {
           const auto fields = dialog.findChildren<QLineEdit*>();
           Type(*fields[0], "4");
           Type(*fields[1], "0.5");
           Ok(dialog).click();
         }});
  EXPECT_TRUE(InForce().settings.analysis.AsphereUseClearAperture);
  const double spacingMM = InForce().profiles.spacingUM * 0.001;
  EXPECT_NEAR(InForce().profiles.computeRange->count * spacingMM, 4.0, 0.01);
  EXPECT_NEAR(InForce().scope.exclusion->count * spacingMM, 0.5, 0.01);
  Choose("computeAll");
  EXPECT_FALSE(InForce().settings.analysis.AsphereUseClearAperture);
}

TEST_F(SettingsSheet, WholeCutoffsAreASwitch) {
  const auto last = [this] { return InForce().profiles.computeRange->last; };
  Choose("wholeNumberOfCutoffs");
  // 4 mm hold 4 cut-offs of 0.8 mm between two discarded halves.
  EXPECT_EQ(last(), 7999);
  EXPECT_NEAR(InForce().profiles.evaluationRange->count * 0.0005, 3.2, 0.002);
  Change([](AnalysisSettings& analysis) { analysis.LcCutoffMM = 0.9; });
  EXPECT_EQ(last(), 7200) << "3 cut-offs and two halves";
  EXPECT_EQ(InForce().settings.analysis.UserDiscardType, kDiscardHalfCutoff);
  Choose("wholeNumberOfCutoffs");
  EXPECT_EQ(last(), 7999);
  EXPECT_EQ(InForce().settings.analysis.UserDiscardType, kDiscardNone) << "as it was before";
}

/// In English and German: what is longer is in the tip.
TEST_F(SettingsSheet, LabelsAreShortAndTipsSayTheRest) {
  for (const char* const language : {"en", "de"}) {
    UseLanguage(language);
    CSettingsSheet sheet(Doc(), nullptr);
    sheet.show();
    int labels = 0;
    for (const QLabel* const label : sheet.findChildren<QLabel*>()) {
      if (label->buddy() == nullptr || !label->wordWrap()) continue;
      ++labels;
      constexpr int kMostLines = 2;
      const int lines = label->heightForWidth(label->width()) / label->fontMetrics().lineSpacing();
      EXPECT_LE(lines, kMostLines) << label->text().toStdString();
      const auto* const field = qobject_cast<CSettingField*>(label->buddy()->parent());
      if (field == nullptr) continue;
      EXPECT_TRUE(label->toolTip().startsWith(field->Meaning())) << label->text().toStdString();
    }
    EXPECT_GT(labels, 80);
  }
  UseLanguage("en");
}

}  // namespace
}  // namespace texturon
