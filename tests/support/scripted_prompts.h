// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/prompts.h"

namespace texturon {

/// Answers from a script and remembers what it was shown.
class ScriptedPrompts : public Prompts {
public:
  std::vector<std::string> messages;
  std::vector<std::string> notices;
  std::vector<std::string> questions;
  std::vector<std::string> presets;
  std::string beside;  ///< the last question
  std::vector<std::string> progressTitles;
  std::optional<std::string> textAnswer;  ///< empty: cancelled
  std::vector<std::string> progressTexts;
  bool yes = false;
  bool closesProgress = false;  ///< every progress window is closed at its first percentage
  int busyChanges = 0;

  void ShowMessage(std::string_view text) override { messages.emplace_back(text); }
  void Notice(std::string_view text) override { notices.emplace_back(text); }
  void Beside(std::string_view lines) override { beside = lines; }
  bool AskYesNo(std::string_view question) override {
    questions.emplace_back(question);
    return yes;
  }
  std::optional<std::string> AskText(std::string_view prompt, std::string_view preset) override {
    questions.emplace_back(prompt);
    presets.emplace_back(preset);
    return textAnswer;
  }
  std::optional<std::size_t> ChooseFromList(std::string_view /*title*/,
                                            std::span<const std::string> /*lines*/) override {
    return std::nullopt;
  }
  std::unique_ptr<Progress> OpenProgress(std::string_view caption, std::string_view text) override {
    progressTitles.emplace_back(caption);
    progressTexts.emplace_back(text);
    if (closesProgress) return std::make_unique<ClosedProgress>();
    return SilentPrompts().OpenProgress(caption, text);
  }
  void SetBusy(bool /*busy*/) override { ++busyChanges; }

private:
  class ClosedProgress : public Progress {
  public:
    bool Advance(int /*percent*/) override { return false; }
  };
};

}  // namespace texturon
