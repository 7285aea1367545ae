// SPDX-License-Identifier: Apache-2.0

#include "analysis/edit_history.h"

#include <algorithm>
#include <utility>

namespace texturon {
namespace {

UndoPoint TakeLast(std::deque<UndoPoint>& points) {
  UndoPoint point = std::move(points.back());
  points.pop_back();
  return point;
}

}  // namespace

UndoPoint UndoPointOf(const Document& document) {
  return {.request = document.Request(),
          .identification = document.profiles.identification,
          .inverted = document.profiles.inverted,
          .decision = document.settings.decision};
}

void RestoreUndoPoint(Document& document, const UndoPoint& point) {
  Settings settings = document.settings;
  settings.analysis = point.request.settings;
  settings.decision = point.decision;
  ApplySettings(document, std::move(settings));
  document.profiles.identification = point.identification;
  if (document.profiles.inverted != point.inverted) InvertProfile(document.profiles);
  document.scope = point.request.scope;
}

void EditHistory::Note(UndoPoint former) {
  later_.clear();
  former_.push_back(std::move(former));
  std::size_t points = 0;
  std::size_t kept = 0;
  while (kept < former_.size() && kept < kMostUndoPoints) {
    points += former_[former_.size() - 1 - kept].request.settings.freeFormPoints.size();
    if (points > kMostFreeFormPoints && kept > 0) break;
    ++kept;
  }
  former_.erase(former_.begin(), former_.end() - static_cast<std::ptrdiff_t>(kept));
}

bool EditHistory::GoBackIfUndone(const UndoPoint& present, UndoPoint last) {
  if (former_.empty() || former_.back() != present) return false;
  former_.pop_back();
  later_.push_back(std::move(last));
  return true;
}

void EditHistory::CarryOver(const UndoPoint& present) {
  for (std::deque<UndoPoint>* const points : {&former_, &later_}) {
    for (UndoPoint& point : *points) {
      point.identification = present.identification;
      point.inverted = present.inverted;
      point.request.scope.region = present.request.scope.region;
      point.request.scope.exclusion = present.request.scope.exclusion;
    }
    // The nearest state stands last in either; going there must change something.
    points->erase(std::unique(points->begin(), points->end()), points->end());
    while (!points->empty() && points->back() == present) points->pop_back();
  }
}

UndoPoint EditHistory::GoBack(UndoPoint present) {
  later_.push_back(std::move(present));
  return TakeLast(former_);
}

UndoPoint EditHistory::GoForward(UndoPoint present) {
  former_.push_back(std::move(present));
  return TakeLast(later_);
}

void EditHistory::Clear() {
  former_.clear();
  later_.clear();
}

}  // namespace texturon
