// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "ui/window/texturon_doc.h"
#include "unattended/folder_watch.h"

class QLabel;

namespace texturon {

class CFieldsPage;

/// Loads files into the window as they appear in a folder, while the settings say so. Nothing interrupts it: what goes
/// wrong is told, and it goes on. It waits while a computation or a dialog is at work.
class CAutoLoading : public QObject {
  Q_OBJECT

public:
  CAutoLoading(CTexturonDoc& doc, QWidget& window);

  /// Looks through the folder once.
  void PollNow();
  /// What it does, in words; empty: it is off.
  const QString& State() const { return state_; }

signals:
  void StateChanged();

private:
  /// Starts, stops or starts anew as the settings say.
  void Follow();
  void TurnOff(const std::string& reason);
  FileAnalysis Load(const std::filesystem::path& path);
  void Tell();

  CTexturonDoc& doc_;
  QWidget& window_;
  QTimer timer_;
  AutoLoadingSettings followed_;
  std::string followedParameterFile_;
  FolderWatchOptions options_;
  std::unique_ptr<FolderWatch> watch_;
  bool isPrepared_ = false;
  bool isPolling_ = false;
  int count_ = 0;
  std::string last_;
  QString state_;
};

/// What auto-loading does, to be set.
class CAutoLoadingSheet : public QDialog {
  Q_OBJECT

public:
  CAutoLoadingSheet(CTexturonDoc& doc, QWidget* parent);

  /// For who has turned it on before it could be done: says what is missing, and OK turns it on.
  void AskForWhatIsMissing();
  void accept() override;

protected:
  void showEvent(QShowEvent* event) override;

private:
  using Ask = std::function<std::optional<std::filesystem::path>(const std::filesystem::path& former)>;
  void AddBrowser(const char* field, const Ask& ask);

  CTexturonDoc& doc_;
  Settings working_;
  CFieldsPage* page_;
  QLabel* fault_;
};

}  // namespace texturon
