// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/prompts.h"

namespace texturon {

/// Shows the wait cursor for as long as it lives, or takes it down where `busy` is false, as a fit does that shows its
/// own progress. Does nothing where nobody watches.
class BusyScope {
public:
  BusyScope(Prompts& prompts, bool isQuiet, bool busy) : prompts_(isQuiet ? nullptr : &prompts), busy_(busy) {
    if (prompts_ != nullptr) prompts_->SetBusy(busy_);
  }
  ~BusyScope() {
    if (prompts_ != nullptr) prompts_->SetBusy(!busy_);
  }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

private:
  Prompts* prompts_;
  bool busy_;
};

}  // namespace texturon
