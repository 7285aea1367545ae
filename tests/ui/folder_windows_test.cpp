// SPDX-License-Identifier: Apache-2.0

// Auto-loading and the batch of a folder, in the window.

#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <algorithm>

#include "platform/append_file.h"
#include "support/small_profiles.h"
#include "ui/dialog_driver.h"
#include "ui/folders/auto_loading.h"
#include "ui/folders/folder_batch_window.h"
#include "ui/qt_text.h"
#include "ui/sheets/setting_field.h"
#include "ui/tables/grid_ctrl.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class FolderWindow : public WindowTest {
protected:
  /// A picture for a person to look at.
  static void Take(QWidget& window, const QString& name) {
    QDir().mkpath(TEXTURON_PICTURE_FOLDER);
    EXPECT_TRUE(window.grab().save(QDir(TEXTURON_PICTURE_FOLDER).filePath(name + ".png")));
  }

  FolderWindow() {
    std::filesystem::create_directory(folder_ / "in");
    Settings settings = document().settings;
    settings.analysis.parameters = {{.name = "Pt", .tolerance = {.toleranced = true, .upperLimit = 1.15}},
                                    {.name = "Ra"}};
    settings.analysis.FormRemovalType = kFormNone;
    settings.analysis.LsCutoffMM = 0.0;
    frame_->Doc().ReplaceSettings(settings);
  }

  const Document& document() const { return frame_->Doc().document(); }

  std::ptrdiff_t Rows() const {
    const std::string rows = folder_.Read("rows.csv");
    return std::max<std::ptrdiff_t>(std::count(rows.begin(), rows.end(), '\n') - 2, 0);
  }

  ScratchFolder folder_;
};

class AutoLoading : public FolderWindow {
protected:
  AutoLoadingSettings Wanted() const {
    return {.IsAutoLoading = true,
            .AutoLoadFromGroup = true,
            .DeleteAfterAutoLoadFromGroup = true,
            .StorageFolderAfterAutoLoad = TextFromPath(folder_ / "hold"),
            .AutoLoadFolder = TextFromPath(folder_ / "in"),
            .AutoLoadMask = "*.lmt",
            .AutoExport = true};
  }

  void Start(const AutoLoadingSettings& settings) {
    DisplaySettings display = document().settings.display;
    display.ParameterFile = TextFromPath(folder_ / "rows.csv");
    frame_->Doc().ReplaceDisplay(display);
    frame_->Doc().ReplaceAutoLoading(settings);
  }

  /// A file is taken at the second look.
  void Poll(int times = 2) {
    for (int i = 0; i < times; ++i) frame_->AutoLoading().PollNow();
  }

  std::string State() { return ToText(frame_->findChild<QLabel*>("autoLoading")->text()); }
};

TEST_F(AutoLoading, LoadsShowsExportsHoldsAndDeletes) {
  Start(Wanted());
  folder_.Write("in/a.lmt", SmallProfile(400, 1.0));
  folder_.Write("in/other.txt", "no profile of this mask");
  Poll(1);
  EXPECT_FALSE(frame_->Doc().HasProfile()) << "it may still be written";
  Poll(1);
  EXPECT_EQ(document().profiles.sourcePath, TextFromPath(folder_ / "in/a.lmt"));
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(folder_.Read("hold/a.lmt"), SmallProfile(400, 1.0));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "in/a.lmt"));
  EXPECT_NE(State().find("1 loaded - a.lmt"), std::string::npos) << State();
  folder_.Write("in/bad.lmt", "no profile");
  folder_.Write("in/short.lmt", SmallProfile(20, 1.0));
  folder_.Write("in/z.lmt", SmallProfile(400, 2.0));
  Poll();
  EXPECT_TRUE(prompts_.messages.empty()) << "nothing interrupts it: " << prompts_.messages[0];
  EXPECT_EQ(Rows(), 2);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "in/texturon-failed/bad.lmt"));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "in/texturon-failed/short.lmt"));
  EXPECT_EQ(document().profiles.sourcePath, TextFromPath(folder_ / "in/z.lmt"));
  EXPECT_FALSE(document().quietMode) << "only while nobody watches";
  Choose("autoLoading");
  folder_.Write("in/late.lmt", SmallProfile(400, 1.0));
  Poll();
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(State(), "");
}

