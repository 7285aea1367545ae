// SPDX-License-Identifier: Apache-2.0

// The main window on a screen in memory, driven by its menus.

#include "ui/window/main_frame.h"

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QUrl>
#include <gtest/gtest.h>
#include <string>

#include "analysis/pipeline.h"
#include "formats/import.h"
#include "platform/platform.h"
#include "presentation/shown_rows.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"
#include "ui/dialog_driver.h"
#include "ui/plots/texturon_view.h"
#include "ui/qt_text.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window_fixture.h"

/// What the font and message-bus libraries and the C library's locale keep to the end of the process is not ours to
/// free.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\nleak:libdbus-1\nleak:argz_add_sep";
}

namespace texturon {
namespace {

using MainFrame = WindowTest;

/// The table of a file as the engine alone makes it.
std::vector<ShownRow> EngineRows(const std::filesystem::path& file) {
  SilentPrompts nobody;
  Document document = MakeDocument();
  SetProfile(document, MakeProfileSet(LoadProfileFile(file, {}, nobody).profile, TextFromPath(file)));
  document.writesTraceFile = false;
  Compute(document, nobody, {});
  return ShownRows(document);
}

TEST_F(MainFrame, ShowsTheEnginesValuesOfEverySample) {
  for (const auto& entry : std::filesystem::directory_iterator(Sample(""))) {
    if (entry.path().extension() != ".lmt") continue;
    ASSERT_TRUE(frame_->OpenFile(entry.path()));
    const std::vector<ShownRow> rows = EngineRows(entry.path());
    const QList<CGridCtrl::Record>& records = frame_->ParamView().Grid().Records();
    ASSERT_EQ(records.size(), static_cast<qsizetype>(rows.size()));
    for (qsizetype i = 0; i < records.size(); ++i) {
      const ShownRow& row = rows[static_cast<std::size_t>(i)];
      EXPECT_EQ(records[i].cells[0], FromText(row.title));
      EXPECT_EQ(records[i].cells[1], row.value.empty() ? QString::fromUtf8("\u2013") : FromText(row.value));
    }
    EXPECT_TRUE(frame_->windowTitle().startsWith(FromPath(entry.path())));
  }
}

TEST_F(MainFrame, CommandsChangeTheDocument) {
  EXPECT_FALSE(frame_->findChild<QAction*>("invert")->isEnabled()) << "there is nothing to invert yet";
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  const double first = frame_->Doc().document().profiles.raw.front();
  Choose("invert");
  EXPECT_EQ(frame_->Doc().document().profiles.raw.front(), -first);
  prompts_.textAnswer = "new name";
  Choose("identification");
  EXPECT_EQ(frame_->Doc().document().profiles.identification, "new name");
  EXPECT_EQ(prompts_.questions, std::vector<std::string>{"Enter the new identification:"});
  Choose("metric");
  EXPECT_FALSE(frame_->Doc().document().settings.display.Metric);
  EXPECT_EQ(frame_->ParamView().Grid().item(1, 2)->text(), FromText("\xB5in"));
  Choose("metric");
  frame_->View().Graph().xAxis->setRange(1.0, 3.0);
  Choose("computeOnZoom");
  EXPECT_EQ(frame_->Doc().document().profiles.computeRange->first, 2000);
  EXPECT_EQ(frame_->Doc().document().profiles.computeRange->last, 6000);
  Choose("computeAll");
  EXPECT_EQ(frame_->Doc().document().profiles.computeRange->count, 8000);
}

TEST_F(MainFrame, ProfilesAreShownAndHidden) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  EXPECT_EQ(frame_->View().Graph().graphCount(), 2);
  Choose("show5");
  EXPECT_EQ(frame_->View().Graph().graphCount(), 3);
  EXPECT_EQ(frame_->View().Graph().graph(2)->name(), "Roughness Profile");
  Choose("show3");
  EXPECT_EQ(frame_->View().Graph().graphCount(), 2);
}

TEST_F(MainFrame, FilesThatCannotBeReadLeaveTheDocumentAsItWas) {
  const ScratchFolder folder;
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  for (const auto& path : {folder.Write("empty.lmt", ""), folder.Write("bad.prf", "no profile"), folder / "none.lmt"}) {
    prompts_.messages.clear();
    EXPECT_FALSE(frame_->OpenFile(path));
    EXPECT_FALSE(prompts_.messages.empty()) << path;
    EXPECT_EQ(frame_->Doc().document().profiles.pointCount, 8000);
  }
}

TEST_F(MainFrame, TakesDroppedFilesAndRemembersThem) {
  DropOn(*frame_, {QUrl::fromLocalFile(FromPath(Sample("turned.lmt")))});
  EXPECT_EQ(frame_->Doc().document().profiles.identification, "Turned; generated");
  QMenu* recent = nullptr;
  for (QMenu* const menu : frame_->findChildren<QMenu*>()) {
    if (menu->title() == "Recent &Files") recent = menu;
  }
  ASSERT_NE(recent, nullptr);
  emit recent->aboutToShow();
  EXPECT_EQ(recent->actions().front()->text(), "&1 " + FromPath(Sample("turned.lmt")));
}

TEST_F(MainFrame, CopiesTheTableAsText) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  const QStringList lines = frame_->ParamView().Grid().AsText().split('\n');
  EXPECT_EQ(lines[0], "Parameter\tValue\tUnit\tVerdict\tSetting");
  EXPECT_TRUE(lines[1].startsWith("Ft\t3.4298"));
}

TEST_F(MainFrame, SettingsComeFromAFileThatIsChosen) {
  const ScratchFolder folder;
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  const std::filesystem::path file = folder.Write("s.ini", "[ANALYSIS]\nLcCutoffMM=0.25\n");
  const DialogDriver driver({TypeName(FromPath(file))});
  Choose("loadSettings");
  EXPECT_EQ(frame_->Doc().document().settings.analysis.LcCutoffMM, 0.25);
  EXPECT_EQ(frame_->Doc().settingsFile(), file);
}

TEST_F(MainFrame, SwitchesAndFetchesAndCloses) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  frame_->show();
  Choose("useAllDataForFormRemoval");
  EXPECT_TRUE(frame_->Doc().document().scope.allDataForForm);
  frame_->View().Graph().SetUprightCursors(-7.0, 70.0);
  Choose("fetchCursors");
  const auto [first, second] = frame_->View().Graph().UprightCursors();
  EXPECT_TRUE(frame_->View().Graph().VisibleX().contains(first));
  EXPECT_TRUE(frame_->View().Graph().VisibleX().contains(second));
  QString about;
  {
    const DialogDriver driver({[&about](QWidget& dialog) {
                                 about = dynamic_cast<QMessageBox&>(dialog).text();
                                 dialog.close();
                               },
                               [](QWidget& dialog) { dialog.close(); }});
    Choose("about");
    Choose("keysAndMouse");
  }
  EXPECT_TRUE(about.contains("Apache-2.0") && about.contains("GNU GPL version 3"));
  Choose("exit");
  EXPECT_FALSE(frame_->isVisible());
}

TEST_F(MainFrame, AParameterFileCanBeAnother) {
  const ScratchFolder folder;
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  for (const char* const name : {"a.csv", "b.csv"}) {
    const DialogDriver driver({TypeName(FromPath(folder / name))});
    Choose("exportParametersAs");
    EXPECT_NE(folder.Read(name).find("Ground; generated"), std::string::npos);
    EXPECT_EQ(PathFromText(frame_->Doc().document().settings.display.ParameterFile), folder / name);
  }
}

}  // namespace
}  // namespace texturon
