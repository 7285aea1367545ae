// SPDX-License-Identifier: Apache-2.0

// The File menu of the main window, and files that come to it from outside.

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QGraphicsView>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <system_error>
#include <utility>
#include <vector>

#include "base/date_text.h"
#include "platform/platform.h"
#include "ui/folders/auto_loading.h"
#include "ui/folders/folder_batch_window.h"
#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/report/report.h"
#include "ui/report/report_layout_dialog.h"
#include "ui/several/several_window.h"
#include "ui/window/autosave.h"
#include "ui/window/file_dialogs.h"
#include "ui/window/main_frame.h"

namespace texturon {
namespace {

constexpr int kMostRecent = 8;
constexpr int kTryAgainMS = 200;
constexpr const char* kRecentKey = "recentFiles";
constexpr const char* kSettingsFilters = "Initialization Files (*.ini)|*.ini|All Files (*.*)|*.*||";

}  // namespace

void CMainFrame::MakeFileMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&File"));
  AddCommand(*menu, {.name = "open", .text = tr("&Open..."), .keys = QKeySequence::Open, .tip = tr("Opens a profile.")},
             [this] { OnOpen(); });
  recentMenu_ = menu->addMenu(tr("Recent &Files"));
  connect(recentMenu_, &QMenu::aboutToShow, this, &CMainFrame::ShowRecentFiles);
  AddCommand(*menu,
             {.name = "save",
              .text = tr("&Save"),
              .keys = QKeySequence::Save,
              .tip = tr("Writes the measured profile to a file."),
              .needsProfile = true},
             [this] { OnSave(); });
  menu->addSeparator();
  AddCommand(*menu,
             {.name = "loadSettings", .text = tr("&Load Settings"), .tip = tr("Loads settings from an existing file.")},
             [this] {
               const auto file = AskFileToOpen(this, {.title = tr("Load Settings"), .filters = kSettingsFilters});
               if (file) doc_->LoadSettingsFile(*file);
             });
  AddCommand(
      *menu,
      {.name = "saveSettings", .text = tr("&Save Settings"), .tip = tr("Saves the current configuration to a file.")},
      [this] { OnSaveSettings(); });
  saveDefaults_ = AddCommand(*menu,
                             {.name = "saveSettingsAsDefault",
                              .text = tr("Save Settings as Defa&ult"),
                              .tip = tr("The program starts with these settings.")},
                             [this] { OnSaveDefaults(); });
  saveDefaults_->setEnabled(false);
  menu->addSeparator();
  MakeFolderCommands(*menu);
  menu->addSeparator();
  AddCommand(*menu,
             {.name = "reportAsPDF",
              .text = tr("Report as P&DF..."),
              .tip = tr("Writes the report to a file."),
              .needsProfile = true},
             [this] { OnReport(); });
  AddCommand(*menu,
             {.name = "reportLayout",
              .text = tr("Report La&yout..."),
              .tip = tr("Chooses and orders the blocks of the report.")},
             [this] {
               CReportLayoutDialog dialog(LayoutOfReports(), this);
               QString reason;
               if (dialog.exec() == QDialog::Accepted && !KeepUsersReportTemplate(dialog.Chosen(), reason)) {
                 doc_->prompts().ShowMessage(ToText(reason));
               }
             });
  AddCommand(*menu,
             {.name = "printPreview",
              .text = tr("Print Pre&view..."),
              .tip = tr("Shows the report as it would be printed."),
              .needsProfile = true},
             [this] { OnPrint(true); });
  AddCommand(*menu,
             {.name = "print",
              .text = tr("&Print..."),
              .keys = QKeySequence::Print,
              .tip = tr("Prints the report."),
              .needsProfile = true},
             [this] { OnPrint(false); });
  menu->addSeparator();
  AddCommand(*menu, {.name = "exit", .text = tr("E&xit"), .keys = QKeySequence::Quit, .tip = tr("Ends the program.")},
             [this] { close(); });
}

void CMainFrame::MakeFolderCommands(QMenu& menu) {
  AddSwitch(
      menu, {.name = "autoLoading", .text = tr("&Auto-Loading"), .tip = tr("Loads files as they appear in a folder.")},
      [](const Document& document) { return document.settings.autoLoading.IsAutoLoading; },
      [this](bool on) {
        AutoLoadingSettings settings = doc_->document().settings.autoLoading;
        settings.IsAutoLoading = on;
        Settings wanted = doc_->document().settings;
        wanted.autoLoading = settings;
        if (!on || PlanWatch(wanted).reason.empty()) return doc_->ReplaceAutoLoading(std::move(settings));
        findChild<QAction*>("autoLoading")->setChecked(false);
        ShowAutoLoadingSheet().AskForWhatIsMissing();
      });
  AddCommand(menu,
             {.name = "autoLoadingSettings",
              .text = tr("Auto-Loading Settin&gs..."),
              .tip = tr("Which folder, and what becomes of the files.")},
             [this] { ShowAutoLoadingSheet(); });
  AddCommand(
      menu,
      {.name = "batchOfAFolder", .text = tr("&Batch of a Folder..."), .tip = tr("Analyses all files of a folder.")},
      [this] { OnBatch({}); });
  AddCommand(menu,
             {.name = "severalProfiles",
              .text = tr("Several P&rofiles..."),
              .tip = tr("Shows profiles over each other and their parameters side by side.")},
             [this] { OnSeveral({}); });
}

