// SPDX-License-Identifier: Apache-2.0

// The File, Edit and Export menus, through the dialogs that they open.

#include <QClipboard>
#include <QMenu>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QStatusBar>
#include <QTest>
#include <unistd.h>

#include "formats/import.h"
#include "ui/dialog_driver.h"
#include "ui/folders/folder_batch_window.h"
#include "ui/plots/texturon_view.h"
#include "ui/report/report.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window/file_dialogs.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class FileCommands : public WindowTest {
protected:
  const Document& document() const { return frame_->Doc().document(); }

  QMenu& RecentMenu() {
    for (QMenu* const menu : frame_->findChildren<QMenu*>()) {
      if (menu->title() != "Recent &Files") continue;
      emit menu->aboutToShow();
      return *menu;
    }
    throw std::logic_error("no menu of recent files");
  }

  ScratchFolder folder_;
};

std::vector<double> HeightsOf(const std::filesystem::path& path) {
  SilentPrompts nobody;
  return LoadProfileFile(path, {}, nobody).profile.heightsUM;
}

TEST(FileDialogs, TakeFiltersAsTheProgramWordsThem) {
  EXPECT_EQ(QtFilters("Lumetrace Files (*.lmt)|*.lmt|All Files (*.*)|*.*||"), "Lumetrace Files (*.lmt);;All Files (*)");
  EXPECT_EQ(QtFilters(kCsvFilters), "Comma Separated Values (*.csv);;All Files (*)");
  EXPECT_TRUE(QtFilters(ProfileFilters()).contains("*.prf "));
}

TEST_F(FileCommands, SaveChoosesTheWriterAndTheDocumentBecomesTheFile) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  struct Case {
    const char* typed;
    const char* written;
    double toleranceUM;
  };
  // The native format has five decimals of a micrometre, the others the steps of their instruments.
  for (const Case& c : {Case{"a", "a.lmt", 1e-5}, Case{"b.PRF", "b.prf", 1e-3}, Case{"c.sdf", "c.sdf", 1e-3},
                        Case{"d.pr", "d.pr", 1e-3}, Case{"e.dat", "e.lmt", 1e-5}}) {
    const std::vector<double> heights = document().profiles.raw;
    {
      const DialogDriver driver({TypeName(FromPath(folder_ / c.typed), [](const QFileDialog& dialog) {
        EXPECT_EQ(dialog.nameFilters().size(), 5);
        EXPECT_EQ(dialog.nameFilters().first(), "Lumetrace Files (*.lmt)");
        EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
      })});
      Choose("save");
    }
    const std::filesystem::path written = folder_ / c.written;
    EXPECT_EQ(document().profiles.sourcePath, TextFromPath(written)) << c.typed;
    EXPECT_TRUE(frame_->windowTitle().startsWith(FromPath(written)));
    const std::vector<double> read = HeightsOf(written);
    ASSERT_EQ(read.size(), heights.size()) << c.typed;
    EXPECT_NEAR(read[123], heights[123], c.toleranceUM) << c.typed;
  }
  EXPECT_EQ(RecentMenu().actions().front()->text(), "&1 " + FromPath(folder_ / "e.lmt"));
}

TEST_F(FileCommands, SaveAsksBeforeItReplacesAFileThatWasNotNamed) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  folder_.Write("x.lmt", "another");
  {
    const DialogDriver driver({TypeName(FromPath(folder_ / "x.dat"))});
    Choose("save");
  }
  EXPECT_EQ(prompts_.questions.size(), 1u);
  EXPECT_EQ(folder_.Read("x.lmt"), "another");
  EXPECT_EQ(document().profiles.sourcePath, TextFromPath(Sample("ground.lmt")));
}

TEST_F(FileCommands, TheNextDialogStartsWhereTheLastOneEnded) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  std::filesystem::create_directory(folder_ / "deep");
  const DialogDriver driver({TypeName(FromPath(folder_ / "deep/s")), TypeName("r", [this](const QFileDialog& dialog) {
                               EXPECT_EQ(dialog.directory().absolutePath(), FromPath(folder_ / "deep"));
                               EXPECT_EQ(dialog.findChild<QLineEdit*>("fileNameEdit")->text(), "ground.pdf");
                             })});
  Choose("saveSettings");
  Choose("reportAsPDF");
  EXPECT_NE(folder_.Read("deep/s.ini").find("IniVersion=2.00"), std::string::npos);
  EXPECT_TRUE(folder_.Read("deep/r.pdf").starts_with("%PDF-"));
}

