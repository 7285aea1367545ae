// SPDX-License-Identifier: Apache-2.0

// What the main window does so that no work is lost: at its end, before another file, and after a crash.

#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

#include "platform/platform.h"
#include "settings/working_settings.h"
#include "ui/qt_text.h"
#include "ui/window/autosave.h"
#include "ui/window/dialog_prompts.h"
#include "ui/window/main_frame.h"

namespace texturon {

bool CMainFrame::SettleUnsaved(bool withSettings, const QString& remark) {
  const QString name = FromPath(doc_->document().profiles.sourceFile.filename());
  QStringList sentences;
  if (doc_->IsRenamed()) sentences << tr("The new identification of %1 is in no file.").arg(name);
  if (doc_->IsTurned()) sentences << tr("%1 has been turned upside down, but not in its file.").arg(name);
  const bool hasRecord = !sentences.isEmpty();
  const bool hasSettings = withSettings && doc_->HasUnsavedSettings();
  if (hasSettings) sentences << tr("The settings of the analysis or the limits have changed since they were saved.");
  if (hasSettings && !remark.isEmpty()) sentences << remark;
  if (sentences.isEmpty()) return true;
  Unsaved answer = Unsaved::kCancel;
  if (unsavedQuestion_) {
    answer = unsavedQuestion_(sentences.join(' '));
  } else {
    QMessageBox box(QMessageBox::Question, QuestionTitle(tr("Unsaved Changes")),
                    sentences.join("\n\n") + "\n\n" + tr("Save them?"),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    // Nothing is discarded where the work goes on with what is there.
    box.button(QMessageBox::Discard)->setText(tr("Do&n't Save"));
    const int button = box.exec();
    answer = button == QMessageBox::Save      ? Unsaved::kSave
             : button == QMessageBox::Discard ? Unsaved::kDiscard
                                              : Unsaved::kCancel;
  }
  if (answer != Unsaved::kSave) return answer == Unsaved::kDiscard;
  return (!hasRecord || OnSave()) && (!hasSettings || SaveSettingsInForce());
}

bool CMainFrame::SaveSettingsInForce() {
  const std::filesystem::path& file = doc_->settingsFile();
  const bool isTheirOwn = !file.empty() && (workingSettings_ == nullptr || file != workingSettings_->Loaded());
  if (isTheirOwn) return doc_->SaveSettingsFile(file);
  return workingSettings_ != nullptr ? OnSaveDefaults() : OnSaveSettings();
}

bool CMainFrame::EndSession(bool mayAsk) {
  if (mayAsk && !doc_->IsBusy()) {
    if (!SettleUnsaved(true)) return false;
  } else if (autosave_ != nullptr) {
    autosave_->LeaveIt();
  }
  isSettled_ = true;
  return true;
}

void CMainFrame::KeepStateIn(const std::filesystem::path& folder) {
  if (!folder.empty()) autosave_ = new CAutosave(*doc_, folder / "windows", this);
}

void CMainFrame::OfferLeftOver() {
  while (autosave_ != nullptr) {
    const auto state = autosave_->TakeLeftOver();
    if (!state) return;
    const QString name = state->file.empty() ? tr("the sample") : FromPath(state->file);
    const std::string question = "The program ended while " + ToText(name) +
                                 " or its settings had changes that were not saved. Shall they be as they were?";
    if (!doc_->prompts().AskYesNo(question)) continue;
    UndoPoint work = state->work;
    if ((!state->file.empty() && !doc_->Open(state->file)) || !doc_->HasProfile()) {
      // Without the record there are still the settings.
      work = UndoPointOf(doc_->document());
      work.request.settings = state->work.request.settings;
      work.decision = state->work.decision;
    }
    doc_->Restore(work);
    statusBar()->showMessage(tr("As it was before the program ended; Undo takes the changes back."), 10'000);
    return;
  }
}

}  // namespace texturon
