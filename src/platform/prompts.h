// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// A long computation that the user can watch and stop. The window closes when the object goes.
class Progress {
public:
  virtual ~Progress() = default;
  /// Shows `percent` (0 to 100). Returns false once the user has closed the window: the caller then ends early.
  virtual bool Advance(int percent) = 0;
};

/// Everything that the engine may show to or ask of whoever runs it. The desktop answers with dialogs, the command line
/// on standard error, an unattended run with silence, a test with a script. All texts are Windows-1252.
class Prompts {
public:
  virtual ~Prompts() = default;

  /// A message box with OK only.
  virtual void ShowMessage(std::string_view text) = 0;
  /// The same in two depths: who can shows `brief` and the rest on demand, others the whole sentence alone. `details`
  /// has lines.
  virtual void ShowFailure(std::string_view sentence, std::string_view brief, std::string_view details);
  /// A remark of the program's own that no message box shows: a file was tolerated, a value was cut.
  virtual void Notice(std::string_view text) = 0;
  /// What stands beside the next question, which says no more than it must: the file, the titles of its columns. Lines.
  /// Who has no room for it leaves it.
  virtual void Beside(std::string_view /*lines*/) {}
  /// A yes/no question. Who cannot ask answers false.
  virtual bool AskYesNo(std::string_view question) = 0;
  /// One line of text, preset. Empty: cancelled. Who cannot ask gives the preset back.
  virtual std::optional<std::string> AskText(std::string_view prompt, std::string_view preset) = 0;
  /// Index of the chosen line. Empty: cancelled. Who cannot ask chooses the first.
  virtual std::optional<std::size_t> ChooseFromList(std::string_view title, std::span<const std::string> lines) = 0;
  /// Opens a progress window. Never null.
  virtual std::unique_ptr<Progress> OpenProgress(std::string_view caption, std::string_view text) = 0;
  /// Shows or takes down the wait cursor.
  virtual void SetBusy(bool busy) = 0;
};

/// Answers every question as a run without anybody watching does: nothing shown, no to questions, presets kept.
class SilentPrompts : public Prompts {
public:
  void ShowMessage(std::string_view text) override;
  void Notice(std::string_view text) override;
  bool AskYesNo(std::string_view question) override;
  std::optional<std::string> AskText(std::string_view prompt, std::string_view preset) override;
  std::optional<std::size_t> ChooseFromList(std::string_view title, std::span<const std::string> lines) override;
  std::unique_ptr<Progress> OpenProgress(std::string_view caption, std::string_view text) override;
  void SetBusy(bool busy) override;
};

/// Answers as SilentPrompts does, and keeps what it was shown for whoever asks later.
class CollectingPrompts : public SilentPrompts {
public:
  void ShowMessage(std::string_view text) override { messages_.emplace_back(text); }
  void Notice(std::string_view text) override { notices_.emplace_back(text); }

  const std::vector<std::string>& messages() const { return messages_; }
  const std::vector<std::string>& notices() const { return notices_; }

private:
  std::vector<std::string> messages_;
  std::vector<std::string> notices_;
};

}  // namespace texturon