TEST_F(AutoLoading, TheTimerDoesItAndWaitsForDialogs) {
  Start(Wanted());
  folder_.Write("in/a.lmt", SmallProfile(400, 1.0));
  frame_->show();
  {
    const DialogDriver driver({[this](QWidget& dialog) {
      Poll(3);
      EXPECT_FALSE(frame_->Doc().HasProfile());
      dialog.close();
    }});
    Choose("open");
  }
  EXPECT_TRUE(QTest::qWaitFor([this] { return frame_->Doc().HasProfile(); }, 10'000));
}

TEST_F(AutoLoading, AVanishedFolderIsToldAndWaitedFor) {
  Start(Wanted());
  Poll(1);
  std::filesystem::remove_all(folder_ / "in");
  Poll(1);
  EXPECT_NE(State().find("cannot be watched"), std::string::npos) << State();
  std::filesystem::create_directory(folder_ / "in");
  folder_.Write("in/a.lmt", SmallProfile(400, 1.0));
  Poll(3);
  EXPECT_EQ(State().find("cannot be watched"), std::string::npos) << State();
  EXPECT_EQ(Rows(), 1);
  EXPECT_TRUE(prompts_.messages.empty());
}

TEST_F(AutoLoading, AParameterFileThatAnotherHoldsDoesNotStopTheWindow) {
  Start(Wanted());
  folder_.Write("in/a.lmt", SmallProfile(400, 1.0));
  {
    const AppendFile other(folder_ / "rows.csv");
    Poll(3);
    EXPECT_NE(State().find("rows.csv is in use"), std::string::npos) << State();
    EXPECT_TRUE(std::filesystem::exists(folder_ / "in/a.lmt"));
  }
  Poll();
  EXPECT_EQ(Rows(), 1);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "in/a.lmt"));
}

TEST_F(AutoLoading, WhatCannotBeDoneIsSwitchedOffWithItsReason) {
  AutoLoadingSettings nowhere = Wanted();
  nowhere.StorageFolderAfterAutoLoad.clear();
  Start(nowhere);
  EXPECT_FALSE(document().settings.autoLoading.IsAutoLoading);
  AutoLoadingSettings same = Wanted();
  same.StorageFolderAfterAutoLoad = same.AutoLoadFolder;
  Start(same);
  Poll(1);
  EXPECT_FALSE(document().settings.autoLoading.IsAutoLoading);
  ASSERT_EQ(prompts_.messages.size(), 2u);
  EXPECT_NE(prompts_.messages[0].find("no hold folder"), std::string::npos);
  EXPECT_NE(prompts_.messages[1].find("is the watched folder"), std::string::npos);
}

TEST_F(AutoLoading, TheSheetTakesOnlyWhatCanBeDone) {
  Choose("autoLoadingSettings");
  auto& sheet = *frame_->findChild<CAutoLoadingSheet*>();
  const auto click = [&sheet](const char* field) {
    sheet.findChild<CSettingField*>(field)->findChild<QCheckBox*>()->click();
  };
  click("AUTO_LOADING.IsAutoLoading");
  click("AUTO_LOADING.AutoLoadFromGroup");
  sheet.accept();
  EXPECT_TRUE(sheet.isVisible());
  Take(sheet, "auto-loading");
  EXPECT_EQ(sheet.findChild<QLabel*>("fault")->text(), "Not applied: no folder is given.");
  QTest::keyClicks(sheet.findChild<CSettingField*>("AUTO_LOADING.AutoLoadFolder")->findChild<QLineEdit*>(), "/in");
  sheet.accept();
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_TRUE(document().settings.autoLoading.IsAutoLoading);
  EXPECT_EQ(document().settings.autoLoading.AutoLoadFolder, "/in");
}

class BatchWindow : public FolderWindow {
protected:
  static constexpr int kFiles = 30;

  BatchWindow() {
    for (int i = 0; i < kFiles; ++i) {
      folder_.Write("in/" + IntegerText(i, 3, '0') + ".lmt",
                    i == 7 ? std::string("damaged") : SmallProfile(400, 1.0 + 0.01 * i));
    }
    Choose("batchOfAFolder");
    window_ = frame_->findChild<CFolderBatchWindow*>();
    window_->ChooseFolder(folder_ / "in");
    Line("parameterFile").setText(FromPath(folder_ / "rows.csv"));
  }

