// The File menu of the main window.

#include <QFileDialog>
#include <QMenuBar>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSettings>

#include "core/date_text.h"
#include "ui/main_frame.h"
#include "ui/qt_text.h"
#include "ui/report.h"

namespace texturon {
namespace {

constexpr int kMostRecent = 8;
constexpr const char* kRecentKey = "recentFiles";

}  // namespace

void CMainFrame::MakeFileMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&File"));
  AddCommand(*menu, tr("&Open..."), QKeySequence::Open, tr("Opens a profile."), [this] { OnOpen(); });
  recentMenu_ = menu->addMenu(tr("Recent &Files"));
  connect(recentMenu_, &QMenu::aboutToShow, this, &CMainFrame::ShowRecentFiles);
  needProfile_ << AddCommand(*menu, tr("&Save As..."), QKeySequence::Save, tr("Writes the measured profile."),
                             [this] { OnSaveAs(); });
  menu->addSeparator();
  AddCommand(*menu, tr("&Load Settings"), {}, tr("Loads settings from an existing file."), [this] {
    const QString file = QFileDialog::getOpenFileName(this, {}, {}, tr("Initialization Files (*.ini);;All Files (*)"));
    if (!file.isEmpty()) doc_->LoadSettingsFile(ToPath(file));
  });
  AddCommand(*menu, tr("&Save Settings"), {}, tr("Saves the current configuration to a file."), [this] {
    const QString file = QFileDialog::getSaveFileName(this, {}, {}, tr("Initialization Files (*.ini);;All Files (*)"));
    if (!file.isEmpty()) doc_->SaveSettingsFile(ToPath(file));
  });
  saveDefaults_ = AddCommand(*menu, tr("Save Settings as &Default"), {}, tr("The program starts with these settings."),
                             [this] { OnSaveDefaults(); });
  saveDefaults_->setEnabled(false);
  menu->addSeparator();
  needProfile_ << AddCommand(*menu, tr("Report as P&DF..."), {}, tr("Writes the report to a file."),
                             [this] { OnReport(); });
  needProfile_ << AddCommand(*menu, tr("Print Pre&view..."), {}, tr("Shows the report as it would be printed."),
                             [this] { OnPrint(true); });
  needProfile_ << AddCommand(*menu, tr("&Print..."), QKeySequence::Print, tr("Prints the report."),
                             [this] { OnPrint(false); });
  menu->addSeparator();
  AddCommand(*menu, tr("E&xit"), QKeySequence::Quit, tr("Ends the program."), [this] { close(); });
}

void CMainFrame::ShowRecentFiles() {
  recentMenu_->clear();
  for (const QString& file : QSettings().value(kRecentKey).toStringList()) {
    connect(recentMenu_->addAction(file), &QAction::triggered, this, [this, file] { OpenFile(ToPath(file)); });
  }
  if (recentMenu_->isEmpty()) recentMenu_->addAction(tr("(none)"))->setEnabled(false);
}

bool CMainFrame::OpenFile(const std::filesystem::path& path) {
  if (!doc_->Open(path)) return false;
  QSettings store;
  QStringList recent = store.value(kRecentKey).toStringList();
  recent.removeAll(FromPath(path));
  recent.prepend(FromPath(path));
  store.setValue(kRecentKey, recent.mid(0, kMostRecent));
  return true;
}

void CMainFrame::OnOpen() {
  const QString file = QFileDialog::getOpenFileName(this, tr("Open a profile"));
  if (!file.isEmpty()) OpenFile(ToPath(file));
}

void CMainFrame::OnSaveAs() {
  const QString file = QFileDialog::getSaveFileName(
      this, tr("Save the profile"), {},
      tr("Native format (*.lmt);;Taylor Hobson (*.prf);;SDF (*.sdf);;PR (*.pr);;All Files (*)"));
  if (!file.isEmpty()) doc_->Save(ToPath(file));
}

void CMainFrame::OnReport() {
  const QString file = QFileDialog::getSaveFileName(this, tr("Report"), {}, tr("PDF (*.pdf);;All Files (*)"));
  if (file.isEmpty()) return;
  QString reason;
  const std::string time = DateText(doc_->environment().localTime());
  if (!WriteReport(file, doc_->document(), time, reason)) doc_->prompts().ShowMessage(ToText(reason));
}

void CMainFrame::OnPrint(bool previews) {
  QPrinter printer;
  printer.setResolution(kReportResolution);
  printer.setDocName(windowTitle());
  const auto print = [this](QPrinter* target) {
    if (PrintReport(*target, doc_->document(), DateText(doc_->environment().localTime())) == 0) {
      doc_->prompts().ShowMessage("The printer cannot be used.");
    }
  };
  if (previews) {
    QPrintPreviewDialog preview(&printer, this);
    connect(&preview, &QPrintPreviewDialog::paintRequested, this, print);
    preview.exec();
  } else if (QPrintDialog(&printer, this).exec() == QDialog::Accepted) {
    print(&printer);
  }
}

}  // namespace texturon
