// SPDX-License-Identifier: Apache-2.0

#include "ui/folders/auto_loading.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "base/charset.h"
#include "platform/platform.h"
#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/sheets/settings_pages.h"
#include "ui/window/file_dialogs.h"

namespace texturon {

CAutoLoading::CAutoLoading(CTexturonDoc& doc, QWidget& window) : QObject(&window), doc_(doc), window_(window) {
  timer_.setSingleShot(true);
  timer_.setInterval(kWatchPoll);
  connect(&timer_, &QTimer::timeout, this, &CAutoLoading::PollNow);
  connect(&doc_, &CTexturonDoc::Changed, this, &CAutoLoading::Follow);
  Follow();
}

void CAutoLoading::Follow() {
  const Settings& settings = doc_.document().settings;
  const bool isKnown = settings.autoLoading == followed_ && settings.display.ParameterFile == followedParameterFile_;
  if (isPolling_ || isKnown) return;
  followed_ = settings.autoLoading;
  followedParameterFile_ = settings.display.ParameterFile;
  timer_.stop();
  watch_.reset();
  if (followed_.IsAutoLoading) {
    WatchPlan plan = PlanWatch(settings);
    if (!plan.reason.empty()) return TurnOff("Files are not loaded as they appear: " + plan.reason + ".");
    options_ = std::move(plan.options);
    // The window does not stand still for another program's sake.
    options_.rowPatience = std::chrono::milliseconds(0);
    const auto failed = [this](const std::string& sentence) { last_ = sentence; };
    const auto analysed = [this](const std::string& file, const FileAnalysis& /*analysis*/) {
      ++count_;
      last_ = Windows1252FromUtf8(file);
    };
    watch_ = std::make_unique<FolderWatch>(
        options_, [this](const std::filesystem::path& path) { return Load(path); }, doc_.environment(),
        FolderWatchObserver{.analysed = analysed, .failed = failed, .stops = {}});
    isPrepared_ = false;
    count_ = 0;
    last_.clear();
    timer_.start();
  }
  Tell();
}

void CAutoLoading::TurnOff(const std::string& reason) {
  watch_.reset();
  Tell();
  AutoLoadingSettings settings = doc_.document().settings.autoLoading;
  settings.IsAutoLoading = false;
  doc_.ReplaceAutoLoading(std::move(settings));
  doc_.prompts().ShowMessage(reason);
}

void CAutoLoading::PollNow() {
  if (watch_ == nullptr || isPolling_) return;
  const bool isInUse =
      doc_.IsBusy() || QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr;
  if (isInUse) return timer_.start();
  if (!std::exchange(isPrepared_, true)) {
    const std::string reason = watch_->PrepareHold();
    if (!reason.empty()) return TurnOff(reason);
  }
  isPolling_ = true;
  watch_->Poll();
  isPolling_ = false;
  timer_.start();
  Tell();
  Follow();
}

FileAnalysis CAutoLoading::Load(const std::filesystem::path& path) {
  FileAnalysis analysis;
  analysis.reason = doc_.OpenUnattended(path);
  if (!analysis.ok()) return analysis;
  if (doc_.document().settings.autoLoading.TopmostAfterAutoLoad) {
    window_.setWindowState((window_.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    window_.raise();
    window_.activateWindow();
  }
  return ResultsOf(doc_.document(), doc_.environment());
}

void CAutoLoading::Tell() {
  QString state;
  if (watch_ != nullptr) {
    const std::filesystem::path source =
        options_.singleFile.empty() ? options_.folder : options_.folder / PathFromSystemText(options_.singleFile);
    state = tr("Auto-loading %1: %n loaded", nullptr, count_).arg(FromPath(source));
    const std::string& complaint = watch_->Complaint();
    if (!last_.empty() && last_ != complaint) state += " - " + EngineText(last_);
    if (!complaint.empty()) state += " - " + EngineText(complaint);
  }
  if (state == state_) return;
  state_ = state;
  emit StateChanged();
}

CAutoLoadingSheet::CAutoLoadingSheet(CTexturonDoc& doc, QWidget* parent)
    : QDialog(parent), doc_(doc), working_(doc.document().settings), fault_(new QLabel(this)) {
  setWindowTitle(tr("Auto-Loading"));
  page_ = new CFieldsPage(working_, "Auto-Loading");
  AddBrowser("AUTO_LOADING.AutoLoadFolder", [this](const auto& path) { return AskFolder(this, tr("Folder"), path); });
  AddBrowser("AUTO_LOADING.StorageFolderAfterAutoLoad",
             [this](const auto& path) { return AskFolder(this, tr("Hold folder"), path); });
  AddBrowser("AUTO_LOADING.AutoLoadFile", [this](const auto& path) {
    return AskFileToOpen(this, {.title = tr("File"), .filters = ProfileFilters(), .proposal = path});
  });
  AddBrowser("DISPLAY.ParameterFile", [this](const auto& path) { return AskParameterFile(this, path); });
  fault_->setObjectName("fault");
  fault_->setWordWrap(true);
  connect(page_, &CSettingsPage::Edited, this, [this] { fault_->clear(); });
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CAutoLoadingSheet::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(page_);
  layout->addWidget(fault_);
  layout->addWidget(buttons);
}

void CAutoLoadingSheet::AddBrowser(const char* field, const Ask& ask) {
  auto* const owner = page_->findChild<CSettingField*>(field);
  auto* const line = owner->findChild<QLineEdit*>();
  auto* const button = new QPushButton(tr("Browse..."), owner);
  button->setAutoDefault(false);
  button->setAccessibleName(tr("Browse for: %1").arg(owner->Title()));
  line->setMinimumWidth(line->fontMetrics().averageCharWidth() * 45);
  static_cast<QHBoxLayout*>(owner->layout())->insertWidget(1, button);
  connect(button, &QPushButton::clicked, this, [line, ask] {
    const auto chosen = ask(ToPath(line->text()));
    if (!chosen) return;
    line->setText(FromPath(*chosen));
    emit line->textEdited(line->text());
  });
}

void CAutoLoadingSheet::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  working_ = doc_.document().settings;
  page_->Reset();
  fault_->clear();
}

void CAutoLoadingSheet::AskForWhatIsMissing() {
  AutoLoadingSettings& loading = working_.autoLoading;
  loading.IsAutoLoading = true;
  // A folder is what is usually watched.
  loading.AutoLoadFromGroup = loading.AutoLoadFromGroup || loading.AutoLoadFile.empty();
  page_->Refresh();
  const std::string reason = PlanWatch(working_).reason;
  if (!reason.empty()) fault_->setText(tr("Files are not loaded yet: %1.").arg(EngineText(reason)));
  if (loading.AutoLoadFromGroup && loading.AutoLoadFolder.empty())
    page_->findChild<CSettingField*>("AUTO_LOADING.AutoLoadFolder")->setFocus();
}

void CAutoLoadingSheet::accept() {
  const QString fault = page_->Fault();
  const std::string reason = working_.autoLoading.IsAutoLoading ? PlanWatch(working_).reason : std::string();
  if (!fault.isEmpty() || !reason.empty()) {
    fault_->setText(tr("Not applied: %1.").arg(fault.isEmpty() ? EngineText(reason) : fault));
    return;
  }
  DisplaySettings display = doc_.document().settings.display;
  if (display.ParameterFile != working_.display.ParameterFile) {
    display.ParameterFile = working_.display.ParameterFile;
    doc_.ReplaceDisplay(std::move(display));
  }
  doc_.ReplaceAutoLoading(working_.autoLoading);
  QDialog::accept();
}

}  // namespace texturon