TEST_F(FileCommands, ExportsGoByTheExtensionChosen) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  const DialogDriver driver({TypeName(FromPath(folder_ / "w")), TypeName(FromPath(folder_ / "w.MOD")),
                             TypeName(FromPath(folder_ / "r"), [](const QFileDialog& dialog) {
                               EXPECT_EQ(dialog.nameFilters().size(), 2) << "roughness has no form data";
                             })});
  Choose("export-waviness");
  Choose("export-waviness");
  Choose("export-roughness");
  EXPECT_TRUE(folder_.Read("w.csv").starts_with("\"File:\", "));
  EXPECT_TRUE(folder_.Read("w.MOD").starts_with("1 "));
  EXPECT_NE(folder_.Read("r.csv").find("\"Roughness Profile\""), std::string::npos);
}

TEST_F(FileCommands, AutoExportAddsARowAfterEveryLoad) {
  {
    const DialogDriver driver({[](QWidget& dialog) { dialog.close(); }, TypeName(FromPath(folder_ / "rows"))});
    Choose("autoExport");
    EXPECT_FALSE(document().settings.autoLoading.AutoExport) << "nowhere to write to";
    Choose("autoExport");
  }
  EXPECT_TRUE(document().settings.autoLoading.AutoExport);
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  ASSERT_TRUE(frame_->OpenFile(Sample("turned.lmt")));
  EXPECT_FALSE(frame_->OpenFile(folder_ / "none.lmt"));
  Choose("autoExport");
  ASSERT_TRUE(frame_->OpenFile(Sample("honed.lmt")));
  const std::string rows = folder_.Read("rows.csv");
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 4) << "two header lines, two rows";
  EXPECT_NE(rows.find("turned.lmt"), std::string::npos);
}

TEST_F(FileCommands, RecentFilesThatAreGoneAreToldAndDropped) {
  const std::filesystem::path copy = folder_ / "a&b.lmt";
  std::filesystem::copy_file(Sample("ground.lmt"), copy);
  ASSERT_TRUE(frame_->OpenFile(Sample("turned.lmt")));
  ASSERT_TRUE(frame_->OpenFile(copy));
  EXPECT_EQ(RecentMenu().actions()[0]->text(), "&1 " + FromPath(copy).replace("&", "&&"));
  EXPECT_TRUE(RecentMenu().actions()[1]->text().startsWith("&2 "));
  RecentMenu().actions()[1]->trigger();
  EXPECT_EQ(document().profiles.sourcePath, TextFromPath(Sample("turned.lmt")));
  std::filesystem::remove(copy);
  RecentMenu().actions()[1]->trigger();
  ASSERT_EQ(prompts_.messages.size(), 1u);
  EXPECT_NE(prompts_.messages[0].find("a&b.lmt is gone"), std::string::npos);
  for (const QAction* const action : RecentMenu().actions()) EXPECT_FALSE(action->text().contains("a&&b"));
}

TEST_F(FileCommands, EditsAreTakenBackAndMadeAgain) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  EXPECT_FALSE(frame_->Doc().CanUndo());
  const QString text = frame_->ParamView().Grid().AsText();
  const UndoPoint start = UndoPointOf(document());
  Settings settings = document().settings;
  settings.analysis.LcCutoffMM = 0.25;
  frame_->Doc().ReplaceSettings(settings);
  const UndoPoint afterSettings = UndoPointOf(document());
  Choose("invert");
  frame_->Doc().ReplaceSettings(document().settings);
  frame_->Doc().ComputeOver(1.0, 3.0);
  prompts_.textAnswer = "renamed";
  Choose("identification");
  Choose("metric");
  const UndoPoint end = UndoPointOf(document());
  const QString endText = frame_->ParamView().Grid().AsText();
  for (int i = 0; i < 3; ++i) Choose("undo");
  EXPECT_EQ(UndoPointOf(document()), afterSettings);
  Choose("undo");
  EXPECT_EQ(UndoPointOf(document()), start);
  EXPECT_FALSE(frame_->Doc().CanUndo()) << "what changed nothing and how it is shown are no edits";
  EXPECT_FALSE(document().settings.display.Metric);
  Choose("metric");
  EXPECT_EQ(frame_->ParamView().Grid().AsText(), text) << "computed anew";
  Choose("metric");
  for (int i = 0; i < 4; ++i) Choose("redo");
  EXPECT_EQ(UndoPointOf(document()), end);
  EXPECT_EQ(frame_->ParamView().Grid().AsText(), endText);
  ASSERT_TRUE(frame_->OpenFile(Sample("turned.lmt")));
  EXPECT_FALSE(frame_->Doc().CanUndo()) << "another record";
}

