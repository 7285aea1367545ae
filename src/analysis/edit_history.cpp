// SPDX-License-Identifier: Apache-2.0

#include "analysis/edit_history.h"

#include <utility>

namespace texturon {
namespace {

EditState TakeLast(std::deque<EditState>& states) {
  EditState state = std::move(states.back());
  states.pop_back();
  return state;
}

}  // namespace

EditState EditStateOf(const Document& document) {
  return {.analysis = document.settings.analysis,
          .identification = document.profiles.identification,
          .inverted = document.profiles.inverted,
          .region = document};
}

void RestoreEditState(Document& document, const EditState& state) {
  Settings settings = document.settings;
  settings.analysis = state.analysis;
  ApplySettings(document, std::move(settings));
  document.profiles.identification = state.identification;
  if (document.profiles.inverted != state.inverted) InvertProfile(document.profiles);
  static_cast<ComputeRegion&>(document) = state.region;
}

void EditHistory::Note(EditState former) {
  later_.clear();
  former_.push_back(std::move(former));
  std::size_t points = 0;
  std::size_t kept = 0;
  while (kept < former_.size() && kept < kMostStates) {
    points += former_[former_.size() - 1 - kept].analysis.freeFormPoints.size();
    if (points > kMostFreeFormPoints && kept > 0) break;
    ++kept;
  }
  former_.erase(former_.begin(), former_.end() - static_cast<std::ptrdiff_t>(kept));
}

void EditHistory::DropIfBack(const EditState& present) {
  if (!former_.empty() && former_.back() == present) former_.pop_back();
}

EditState EditHistory::GoBack(EditState present) {
  later_.push_back(std::move(present));
  return TakeLast(former_);
}

EditState EditHistory::GoForward(EditState present) {
  former_.push_back(std::move(present));
  return TakeLast(later_);
}

void EditHistory::Clear() {
  former_.clear();
  later_.clear();
}

}  // namespace texturon