  QLineEdit& Line(const char* name) { return *window_->findChild<QLineEdit*>(name); }
  std::string State() { return ToText(window_->findChild<QLabel*>("state")->text()); }
  void Click() { window_->findChild<QPushButton*>("start")->click(); }
  void Run() {
    Click();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window_->IsRunning(); }, 30'000));
  }
  QString Cell(int row, int column) {
    const CBatchResults& results = window_->Results();
    return results.data(results.index(row, column), Qt::DisplayRole).toString();
  }

  CFolderBatchWindow* window_;
};

TEST_F(BatchWindow, ShowsEveryFileInOrderWithVerdictAndStatistics) {
  Run();
  EXPECT_EQ(Rows(), kFiles - 1);
  ASSERT_EQ(window_->Results().rowCount(), kFiles);
  for (int i = 0; i < kFiles; ++i) {
    EXPECT_EQ(Cell(i, 0).toStdString(), IntegerText(i, 3, '0') + ".lmt");
    if (i == 7) continue;
    // A saw-tooth from 0 to its height: Pt is that height, out of tolerance above 1.15.
    EXPECT_EQ(Cell(i, 2).toStdString(), FixedText(1.0 + 0.01 * i, 4)) << "as the table of parameters shows it";
    EXPECT_EQ(Cell(i, 1), i > 15 ? "1 out of tolerance" : "analysed") << i;
  }
  EXPECT_TRUE(Cell(7, 1).contains("007.lmt"));
  EXPECT_EQ(State(), "29 analysed, 1 failed.");
  auto* const table = window_->findChild<QTableView*>("files");
  EXPECT_LT(table->columnWidth(1), table->width() / 2) << "a long reason hides no parameter";
  Take(*window_, "batch");
  const auto& summary = *window_->findChild<CGridCtrl*>();
  ASSERT_EQ(summary.rowCount(), 2);
  EXPECT_EQ(summary.item(0, 0)->text(), "Pt");
  EXPECT_EQ(summary.item(0, 1)->text(), "29");
  // Mean of 1.00 to 1.29 without 1.07.
  EXPECT_NEAR(summary.item(0, 2)->text().toDouble(), (30 * 1.145 - 1.07) / 29, 1e-5);
  EXPECT_EQ(summary.item(0, 4)->text(), "1");
  EXPECT_EQ(summary.item(0, 5)->text(), "1.29");
  EXPECT_EQ(summary.item(0, 7)->text(), "14");
  for (QPushButton* const button : window_->findChildren<QPushButton*>()) {
    if (button->text() == "&Copy") button->click();
  }
  const QStringList lines = QApplication::clipboard()->text().split('\n');
  EXPECT_EQ(lines[0], QString::fromUtf8("File\tResult\tPt / µm\tRa / µm"));
  EXPECT_TRUE(lines[1].startsWith("000.lmt\tanalysed\t1.0000\t"));
  emit table->activated(window_->Results().index(3, 0));
  EXPECT_EQ(document().profiles.sourcePath, TextFromPath(folder_ / "in/003.lmt"));
}

TEST_F(BatchWindow, GoesOnWhereItWasStopped) {
  Click();
  Click();
  EXPECT_TRUE(QTest::qWaitFor([this] { return !window_->IsRunning(); }, 30'000));
  const std::ptrdiff_t rows = Rows();
  window_->findChild<QCheckBox*>("resume")->setChecked(true);
  Run();
  EXPECT_EQ(Rows(), kFiles - 1);
  const std::string told = rows > 0 ? IntegerText(static_cast<int>(rows)) + " left out" : std::string();
  EXPECT_NE(State().find(told), std::string::npos) << State();
}

TEST_F(BatchWindow, SaysWhatIsMissingWithoutStarting) {
  const auto refuses = [this](const char* sentence) {
    Click();
    EXPECT_FALSE(window_->IsRunning());
    EXPECT_NE(State().find(sentence), std::string::npos) << State();
  };
  Line("mask").setText("*.none");
  refuses("no file to analyse");
  window_->ChooseFolder(folder_ / "gone");
  refuses("cannot be read as a folder");
  Line("parameterFile").clear();
  refuses("where the rows go");
  Line("folder").clear();
  refuses("which folder");
}

TEST_F(BatchWindow, ClosingTheProgramEndsARunInOrder) {
  Click();
  frame_.reset();
  const std::string rows = folder_.Read("rows.csv");
  EXPECT_TRUE(rows.empty() || rows.ends_with("\r\n"));
}

}  // namespace
}  // namespace texturon
