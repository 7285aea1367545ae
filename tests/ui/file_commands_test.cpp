// SPDX-License-Identifier: Apache-2.0

// The File, Edit and Export menus, through the dialogs that they open.

#include <QPrintPreviewWidget>

#include "ui/folders/folder_batch_window.h"
#include "ui/plots/texturon_view.h"
#include "ui/several/several_window.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class FileCommands : public WindowTest {
protected:
  FileCommands() : WindowTest("ground.lmt") {}

  QList<QAction*> RecentFiles() {
    for (QMenu* const menu : frame_->findChildren<QMenu*>()) {
      if (menu->title() != "Recent &Files") continue;
      emit menu->aboutToShow();
      return menu->actions();
    }
    return {};
  }
  std::filesystem::path Shown() { return InForce().profiles.sourceFile; }
};

TEST_F(FileCommands, SaveChoosesTheWriterAndTheDocumentBecomesTheFile) {
  const std::pair<const char*, const char*> cases[] = {{"a", "a.lmt"}, {"b.PRF", "b.prf"}, {"e.dat", "e.lmt"}};
  for (const auto& [typed, written] : cases) {
    Choose("invert");
    EXPECT_TRUE(frame_->isWindowModified());
    Choose("save", {TypeName(folder_ / typed, [](const QFileDialog& dialog) {
             EXPECT_EQ(dialog.nameFilters().first(), "Lumetrace Files (*.lmt)");
             EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
           })});
    EXPECT_EQ(Shown(), folder_ / written);
    EXPECT_EQ(frame_->windowTitle().split(" - ").first(), FromPath(written) + "[*] (" + FromPath(folder_.path()) + ")");
    EXPECT_FALSE(frame_->isWindowModified());
    EXPECT_EQ(RecentFiles().front()->text(), "&1 " + FromPath(folder_ / written));
    ASSERT_TRUE(frame_->OpenFile(folder_ / written));
    EXPECT_EQ(InForce().profiles.pointCount, 8000);
  }
  folder_.Write("x.lmt", "another");
  Choose("save", {TypeName(folder_ / "x.dat")});
  EXPECT_EQ(prompts_.questions.size(), 1u) << "before it replaces a file that was not named";
  EXPECT_EQ(folder_.Read("x.lmt"), "another");
  EXPECT_EQ(Shown(), folder_ / "e.lmt");
  // Which file it is does not go through a text that cannot show its name.
  std::filesystem::copy_file(folder_ / "a.lmt", folder_ / "\u8868.lmt");
  ASSERT_TRUE(frame_->OpenFile(folder_ / "\u8868.lmt"));
  EXPECT_EQ(Shown(), folder_ / "\u8868.lmt");
  EXPECT_TRUE(frame_->windowTitle().startsWith(QString::fromUtf8("\u8868.lmt")));
}

TEST_F(FileCommands, TheNextDialogStartsWhereTheLastOneEnded) {
  std::filesystem::create_directory(folder_ / "deep");
  Change([](AnalysisSettings& analysis) { analysis.LcCutoffMM = 0.25; });
  Choose("saveSettings", {TypeName(folder_ / "deep/s")});
  Choose("reportAsPDF", {TypeName("r", [this](const QFileDialog& dialog) {
           EXPECT_EQ(dialog.directory().absolutePath(), FromPath(folder_ / "deep"));
           EXPECT_EQ(Child(dialog, "fileNameEdit").text(), "ground.pdf");
         })});
  Choose("undo");
  Choose("loadSettings", {TypeName("s.ini")});
  EXPECT_EQ(InForce().settings.analysis.LcCutoffMM, 0.25);
  EXPECT_TRUE(folder_.Read("deep/r.pdf").starts_with("%PDF-"));
}

TEST_F(FileCommands, ExportsGoByTheExtensionChosen) {
  Choose("export-waviness", {TypeName(folder_ / "w.MOD")});
  Choose("export-roughness", {TypeName(folder_ / "r", [](const QFileDialog& dialog) {
           EXPECT_EQ(dialog.nameFilters().size(), 2) << "roughness has no form data";
         })});
  EXPECT_TRUE(folder_.Read("w.MOD").starts_with("1 "));
  EXPECT_NE(folder_.Read("r.csv").find("\"Roughness Profile\""), std::string::npos);
}

TEST_F(FileCommands, RowsGoToTheParameterFile) {
  Choose("exportParametersAs", {TypeName(folder_ / "a.csv")});
  EXPECT_NE(folder_.Read("a.csv").find("Ground; generated"), std::string::npos);
  ChangeDisplay([](DisplaySettings& display) { display.ParameterFile.clear(); });
  Choose("autoExport", {CloseIt});
  EXPECT_FALSE(InForce().settings.autoLoading.AutoExport) << "nowhere to write to";
  Choose("autoExport", {TypeName(folder_ / "rows")});
  ASSERT_TRUE(frame_->OpenFile(Sample("turned.lmt")));
  Choose("autoExport");
  ASSERT_TRUE(frame_->OpenFile(Sample("honed.lmt")));
  Choose("exportParameters");
  const std::string rows = folder_.Read("rows.csv");
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 4) << "two header lines, two rows";
  EXPECT_LT(rows.find("turned.lmt"), rows.find("honed.lmt"));
}

TEST_F(FileCommands, RecentFilesThatAreGoneAreToldAndDropped) {
  const std::filesystem::path copy = folder_ / "a&b.lmt";
  std::filesystem::copy_file(Sample("ground.lmt"), copy);
  ASSERT_TRUE(frame_->OpenFile(copy));
  EXPECT_EQ(RecentFiles()[0]->text(), "&1 " + FromPath(copy).replace("&", "&&"));
  RecentFiles()[1]->trigger();
  EXPECT_EQ(Shown(), Sample("ground.lmt"));
  std::filesystem::remove(copy);
  RecentFiles()[1]->trigger();
  ASSERT_EQ(prompts_.messages.size(), 1u);
  EXPECT_NE(prompts_.messages[0].find("a&b.lmt is gone"), std::string::npos);
  EXPECT_EQ(RecentFiles().size(), 1);
}

