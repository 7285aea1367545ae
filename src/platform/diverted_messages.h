// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/prompts.h"

namespace texturon {

/// Keeps messages for whoever shows them later, or elsewhere than in a box; everything else goes on to `next`.
class DivertedMessages : public Prompts {
public:
  explicit DivertedMessages(Prompts& next) : next_(next) {}

  const std::vector<std::string>& messages() const { return messages_; }

  void ShowMessage(std::string_view text) override { messages_.emplace_back(text); }
  void Notice(std::string_view text) override { next_.Notice(text); }
  void Beside(std::string_view lines) override { next_.Beside(lines); }
  bool AskYesNo(std::string_view question) override { return next_.AskYesNo(question); }
  std::optional<std::string> AskText(std::string_view prompt, std::string_view preset) override {
    return next_.AskText(prompt, preset);
  }
  std::optional<std::size_t> ChooseFromList(std::string_view title, std::span<const std::string> lines) override {
    return next_.ChooseFromList(title, lines);
  }
  std::unique_ptr<Progress> OpenProgress(std::string_view caption, std::string_view text) override {
    return next_.OpenProgress(caption, text);
  }
  void SetBusy(bool busy) override { next_.SetBusy(busy); }

private:
  Prompts& next_;
  std::vector<std::string> messages_;
};

}  // namespace texturon