TEST_F(FileCommands, CopiesThePanesAsTheyAreSeenAndTheTable) {
  frame_->show();
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  Choose("copyDisplay");
  const QImage alone = QApplication::clipboard()->image();
  const double ratio = frame_->devicePixelRatioF();
  EXPECT_EQ(alone.size(), (frame_->View().parentWidget()->size().toSizeF() * ratio).toSize());
  Choose("spectrumCurve");
  QApplication::processEvents();
  Choose("copyDisplay");
  EXPECT_NE(QApplication::clipboard()->image(), alone) << "with the pane that was opened";
  Choose("copyParameters");
  EXPECT_EQ(QApplication::clipboard()->text(), frame_->ParamView().Grid().AsText());
}

TEST_F(FileCommands, OfSeveralDroppedFilesTheFirstIsOpenedAndAFolderIsABatch) {
  DropOn(*frame_,
         {QUrl::fromLocalFile(FromPath(Sample("turned.lmt"))), QUrl::fromLocalFile(FromPath(Sample("ground.lmt")))});
  EXPECT_EQ(document().profiles.sourcePath, TextFromPath(Sample("turned.lmt")));
  EXPECT_TRUE(frame_->statusBar()->currentMessage().contains("first of 2"))
      << frame_->statusBar()->currentMessage().toStdString();
  DropOn(*frame_, {QUrl::fromLocalFile(FromPath(folder_.path()))});
  auto* const batch = frame_->findChild<CFolderBatchWindow*>();
  ASSERT_NE(batch, nullptr);
  EXPECT_EQ(batch->findChild<QLineEdit*>("folder")->text(), FromPath(folder_.path()));
  EXPECT_EQ(document().profiles.sourcePath, TextFromPath(Sample("turned.lmt")));
}

TEST_F(FileCommands, AFileWaitsForAnOpenDialog) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  {
    const DialogDriver driver({[this](QWidget& dialog) {
      frame_->OpenLater(Sample("turned.lmt"));
      EXPECT_EQ(document().profiles.identification, "Ground; generated");
      dialog.close();
    }});
    Choose("save");
  }
  EXPECT_TRUE(QTest::qWaitFor([this] { return document().profiles.identification == "Turned; generated"; }));
}

