// SPDX-License-Identifier: Apache-2.0

#include "platform/prompts.h"

namespace texturon {
namespace {

class SilentProgress : public Progress {
public:
  bool Advance(int /*percent*/) override { return true; }
};

}  // namespace

void Prompts::ShowFailure(std::string_view sentence, std::string_view /*brief*/, std::string_view /*details*/) {
  ShowMessage(sentence);
}

void SilentPrompts::ShowMessage(std::string_view /*text*/) {}

void SilentPrompts::Notice(std::string_view /*text*/) {}

bool SilentPrompts::AskYesNo(std::string_view /*question*/) {
  return false;
}

std::optional<std::string> SilentPrompts::AskText(std::string_view /*prompt*/, std::string_view preset) {
  return std::string(preset);
}

std::optional<std::size_t> SilentPrompts::ChooseFromList(std::string_view /*title*/,
                                                         std::span<const std::string> lines) {
  if (lines.empty()) return std::nullopt;
  return 0;
}

std::unique_ptr<Progress> SilentPrompts::OpenProgress(std::string_view /*caption*/, std::string_view /*text*/) {
  return std::make_unique<SilentProgress>();
}

void SilentPrompts::SetBusy(bool /*busy*/) {}

}  // namespace texturon
