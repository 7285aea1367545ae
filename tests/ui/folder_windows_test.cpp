// SPDX-License-Identifier: Apache-2.0

// Auto-loading and the batch of a folder, in the window.

#include "platform/append_file.h"
#include "support/small_profiles.h"
#include "ui/colours.h"
#include "ui/folders/auto_loading.h"
#include "ui/folders/folder_batch_window.h"
#include "ui/sheets/setting_field.h"
#include "ui/tables/grid_ctrl.h"
#include "ui/trust/known_budget.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class FolderWindow : public WindowTest {
protected:
  FolderWindow() {
    std::filesystem::create_directory(folder_ / "in");
    Change([](AnalysisSettings& analysis) {
      analysis.parameters = {{.name = "Ra"}, {.name = "Pt", .tolerance = {.toleranced = true, .upperLimit = 1.15}}};
      analysis.FormRemovalType = kFormNone;
      analysis.LsCutoffMM = 0.0;
    });
    ChangeDisplay([this](DisplaySettings& display) { display.ParameterFile = TextFromPath(folder_ / "rows.csv"); });
  }

  /// Rows of the parameter file below its two header lines.
  std::ptrdiff_t Rows() const {
    const std::string rows = folder_.Read("rows.csv");
    return std::max<std::ptrdiff_t>(std::count(rows.begin(), rows.end(), '\n') - 2, 0);
  }
};

class AutoLoading : public FolderWindow {
protected:
  void Start(const char* hold) {
    Doc().ReplaceAutoLoading({.IsAutoLoading = true,
                              .AutoLoadFromGroup = true,
                              .DeleteAfterAutoLoadFromGroup = true,
                              .StorageFolderAfterAutoLoad = TextFromPath(folder_ / hold),
                              .AutoLoadFolder = TextFromPath(folder_ / "in"),
                              .AutoExport = true});
  }
  /// A file is taken at the second look.
  void Poll(int times = 2) {
    for (int i = 0; i < times; ++i) frame_->AutoLoading().PollNow();
  }
  bool Tells(const QString& text) { return Child<QLabel>(*frame_, "autoLoading").text().contains(text); }
};

TEST_F(AutoLoading, LoadsShowsExportsHoldsAndDeletes) {
  Start("hold");
  folder_.Write("in/a.lmt", SmallProfile(400, 1.0));
  Poll(1);
  EXPECT_FALSE(Doc().HasProfile()) << "it may still be written";
  Poll(1);
  EXPECT_EQ(InForce().profiles.sourcePath, TextFromPath(folder_ / "in/a.lmt"));
  EXPECT_EQ(folder_.Read("hold/a.lmt"), SmallProfile(400, 1.0));
  EXPECT_TRUE(Tells("1 loaded - a.lmt"));
  folder_.Write("in/bad.lmt", "no profile");
  folder_.Write("in/z.lmt", SmallProfile(400, 2.0));
  {
    const AppendFile other(folder_ / "rows.csv");
    Poll(3);
    EXPECT_TRUE(Tells("rows.csv is in use")) << "and the window does not wait for it";
  }
  Poll();
  EXPECT_TRUE(prompts_.messages.empty()) << "nothing interrupts it: " << prompts_.messages[0];
  EXPECT_EQ(Rows(), 2);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "in/texturon-failed/bad.lmt"));
  EXPECT_FALSE(InForce().quietMode) << "only while nobody watches";
  Choose("autoLoading");
  folder_.Write("in/late.lmt", SmallProfile(400, 1.0));
  Poll();
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(Child<QLabel>(*frame_, "autoLoading").text(), "");
}

