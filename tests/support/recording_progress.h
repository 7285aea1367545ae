// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <vector>

#include "platform/prompts.h"

namespace texturon {

/// Keeps every percentage; closed at the given one of them.
class RecordingProgress : public Progress {
public:
  explicit RecordingProgress(std::size_t closedAfter = 1000) : closedAfter_(closedAfter) {}
  bool Advance(int percent) override {
    shown.push_back(percent);
    return shown.size() < closedAfter_;
  }
  std::vector<int> shown;

private:
  std::size_t closedAfter_;
};

}  // namespace texturon
