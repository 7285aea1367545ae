// The Export menu of the main window.

#include <QFileDialog>
#include <QMenuBar>
#include <QStatusBar>

#include "core/date_text.h"
#include "core/platform.h"
#include "export/parameter_file.h"
#include "ui/main_frame.h"
#include "ui/qt_text.h"

namespace texturon {

void CMainFrame::MakeExportMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Export"));
  needProfile_ << AddCommand(*menu, tr("&Export Parameters"), QKeySequence(Qt::CTRL | Qt::Key_E),
                             tr("Adds a row to the parameter file."), [this] { OnExportParameters(false); });
  needProfile_ << AddCommand(*menu, tr("Export Parameters &As..."), {}, tr("Adds a row to another parameter file."),
                             [this] { OnExportParameters(true); });
  menu->addSeparator();
  for (const ExportKind& kind : ExportKinds()) {
    needProfile_ << AddCommand(*menu, FromText(kind.menu) + "...", {}, tr("Writes it to a file."),
                               [this, &kind] { OnExport(kind, false); });
    if (kind.makeMod == nullptr) continue;
    needProfile_ << AddCommand(*menu, tr("%1 as MOD...").arg(FromText(kind.menu)), {}, tr("Writes it as form data."),
                               [this, &kind] { OnExport(kind, true); });
  }
}

void CMainFrame::OnExport(const ExportKind& kind, bool asMod) {
  const ExportResult result = (asMod ? kind.makeMod : kind.make)(doc_->document(), doc_->prompts());
  if (!result.ok()) {
    doc_->prompts().ShowMessage("Not exported: " + result.reason + ".");
    return;
  }
  const QString filter = asMod ? tr("FTS MOD File (*.mod)") : tr("Comma Separated Values (*.csv);;All Files (*)");
  const QString file = QFileDialog::getSaveFileName(this, FromText(kind.menu), {}, filter);
  if (file.isEmpty()) return;
  const FileOutcome outcome = ReplaceFile(ToPath(file), result.text);
  if (!outcome.ok()) doc_->prompts().ShowMessage(FileSentence(ToPath(file), outcome.reason));
}

void CMainFrame::OnExportParameters(bool asks) {
  Settings settings = doc_->document().settings;
  if (asks || settings.display.ParameterFile.empty()) {
    const QString file = QFileDialog::getSaveFileName(
        this, tr("Parameter file"), FromText(settings.display.ParameterFile),
        tr("Comma Separated Values (*.csv);;All Files (*)"), nullptr, QFileDialog::DontConfirmOverwrite);
    if (file.isEmpty()) return;
    settings.display.ParameterFile = ToText(file);
    doc_->ReplaceSettings(settings);
  }
  const ParameterFileText text = ParameterFileTextOf(doc_->document(), DateText(doc_->environment().localTime()));
  const std::filesystem::path path = PathFromText(settings.display.ParameterFile);
  if (AppendParameters(path, text.header, text.row, doc_->prompts()).written) {
    statusBar()->showMessage(tr("Added a row to %1").arg(FromPath(path)), 5'000);
  }
}

}  // namespace texturon