TEST_F(AutoLoading, TheTimerDoesItAndWaitsForDialogs) {
  Start("hold");
  folder_.Write("in/a.lmt", SmallProfile(400, 1.0));
  frame_->show();
  Choose("open", {[this](QWidget& dialog) {
           Poll(3);
           EXPECT_FALSE(Doc().HasProfile());
           dialog.close();
         }});
  EXPECT_TRUE(QTest::qWaitFor([this] { return Doc().HasProfile(); }, 10'000));
}

TEST_F(AutoLoading, WhatCannotBeDoneIsToldAndSwitchedOff) {
  Start("in");
  Poll(1);
  EXPECT_FALSE(InForce().settings.autoLoading.IsAutoLoading);
  ASSERT_EQ(prompts_.messages.size(), 1u);
  EXPECT_NE(prompts_.messages[0].find("is the watched folder"), std::string::npos);
  // The sheet takes only what can be done.
  Choose("autoLoadingSettings");
  auto& sheet = Child<CAutoLoadingSheet>(*frame_);
  auto& line = Child(Child<CSettingField>(sheet, "AUTO_LOADING.AutoLoadFolder"));
  Type(line, "");
  Child<QCheckBox>(Child<CSettingField>(sheet, "AUTO_LOADING.IsAutoLoading")).click();
  sheet.accept();
  EXPECT_TRUE(sheet.isVisible());
  EXPECT_EQ(Child<QLabel>(sheet, "fault").text(), "Not applied: no folder is given.");
  Type(line, "/in");
  sheet.accept();
  EXPECT_TRUE(InForce().settings.autoLoading.IsAutoLoading);
  EXPECT_EQ(InForce().settings.autoLoading.AutoLoadFolder, "/in");
}

TEST_F(AutoLoading, WithoutAFolderTheSheetAsksForIt) {
  Choose("autoLoading");
  EXPECT_FALSE(Child<QAction>(*frame_, "autoLoading").isChecked());
  auto& sheet = Child<CAutoLoadingSheet>(*frame_);
  EXPECT_TRUE(sheet.isVisible() && prompts_.messages.empty());
  EXPECT_TRUE(Child<QLabel>(sheet, "fault").text().contains("no folder is given"));
  Type(Child(Child<CSettingField>(sheet, "AUTO_LOADING.AutoLoadFolder")), "/in");
  sheet.accept();
  EXPECT_TRUE(InForce().settings.autoLoading.IsAutoLoading);
  EXPECT_TRUE(Child<QAction>(*frame_, "autoLoading").isChecked());
}

class BatchWindow : public FolderWindow {
protected:
  static constexpr int kFiles = 30;

  BatchWindow() {
    for (int i = 0; i < kFiles; ++i) {
      const std::string content = i == 7 ? "damaged" : SmallProfile(400, 1.0 + 0.01 * i);
      folder_.Write("in/" + IntegerText(i, 3, '0') + ".lmt", content);
    }
    Choose("batchOfAFolder");
    window_ = &Child<CFolderBatchWindow>(*frame_);
    window_->ChooseFolder(folder_ / "in");
    Child(*window_, "parameterFile").setText(FromPath(folder_ / "rows.csv"));
  }

  QString State() { return Child<QLabel>(*window_, "state").text(); }
  void Click() { Child<QPushButton>(*window_, "start").click(); }
  void Wait() {
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window_->IsRunning(); }, 30'000));
  }

  CFolderBatchWindow* window_;
};

TEST_F(BatchWindow, ShowsEveryFileInOrderWithVerdictAndStatistics) {
  Child(*window_, "folder").clear();
  Click();
  EXPECT_TRUE(!window_->IsRunning() && State().contains("which folder")) << State().toStdString();
  window_->ChooseFolder(folder_ / "in");
  Click();
  Wait();
  EXPECT_EQ(Rows(), kFiles - 1);
  const CBatchResults& results = window_->Results();
  ASSERT_EQ(results.rowCount(), kFiles);
  const auto cell = [&results](int row, int column, int role = Qt::DisplayRole) {
    return results.data(results.index(row, column), role);
  };
  for (int i = 0; i < kFiles; ++i) {
    EXPECT_EQ(ToText(cell(i, 0).toString()), IntegerText(i, 3, '0') + ".lmt");
    if (i == 7) continue;
    // A saw-tooth from 0 to its height: Pt is that height, out of tolerance above 1.15.
    EXPECT_EQ(ToText(cell(i, 2).toString()), FixedText(1.0 + 0.01 * i, 4));
    EXPECT_EQ(cell(i, 1), i > 15 ? "1 out of tolerance" : "within tolerance") << i;
    EXPECT_EQ(cell(i, 2, Qt::BackgroundRole).isValid(), i > 15) << i;
  }
  // The reason first, whole and over the room of the values that there are not.
  EXPECT_TRUE(cell(7, 1).toString().startsWith("Is ")) << cell(7, 1).toString().toStdString();
  auto& files = Child<QTableView>(*window_, "files");
  EXPECT_EQ(files.columnSpan(7, 1), results.columnCount() - 1);
  EXPECT_EQ(files.columnSpan(8, 1), 1);
  window_->resize(1600, 800);
  window_->show();
  Click();
  Wait();
  EXPECT_GE(files.visualRect(results.index(7, 1)).width(), files.sizeHintForIndex(results.index(7, 1)).width());
  files.selectRow(7);
  EXPECT_EQ(Child<QLabel>(*window_, "details").text(), cell(7, 1).toString());
  EXPECT_EQ(State(), "29 analysed, 1 failed.");
  // Name, number, smallest, largest and out of tolerance.
  const auto& summary = Child<CGridCtrl>(*window_);
  QStringList statistics;
  for (const int column : {0, 1, 4, 5, 7}) statistics << summary.item(0, column)->text();
  EXPECT_EQ(statistics.join(' '), "Pt 29 1.0000 1.2900 14");
  Press(*window_, "&Copy");
  EXPECT_TRUE(QApplication::clipboard()->text().startsWith(
      QString::fromUtf8("File\tResult\tPt / µm\tRa / µm\n000.lmt\twithin tolerance\t1.0000\t")));
  emit Child<QTableView>(*window_, "files").activated(results.index(3, 0));
  EXPECT_EQ(InForce().profiles.sourcePath, TextFromPath(folder_ / "in/003.lmt"));
}

// U is 2 % of Pt: from 1.13 to 1.17 it reaches over the limit of 1.15.
TEST_F(BatchWindow, JudgesByTheBudgetThatIsKnown) {
  Settings settings = InForce().settings;
  settings.decision.DecisionRule = kDecideGuarded;
  Doc().ReplaceSettings(settings);
  window_->ChooseFolder(folder_ / "in");
  Click();
  Wait();
  EXPECT_TRUE(State().contains("no value with limits is decided")) << State().toStdString();
  const CBatchResults& results = window_->Results();
  EXPECT_EQ(results.data(results.index(0, 1), Qt::DisplayRole), "1 undecided");
  KeepBudget({{"AmplificationPercent", "1"}});
  Click();
  Wait();
  EXPECT_TRUE(State().contains("factor of all heights 1 %")) << State().toStdString();
  ASSERT_EQ(results.rowCount(), kFiles);
  for (const auto& [row, text] : {std::pair(12, "within tolerance"), std::pair(13, "1 undecided"),
                                  std::pair(17, "1 undecided"), std::pair(18, "1 out of tolerance")}) {
    EXPECT_EQ(results.data(results.index(row, 1), Qt::DisplayRole), text) << row;
  }
  const QColor ground = results.data(results.index(13, 2), Qt::BackgroundRole).value<QColor>();
  EXPECT_EQ(ground, UndecidedGround());
}

TEST_F(BatchWindow, GoesOnWhereItWasStopped) {
  Click();
  Click();
  Wait();
  const std::ptrdiff_t rows = Rows();
  Child<QCheckBox>(*window_, "resume").setChecked(true);
  Click();
  Wait();
  EXPECT_EQ(Rows(), kFiles - 1);
  EXPECT_EQ(State().contains(QString("%1 left out").arg(rows)), rows > 0) << State().toStdString();
  // Closing the program ends a run.
  Child<QCheckBox>(*window_, "resume").setChecked(false);
  Click();
  frame_.reset();
  EXPECT_TRUE(folder_.Read("rows.csv").ends_with("\r\n"));
}

}  // namespace
}  // namespace texturon
