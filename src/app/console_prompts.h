// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include "platform/prompts.h"

namespace texturon {

/// Answers for a run from the command line: messages are kept for the result and shown on standard error with the name
/// of the file at hand, questions are answered as the command line said, presets are taken, and progress is a bar where
/// standard error is a terminal.
class ConsolePrompts : public Prompts {
public:
  struct Manner {
    bool answersYes = false;
    bool isQuiet = false;  ///< shows neither messages nor progress
  };

  explicit ConsolePrompts(Manner manner) : manner_(manner) {}

  /// Starts with another file: its name goes before every line shown, and the messages of the former one are dropped.
  /// `name` is in the system's own bytes.
  void BeginFile(std::string name);
  /// While a file is read its message boxes are held back: the reader's reason repeats them.
  void HoldMessages(bool hold) { holdsMessages_ = hold; }
  /// Texts of the message boxes shown since BeginFile, in order, Windows-1252.
  const std::vector<std::string>& Messages() const { return messages_; }

  void ShowMessage(std::string_view text) override;
  void Notice(std::string_view text) override;
  bool AskYesNo(std::string_view question) override;
  std::optional<std::string> AskText(std::string_view prompt, std::string_view preset) override;
  std::optional<std::size_t> ChooseFromList(std::string_view title, std::span<const std::string> lines) override;
  std::unique_ptr<Progress> OpenProgress(std::string_view caption, std::string_view text) override;
  void SetBusy(bool busy) override;

private:
  void WriteLine(std::string_view text) const;

  Manner manner_;
  std::string fileName_;
  bool holdsMessages_ = false;
  std::vector<std::string> messages_;
};

}  // namespace texturon