TEST_F(FileCommands, FailuresAreOneSentenceAndLeaveTheDocumentAlone) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  const std::filesystem::path huge = folder_.Write("huge.lmt", "");
  std::filesystem::resize_file(huge, 300u << 20);
  std::filesystem::create_directory(folder_ / "dir.csv");
  std::filesystem::create_directory(folder_ / "dir.lmt");
  CTexturonDoc& doc = frame_->Doc();
  struct Case {
    const char* name;
    std::function<void()> run;
    const char* sentence;
  };
  const auto exportTo = [this](const std::filesystem::path& path) {
    DisplaySettings display = document().settings.display;
    display.ParameterFile = TextFromPath(path);
    frame_->Doc().ReplaceDisplay(display);
    Choose("exportParameters");
  };
  const Case cases[] = {
      {"empty", [&] { doc.Open(folder_.Write("empty.lmt", "")); }, "is empty"},
      {"damaged", [&] { doc.Open(folder_.Write("bad.lmt", "Lumetrace_Data 1.0\nIDENT")); }, "bad.lmt"},
      {"huge", [&] { doc.Open(huge); }, "huge.lmt"},
      {"vanished folder", [&] { doc.Open(folder_ / "gone/a.lmt"); }, "does not exist"},
      {"a folder", [&] { doc.Open(folder_.path()); }, "is a directory"},
      {"no settings", [&] { doc.LoadSettingsFile(folder_ / "none.ini"); }, "does not exist"},
      {"settings over a folder", [&] { EXPECT_FALSE(doc.SaveSettingsFile(folder_ / "dir.csv")); }, "is a directory"},
      {"settings into nowhere", [&] { doc.SaveSettingsFile(folder_ / "gone/s.ini"); }, "s.ini"},
      {"full disk", [&] { doc.SaveSettingsFile("/dev/full"); }, "/dev/full"},
      {"save over a folder", [&] { EXPECT_FALSE(doc.Save(folder_ / "dir.lmt")); }, "Could not write file."},
      {"rows over a folder", [&] { exportTo(folder_ / "dir.csv"); }, "dir.csv"},
      {"rows into nowhere", [&] { exportTo(folder_ / "gone/r.csv"); }, "r.csv"},
  };
  std::vector<Case> all(std::begin(cases), std::end(cases));
  if (::geteuid() != 0) {
    const std::filesystem::path readOnly = folder_.Write("locked.ini", "[TEXTURON]\r\nIniVersion=2.00\r\n");
    std::filesystem::permissions(readOnly, std::filesystem::perms::owner_read);
    all.push_back({"read-only settings", [&doc, readOnly] { doc.SaveSettingsFile(readOnly); }, "locked.ini"});
  }
  for (const Case& c : all) {
    const ProfileSet before = document().profiles;
    const AnalysisSettings settings = document().settings.analysis;
    prompts_.messages.clear();
    c.run();
    // A reader may have said what it found before.
    ASSERT_FALSE(prompts_.messages.empty()) << c.name;
    const std::string& sentence = prompts_.messages.back();
    EXPECT_NE(sentence.find(c.sentence), std::string::npos) << c.name << ": " << sentence;
    EXPECT_TRUE(sentence.ends_with('.')) << sentence;
    EXPECT_EQ(document().profiles.raw, before.raw) << c.name;
    EXPECT_EQ(document().profiles.roughness, before.roughness) << c.name;
    EXPECT_EQ(document().profiles.sourcePath, before.sourcePath) << c.name;
    EXPECT_EQ(document().settings.analysis, settings) << c.name;
  }
}

TEST_F(FileCommands, PreviewAndPageRangesHoldThePagesOfTheReport) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  QPrinter printer;
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(FromPath(folder_ / "p.pdf"));
  printer.setResolution(kReportResolution);
  const int all = PrintReport(printer, document(), "");
  EXPECT_GE(all, 3);
  printer.setFromTo(2, 3);
  EXPECT_EQ(PrintReport(printer, document(), ""), 2);
  const DialogDriver driver({[all](QWidget& dialog) {
    auto* const preview = dialog.findChild<QPrintPreviewWidget*>();
    EXPECT_NE(preview, nullptr);
    if (preview != nullptr) {
      preview->updatePreview();
      EXPECT_EQ(preview->pageCount(), all);
    }
    dialog.close();
  }});
  Choose("printPreview");
}

TEST_F(FileCommands, WhatIsSavedOpensAgain) {
  CTexturonDoc& doc = frame_->Doc();
  ASSERT_TRUE(doc.Open(Sample("ground.lmt")));
  EXPECT_FALSE(doc.IsModified());
  doc.SetIdentification("a, \"b\" " + std::string(700, 'x'));
  EXPECT_TRUE(doc.IsModified());
  ASSERT_TRUE(doc.Save(folder_ / "long.lmt"));
  EXPECT_FALSE(doc.IsModified());
  ASSERT_TRUE(doc.Open(folder_ / "long.lmt"));
  EXPECT_TRUE(doc.document().profiles.identification.starts_with("a; 'b' xxx"));
  doc.Invert();
  EXPECT_TRUE(frame_->isWindowModified());
  doc.Invert();
  EXPECT_FALSE(frame_->isWindowModified());
}

}  // namespace
}  // namespace texturon