TEST_F(FileCommands, EditsAreTakenBackAndMadeAgain) {
  EXPECT_FALSE(Doc().CanUndo());
  const QString text = frame_->ParamView().Grid().AsText();
  const UndoPoint start = UndoPointOf(InForce());
  Change([](AnalysisSettings& analysis) { analysis.LcCutoffMM = 0.25; });
  Choose("invert");
  Change([](AnalysisSettings&) {});
  Doc().ComputeOver(1.0, 3.0);
  prompts_.textAnswer = "renamed";
  Choose("identification");
  EXPECT_EQ(InForce().profiles.identification, "renamed");
  Choose("metric");
  const UndoPoint end = UndoPointOf(InForce());
  for (int i = 0; i < 4; ++i) Choose("undo");
  EXPECT_EQ(UndoPointOf(InForce()), start);
  EXPECT_FALSE(Doc().CanUndo()) << "what changed nothing and how it is shown are no edits";
  Choose("metric");
  EXPECT_EQ(frame_->ParamView().Grid().AsText(), text) << "computed anew";
  for (int i = 0; i < 4; ++i) Choose("redo");
  EXPECT_EQ(UndoPointOf(InForce()), end);
  ASSERT_TRUE(frame_->OpenFile(Sample("turned.lmt")));
  EXPECT_EQ(asked_.size(), 1) << "name and sign go with the record";
  // What was done to the settings can still be taken back.
  Choose("undo");
  EXPECT_EQ(InForce().settings.analysis.LcCutoffMM, 0.8);
  EXPECT_EQ(InForce().profiles.identification, "Turned; generated");
  EXPECT_FALSE(InForce().profiles.inverted || Doc().CanUndo());
}

TEST_F(FileCommands, CopiesThePanesAsTheyAreSeenAndTheTable) {
  Choose("copyDisplay");
  const QImage alone = QApplication::clipboard()->image();
  EXPECT_EQ(alone.size(), (frame_->View().parentWidget()->size().toSizeF() * frame_->devicePixelRatioF()).toSize());
  Choose("spectrumCurve");
  QApplication::processEvents();
  Choose("copyDisplay");
  EXPECT_NE(QApplication::clipboard()->image(), alone) << "with the pane that was opened";
  Choose("copyParameters");
  EXPECT_EQ(QApplication::clipboard()->text(), frame_->ParamView().Grid().AsText());
}

TEST_F(FileCommands, OfSeveralDroppedFilesTheFirstIsOpenedAllAreShownAndAFolderIsABatch) {
  DropOn(*frame_, {Sample("turned.lmt"), Sample("arc.lmt")});
  EXPECT_EQ(Shown(), Sample("turned.lmt"));
  EXPECT_TRUE(frame_->statusBar()->currentMessage().contains("first of 2"));
  EXPECT_EQ(Child<CSeveralWindow>(*frame_).Count(), 2U);
  DropOn(*frame_, {folder_.path()});
  EXPECT_EQ(Child(Child<CFolderBatchWindow>(*frame_), "folder").text(), FromPath(folder_.path()));
  EXPECT_EQ(Shown(), Sample("turned.lmt"));
}

TEST_F(FileCommands, AFileWaitsForAnOpenDialog) {
  Choose("save", {[this](QWidget& dialog) {
           frame_->OpenLater(Sample("turned.lmt"));
           EXPECT_EQ(Shown(), Sample("ground.lmt"));
           dialog.close();
         }});
  EXPECT_TRUE(QTest::qWaitFor([this] { return Shown() == Sample("turned.lmt"); }));
}

TEST_F(FileCommands, FailuresAreOneSentenceAndLeaveTheDocumentAlone) {
  std::filesystem::create_directory(folder_ / "dir.lmt");
  ChangeDisplay([this](DisplaySettings& display) { display.ParameterFile = TextFromPath(folder_ / "dir.lmt"); });
  const std::filesystem::path empty = folder_.Write("empty.lmt", "");
  const std::pair<std::function<void()>, const char*> cases[] = {
      {[&] { EXPECT_FALSE(frame_->OpenFile(empty)); }, "is empty"},
      {[&] { EXPECT_FALSE(Doc().SaveSettingsFile("/dev/full")); }, "/dev/full"},
      {[&] { EXPECT_FALSE(Doc().Save(folder_ / "dir.lmt")); }, "Could not write file."},
      {[&] { Choose("exportParameters"); }, "dir.lmt"}};
  const Document before = InForce();
  for (const auto& [run, reason] : cases) {
    prompts_.messages.clear();
    run();
    ASSERT_FALSE(prompts_.messages.empty()) << reason;
    EXPECT_NE(prompts_.messages.back().find(reason), std::string::npos) << prompts_.messages.back();
    EXPECT_TRUE(prompts_.messages.back().ends_with('.')) << prompts_.messages.back();
    EXPECT_EQ(UndoPointOf(InForce()), UndoPointOf(before)) << reason;
    EXPECT_EQ(InForce().profiles.sourcePath, before.profiles.sourcePath) << reason;
  }
}

TEST_F(FileCommands, ThePreviewHoldsThePagesOfTheReport) {
  Choose("printPreview", {[](QWidget& dialog) {
           auto& preview = Child<QPrintPreviewWidget>(dialog);
           preview.updatePreview();
           EXPECT_EQ(preview.pageCount(), 3);
           dialog.close();
         }});
}

}  // namespace
}  // namespace texturon
