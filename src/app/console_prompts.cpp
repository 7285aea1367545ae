// SPDX-License-Identifier: Apache-2.0

#include "app/console_prompts.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "base/charset.h"
#include "base/number_text.h"
#include "base/text.h"
#include "platform/platform.h"

namespace texturon {
namespace {

/// A bar on one line of the terminal, wiped when the work is over.
class BarProgress : public Progress {
public:
  explicit BarProgress(std::string title) : title_(std::move(title)) {}
  ~BarProgress() override { std::cerr << '\r' << std::string(title_.size() + kWidth + 10, ' ') << '\r' << std::flush; }
  BarProgress(const BarProgress&) = delete;
  BarProgress& operator=(const BarProgress&) = delete;

  bool Advance(int percent) override {
    const auto done = static_cast<std::size_t>(percent) * kWidth / 100;
    std::cerr << '\r' << title_ << " [" << std::string(done, '#') << std::string(kWidth - done, '.') << "] "
              << IntegerText(percent, 3) << " %" << std::flush;
    return true;
  }

private:
  static constexpr std::size_t kWidth = 30;
  std::string title_;
};

}  // namespace

void ConsolePrompts::BeginFile(std::string name) {
  fileName_ = std::move(name);
  messages_.clear();
}

void ConsolePrompts::WriteLine(std::string_view text) const {
  if (manner_.isQuiet) return;
  std::cerr << "texturon: ";
  if (!fileName_.empty()) std::cerr << EscapedControls(fileName_) << ": ";
  std::cerr << EscapedControls(Utf8FromWindows1252(text)) << '\n';
}

void ConsolePrompts::ShowMessage(std::string_view text) {
  messages_.emplace_back(text);
  if (!holdsMessages_) WriteLine(text);
}

void ConsolePrompts::Notice(std::string_view text) {
  WriteLine(text);
}

bool ConsolePrompts::AskYesNo(std::string_view question) {
  WriteLine(std::string(question) + (manner_.answersYes ? " yes" : " no"));
  return manner_.answersYes;
}

std::optional<std::string> ConsolePrompts::AskText(std::string_view prompt, std::string_view preset) {
  WriteLine(std::string(prompt) + " " + std::string(preset));
  return std::string(preset);
}

std::optional<std::size_t> ConsolePrompts::ChooseFromList(std::string_view title, std::span<const std::string> lines) {
  if (lines.empty()) return std::nullopt;
  std::string first = lines.front();
  std::replace(first.begin(), first.end(), '\t', ' ');  // columns of a list
  WriteLine(std::string(title) + " the first is taken: " + std::string(TrimBlanks(first)));
  return 0;
}

std::unique_ptr<Progress> ConsolePrompts::OpenProgress(std::string_view caption, std::string_view text) {
  if (manner_.isQuiet || !ErrorOutputIsTerminal()) return SilentPrompts().OpenProgress(caption, text);
  return std::make_unique<BarProgress>(EscapedControls(Utf8FromWindows1252(caption)));
}

void ConsolePrompts::SetBusy(bool /*busy*/) {}

}  // namespace texturon
