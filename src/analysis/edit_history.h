// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <deque>
#include <string>

#include "analysis/document.h"

namespace texturon {

/// What a user can take back: how a record is analysed and what was done to it. Its heights stand once, in the
/// document.
struct EditState {
  AnalysisSettings analysis;
  std::string identification;
  bool inverted = false;
  ComputeRegion region;

  friend bool operator==(const EditState&, const EditState&) = default;
};

EditState EditStateOf(const Document& document);
/// Puts a state in force; the record is turned over where it asks for that. Nothing is computed.
void RestoreEditState(Document& document, const EditState& state);

/// The states before and after the present one.
class EditHistory {
public:
  static constexpr std::size_t kMostStates = 50;
  /// Free forms are the only large part of a state.
  static constexpr std::size_t kMostFreeFormPoints = 2'000'000;

  /// Keeps the state that an edit has left. What had been taken back before is gone.
  void Note(EditState former);
  /// Forgets the last edit where all of it has been undone by hand: `present` is what it had left.
  void DropIfBack(const EditState& present);
  bool CanGoBack() const { return !former_.empty(); }
  bool CanGoForward() const { return !later_.empty(); }
  /// The state to restore in place of `present`; only where it can go there.
  EditState GoBack(EditState present);
  EditState GoForward(EditState present);
  void Clear();

private:
  std::deque<EditState> former_;
  std::deque<EditState> later_;
};

}  // namespace texturon
