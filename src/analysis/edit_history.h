// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <deque>
#include <string>

#include "analysis/document.h"

namespace texturon {

/// What a user can take back: how a record is analysed and what was done to it. Its heights stand once, in the
/// document.
struct UndoPoint {
  AnalysisRequest request;
  std::string identification;
  bool inverted = false;
  DecisionSettings decision = {};

  friend bool operator==(const UndoPoint&, const UndoPoint&) = default;
};

UndoPoint UndoPointOf(const Document& document);
/// Puts one in force; the record is turned over where it asks for that. Nothing is computed.
void RestoreUndoPoint(Document& document, const UndoPoint& point);

/// The states before and after the present one.
class EditHistory {
public:
  static constexpr std::size_t kMostUndoPoints = 50;
  /// Free forms are the only large part of one.
  static constexpr std::size_t kMostFreeFormPoints = 2'000'000;

  /// Keeps the state that an edit has left. What had been taken back before is gone.
  void Note(UndoPoint former);
  /// Where all of the last edit has been undone by hand, so that `present` is what it had left: takes it back, as
  /// GoBack would, so that `last` can be made again. Returns whether that was so.
  bool GoBackIfUndone(const UndoPoint& present, UndoPoint last);
  bool CanGoBack() const { return !former_.empty(); }
  bool CanGoForward() const { return !later_.empty(); }
  /// The state to restore in place of `present`; only where it can go there.
  UndoPoint GoBack(UndoPoint present);
  UndoPoint GoForward(UndoPoint present);
  void Clear();
  /// After another record came: what is told of the former one (name, sign, places in it) becomes that of `present`,
  /// what is told of the analysis stays. States that differed by nothing else are gone.
  void CarryOver(const UndoPoint& present);

private:
  std::deque<UndoPoint> former_;
  std::deque<UndoPoint> later_;
};

}  // namespace texturon