CAutoLoadingSheet& CMainFrame::ShowAutoLoadingSheet() {
  auto* sheet = findChild<CAutoLoadingSheet*>();
  if (sheet == nullptr) sheet = new CAutoLoadingSheet(*doc_, this);
  sheet->show();
  sheet->activateWindow();
  return *sheet;
}

void CMainFrame::OnSeveral(const std::vector<std::filesystem::path>& files) {
  auto* window = findChild<CSeveralWindow*>();
  if (window == nullptr) {
    window = new CSeveralWindow(*doc_, this);
    connect(window, &CSeveralWindow::OpenRequested, this, [this](const QString& file) { OpenLater(ToPath(file)); });
  }
  const std::filesystem::path& present = doc_->document().profiles.sourceFile;
  std::error_code error;
  if (!files.empty()) {
    window->AddFiles(files);
  } else if (window->Count() == 0 && std::filesystem::exists(present, error)) {
    window->AddFiles({present});
  }
  window->show();
  window->activateWindow();
}

void CMainFrame::OpenAll(const std::vector<std::filesystem::path>& files) {
  if (files.empty()) return;
  OpenLater(files.front());
  if (files.size() == 1) return;
  statusBar()->showMessage(
      tr("Opened the first of %n files; all are in File, Several Profiles.", nullptr, static_cast<int>(files.size())),
      10'000);
  doc_->WhenIdle([this, files] { OnSeveral(files); });
}

void CMainFrame::OnBatch(const std::filesystem::path& folder) {
  // Its results would come from settings that nobody could look up.
  if (!SettleUnsaved(true, tr("The batch takes them as they are; saved, they can be looked up later."))) return;
  auto* window = findChild<CFolderBatchWindow*>();
  if (window == nullptr) {
    window = new CFolderBatchWindow(*doc_, this);
    connect(window, &CFolderBatchWindow::OpenRequested, this, [this](const QString& file) { OpenLater(ToPath(file)); });
  }
  if (!folder.empty()) window->ChooseFolder(folder);
  window->show();
  window->activateWindow();
}

void CMainFrame::ShowRecentFiles() {
  recentMenu_->clear();
  int number = 0;
  for (const QString& file : QSettings().value(kRecentKey).toStringList()) {
    const QString title = QString("&%1 %2").arg(++number).arg(QString(file).replace('&', "&&"));
    connect(recentMenu_->addAction(title), &QAction::triggered, this, [this, file] { OpenRecent(file); });
  }
  if (recentMenu_->isEmpty()) recentMenu_->addAction(tr("(none)"))->setEnabled(false);
}

void CMainFrame::OpenRecent(const QString& file) {
  std::error_code error;
  if (std::filesystem::exists(ToPath(file), error)) {
    OpenFile(ToPath(file));
    return;
  }
  QSettings store;
  QStringList recent = store.value(kRecentKey).toStringList();
  recent.removeAll(file);
  store.setValue(kRecentKey, recent);
  doc_->prompts().ShowMessage(FileSentence(ToPath(file), "is gone and no longer in the list"));
}

void CMainFrame::Remember(const std::filesystem::path& path) {
  std::error_code error;
  const QString file = FromPath(std::filesystem::absolute(path, error));
  QSettings store;
  QStringList recent = store.value(kRecentKey).toStringList();
  recent.removeAll(file);
  recent.prepend(file);
  store.setValue(kRecentKey, recent.mid(0, kMostRecent));
}

bool CMainFrame::OpenFile(const std::filesystem::path& path) {
  if (doc_->IsBusy()) {
    OpenLater(path);
    return false;
  }
  if (!SettleUnsaved(false) || !doc_->Open(path)) return false;
  Remember(path);
  const Document& document = doc_->document();
  if (document.settings.autoLoading.AutoExport && document.profiles.primaryRange) OnExportParameters(false);
  return true;
}

void CMainFrame::OpenLater(const std::filesystem::path& path) {
  if (!doc_->IsBusy() && QApplication::activeModalWidget() == nullptr) {
    OpenFile(path);
    return;
  }
  QTimer::singleShot(kTryAgainMS, this, [this, path] { OpenLater(path); });
}

void CMainFrame::OnDropped(const QList<QUrl>& urls) {
  std::vector<std::filesystem::path> paths;
  for (const QUrl& url : urls) {
    if (url.isLocalFile()) paths.push_back(ToPath(url.toLocalFile()));
  }
  if (paths.empty()) return;
  std::error_code error;
  if (std::filesystem::is_directory(paths.front(), error)) return OnBatch(paths.front());
  OpenAll(paths);
}

void CMainFrame::closeEvent(QCloseEvent* event) {
  if (doc_->IsBusy()) {
    event->ignore();
    doc_->WhenIdle([this] { close(); });
    return;
  }
  if (!isSettled_ && !SettleUnsaved(true)) return event->ignore();
  delete std::exchange(autosave_, nullptr);
  QMainWindow::closeEvent(event);
}

void CMainFrame::OnOpen() {
  const std::filesystem::path& present = doc_->document().profiles.sourceFile;
  const auto file = AskFileToOpen(this, {.title = tr("Open a profile"),
                                         .filters = ProfileFilters(),
                                         .proposal = present.has_parent_path() ? present.parent_path() / "" : present});
  if (file) OpenFile(*file);
}

bool CMainFrame::OnSaveSettings() {
  const auto file =
      AskFileToSave(this, {.title = tr("Save Settings"), .filters = kSettingsFilters, .extension = "ini"});
  return file && doc_->SaveSettingsFile(*file);
}

bool CMainFrame::OnSave() {
  const auto file = AskFileToSave(this, {.title = tr("Save the profile"),
                                         .filters = SaveFilters(),
                                         .extension = "lmt",
                                         .proposal = doc_->document().profiles.sourceFile});
  if (!file) return false;
  const std::filesystem::path written = CTexturonDoc::SavedAs(*file);
  std::error_code error;
  if (written != *file && std::filesystem::exists(written, error) &&
      !doc_->prompts().AskYesNo(TextFromPath(written) + " exists already. Replace it?")) {
    return false;
  }
  if (!doc_->Save(*file)) return false;
  Remember(written);
  return true;
}

std::filesystem::path CMainFrame::ProposedName(const std::string& ending) const {
  std::filesystem::path name = doc_->document().profiles.sourceFile.stem();
  name += ending;
  return name;
}

ReportTemplate CMainFrame::LayoutOfReports() {
  QString fault;
  ReportTemplate layout = UsersReportTemplate(fault);
  if (!fault.isEmpty())
    doc_->prompts().ShowMessage(ToText(EngineText(ToText(fault)) + ' ' + tr("The layout is the default one.")));
  return layout;
}

void CMainFrame::OnReport() {
  const auto file = AskFileToSave(this, {.title = tr("Report"),
                                         .filters = "PDF (*.pdf)|*.pdf|HTML (*.html)|*.html|All Files (*.*)|*.*||",
                                         .extension = "pdf",
                                         .proposal = ProposedName(".pdf")});
  if (!file) return;
  QString reason;
  const std::string time = DateText(doc_->environment().localTime());
  const ReportChoice choice{.layout = LayoutOfReports()};
  if (WriteReport(FromPath(*file), doc_->document(), time, reason, choice)) {
    statusBar()->showMessage(tr("Wrote %1").arg(FromPath(*file)), 5'000);
    const QString fault = MissingLogo(doc_->document(), choice.layout);
    if (!fault.isEmpty()) doc_->prompts().ShowMessage(ToText(fault));
  } else {
    doc_->prompts().ShowMessage(ToText(reason));
  }
}

void CMainFrame::OnPrint(bool previews) {
  QPrinter printer;
  printer.setResolution(kReportResolution);
  printer.setDocName(windowTitle());
  const ReportChoice choice{.layout = LayoutOfReports()};
  const auto print = [this, choice](QPrinter* target) {
    const EnglishScope english;
    if (PrintReport(*target, doc_->document(), DateText(doc_->environment().localTime()), choice) == 0) {
      doc_->prompts().ShowMessage("The printer cannot be used.");
    }
  };
  if (previews) {
    QPrintPreviewDialog preview(&printer, this);
    connect(&preview, &QPrintPreviewDialog::paintRequested, this, print);
    // The library leaves these without a name.
    for (auto* const field : preview.findChildren<QLineEdit*>()) {
      const bool isZoom = qobject_cast<QComboBox*>(field->parentWidget()) != nullptr;
      field->setAccessibleName(isZoom ? tr("Zoom") : tr("Page"));
    }
    for (auto* const pages : preview.findChildren<QGraphicsView*>()) pages->setAccessibleName(tr("Pages"));
    preview.exec();
    return;
  }
  QPrintDialog dialog(&printer, this);
  dialog.setOption(QAbstractPrintDialog::PrintPageRange);
  if (dialog.exec() == QDialog::Accepted) print(&printer);
}

}  // namespace texturon
