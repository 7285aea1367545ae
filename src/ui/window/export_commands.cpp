// SPDX-License-Identifier: Apache-2.0

// The Export menu of the main window.

#include <QMenuBar>
#include <QStatusBar>

#include "base/date_text.h"
#include "base/text.h"
#include "export/parameter_file.h"
#include "export/qdas_file.h"
#include "platform/platform.h"
#include "settings/settings_text.h"
#include "ui/language.h"
#include "ui/plots/texturon_view.h"
#include "ui/qt_text.h"
#include "ui/report/report.h"
#include "ui/window/file_dialogs.h"
#include "ui/window/main_frame.h"

namespace texturon {
namespace {

constexpr const char* kCsvOrModFilters =
    "Comma Separated Values (*.csv)|*.csv|FTS MOD File (*.mod)|*.mod|All Files (*.*)|*.*||";

}  // namespace

void CMainFrame::MakeExportMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("E&xport"));
  AddCommand(*menu,
             {.name = "exportParameters",
              .text = tr("&Export Parameters"),
              .keys = QKeySequence(Qt::CTRL | Qt::Key_E),
              .tip = tr("Adds a row to the parameter file."),
              .needsProfile = true},
             [this] { OnExportParameters(false); });
  AddCommand(*menu,
             {.name = "exportParametersAs",
              .text = tr("Export Parameters &As..."),
              .tip = tr("Adds a row to another parameter file."),
              .needsProfile = true},
             [this] { OnExportParameters(true); });
  AddSwitch(
      *menu,
      {.name = "autoExport",
       .text = tr("Auto Export"),
       .tip = tr("Adds a row to the parameter file after every load.")},
      [](const Document& document) { return document.settings.autoLoading.AutoExport; },
      [this](bool on) { OnAutoExport(on); });
  AddCommand(*menu,
             {.name = "exportStatistics",
              .text = tr("Results for &Statistics..."),
              .tip = tr("Adds the rows with limits to a file for statistics programs (Q-DAS)."),
              .needsProfile = true},
             [this] { OnExportStatistics(); });
  AddCommand(*menu,
             {.name = "savePicture",
              .text = tr("P&icture of the Profiles..."),
              .tip = tr("Writes the profiles as they are in view, as SVG or PNG."),
              .needsProfile = true},
             [this] { OnSavePicture(); });
  menu->addSeparator();
  QMenu* const profiles = menu->addMenu(tr("Export &Profiles"));
  QMenu* const curves = menu->addMenu(tr("Export &Curves"));
  for (const ExportKind& kind : ExportKinds()) {
    AddCommand(kind.isProfile ? *profiles : *curves,
               {.name = "export-" + FromText(kind.name),
                .text = EngineText(kind.menu) + "...",
                .tip = tr("Writes it to a file."),
                .needsProfile = true},
               [this, &kind] { OnExport(kind); });
  }
}

void CMainFrame::OnAutoExport(bool on) {
  const std::string& known = doc_->document().settings.display.ParameterFile;
  if (on && (known.empty() || MayBeCut(known)) && !AskForParameterFile()) {
    // The switch goes back to what the document says.
    return doc_->ReplaceAutoLoading(doc_->document().settings.autoLoading);
  }
  AutoLoadingSettings settings = doc_->document().settings.autoLoading;
  settings.AutoExport = on;
  doc_->ReplaceAutoLoading(std::move(settings));
}

bool CMainFrame::AskForParameterFile() {
  DisplaySettings display = doc_->document().settings.display;
  const auto file = AskParameterFile(this, PathFromText(display.ParameterFile));
  if (!file) return false;
  display.ParameterFile = TextFromPath(*file);
  doc_->ReplaceDisplay(std::move(display));
  return true;
}

void CMainFrame::OnExport(const ExportKind& kind) {
  const auto file = AskFileToSave(this, {.title = EngineText(kind.menu),
                                         .filters = kind.makeMod != nullptr ? kCsvOrModFilters : kCsvFilters,
                                         .extension = "csv",
                                         .proposal = ProposedName("-" + std::string(kind.name) + ".csv")});
  if (!file) return;
  const bool asMod = kind.makeMod != nullptr && EqualIgnoringCase(TextFromPath(file->extension()), ".mod");
  const ExportResult result = (asMod ? kind.makeMod : kind.make)(doc_->document(), doc_->prompts());
  if (!result.ok()) {
    doc_->prompts().ShowMessage("Not exported: " + result.reason + ".");
    return;
  }
  const FileOutcome outcome = ReplaceFile(*file, result.text);
  if (outcome.ok()) {
    statusBar()->showMessage(tr("Wrote %1").arg(FromPath(*file)), 5'000);
  } else {
    doc_->prompts().ShowMessage(FileSentence(*file, outcome.reason));
  }
}

void CMainFrame::OnSavePicture() {
  const auto file = AskFileToSave(this, {.title = tr("Picture of the Profiles"),
                                         .filters = "PNG (*.png)|*.png|SVG (*.svg)|*.svg||",
                                         .extension = "png",
                                         .proposal = ProposedName(".png")});
  if (!file) return;
  const CClickableProfileGraph& graph = view_->Graph();
  const PictureOfView view{.shown = ShownProfilesOf(doc_->document().settings.display),
                           .firstX = graph.xAxis->range().lower,
                           .lastX = graph.xAxis->range().upper,
                           .lowest = graph.yAxis->range().lower,
                           .highest = graph.yAxis->range().upper};
  QString reason;
  if (WritePicture(FromPath(*file), doc_->document(), view, reason)) {
    statusBar()->showMessage(tr("Wrote %1").arg(FromPath(*file)), 5'000);
  } else {
    doc_->prompts().ShowMessage(ToText(reason));
  }
}

void CMainFrame::OnExportStatistics() {
  const auto text = QdasTextOf(doc_->document(), doc_->environment().localTime());
  if (!text) return doc_->prompts().ShowMessage("Not exported: no row has limits.");
  const auto file = AskFileToSave(this, {.title = tr("Results for Statistics"),
                                         .filters = "Q-DAS Files (*.dfq)|*.dfq|All Files (*.*)|*.*||",
                                         .extension = "dfq",
                                         .proposal = ProposedName(".dfq"),
                                         .confirmsOverwrite = false});
  if (!file) return;
  const AppendOutcome outcome = AppendToQdasFile(*file, text->description, text->values, InUse::kRetryOnce);
  if (outcome.written) {
    statusBar()->showMessage(tr("Added values to %1").arg(FromPath(*file)), 5'000);
  } else {
    doc_->prompts().ShowMessage(FileSentence(*file, outcome.reason));
  }
}

void CMainFrame::OnExportParameters(bool asks) {
  // What a settings file has cut may name another file: then the user says which.
  const std::string& known = doc_->document().settings.display.ParameterFile;
  if ((asks || known.empty() || MayBeCut(known)) && !AskForParameterFile()) return;
  const ParameterFileText text = ParameterFileTextOf(doc_->document(), DateText(doc_->environment().localTime()));
  const std::filesystem::path path = PathFromText(doc_->document().settings.display.ParameterFile);
  if (AppendParameters(path, text.header, text.row, doc_->prompts()).written) {
    statusBar()->showMessage(tr("Added a row to %1").arg(FromPath(path)), 5'000);
  }
}

}  // namespace texturon
