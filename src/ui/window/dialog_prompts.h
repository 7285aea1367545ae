// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>
#include <chrono>
#include <string>

#include "platform/prompts.h"

namespace texturon {

/// "Texturon - Identification", with a dash.
QString QuestionTitle(const QString& subject);

/// What the engine shows and asks, as dialogs over the main window.
class DialogPrompts : public Prompts {
public:
  /// `showAfter`: how long work must take before it is worth a window.
  explicit DialogPrompts(QWidget* parent, std::chrono::milliseconds showAfter = std::chrono::milliseconds(500))
      : parent_(parent), showAfter_(showAfter) {}

  void ShowMessage(std::string_view text) override;
  void ShowFailure(std::string_view sentence, std::string_view brief, std::string_view details) override;
  void Notice(std::string_view text) override;
  void Beside(std::string_view lines) override { beside_ = lines; }
  bool AskYesNo(std::string_view question) override;
  std::optional<std::string> AskText(std::string_view prompt, std::string_view preset) override;
  std::optional<std::size_t> ChooseFromList(std::string_view title, std::span<const std::string> lines) override;
  /// A window that shows itself only once the work has taken long enough to be waited for. Nothing else of the program
  /// can be used meanwhile, but all of it goes on to be drawn.
  std::unique_ptr<Progress> OpenProgress(std::string_view caption, std::string_view text) override;
  void SetBusy(bool busy) override;

private:
  /// What stands above the next question, with an empty line behind it; once.
  QString TakeBeside();

  QWidget* parent_;
  std::string beside_;
  std::chrono::milliseconds showAfter_;
};

}  // namespace texturon
