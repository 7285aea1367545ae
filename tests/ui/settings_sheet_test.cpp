// The settings sheets, typed into and clicked as a user does.

#include "ui/settings_sheet.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include "core/settings_text.h"
#include "ui/grid_ctrl.h"
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
  CSettingsSheet& OpenSettings() { return Open<CSettingsSheet>("&Settings..."); }

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
  Choose("&Metric");
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
  auto& sheet = Open<CBearingRatioSheet>("&Bearing Ratios and Htp...");
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

/// Every setting of the analysis that is one value can be reached in some sheet.
TEST_F(SettingsSheet, NothingIsOutOfReach) {
  CSettingsSheet& sheet = OpenSettings();
  const QStringList derived = {"LcCutoffMM", "LsCutoffMM", "StandardLcCutoff", "StandardLsCutoff"};
  for (const SettingKey& key : SettingsTable()) {
    const QString name = QString::fromUtf8(key.binding.key.data(), static_cast<qsizetype>(key.binding.key.size()));
    const bool ofSection = key.binding.section == "ANALYSIS" || key.binding.section == "RXQ_PARAMETERS" ||
                           key.binding.section == "MOTIF_PARAMETERS";
    // Those of the exports are asked for there.
    if (!ofSection || derived.contains(name) || name.startsWith("SagTable") || name.startsWith("AspResidual") ||
        name.startsWith("AsphereResidual")) {
      continue;
    }
    const QString full =
        QString::fromUtf8(key.binding.section.data(), static_cast<qsizetype>(key.binding.section.size())) + "." + name;
    EXPECT_NE(sheet.findChild<CSettingField*>(full), nullptr) << full.toStdString();
  }
}

}  // namespace
}  // namespace texturon
