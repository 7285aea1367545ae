// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/prompts.h"

namespace texturon {

/// Answers as an unwatched run does and keeps what it was told.
class RecordingPrompts : public SilentPrompts {
public:
  void ShowMessage(std::string_view text) override { messages.emplace_back(text); }
  void Notice(std::string_view text) override { notices.emplace_back(text); }

  std::vector<std::string> messages;
  std::vector<std::string> notices;
};

}  // namespace texturon
