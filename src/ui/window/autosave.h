// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLockFile>
#include <QTimer>
#include <filesystem>
#include <memory>
#include <optional>

#include "analysis/edit_history.h"
#include "ui/window/texturon_doc.h"

namespace texturon {

/// What of a window's work no file holds.
struct KeptState {
  std::filesystem::path file;  ///< of the record; empty: it came from none
  UndoPoint work;
};

QByteArray TextOfState(const KeptState& state);
/// Nothing where the text is no state.
std::optional<KeptState> ReadState(const QByteArray& text);

/// Writes what a window's end would lose to a file of its own in a folder of the user's, a moment after each change,
/// and takes it away where there is nothing to lose any more and when it is destroyed. A file that is left belongs to a
/// window that was never closed. Each is held by its window's lock, which goes with the process: no window takes what
/// another is at work with, and of two starts at once one takes what was left.
class CAutosave : public QObject {
  Q_OBJECT

public:
  /// Without the folder, or where it cannot be had for this user alone, nothing is kept.
  CAutosave(CTexturonDoc& doc, std::filesystem::path folder, QObject* parent);
  ~CAutosave() override;

  void SaveNow();
  /// Leaves what is kept for the next start.
  void LeaveIt();
  /// The newest state of a window that is gone; from then on it is nobody else's.
  std::optional<KeptState> TakeLeftOver();

private:
  void Remove();
  /// Says once that nothing is kept, and why.
  void Tell(const std::string& reason);

  CTexturonDoc& doc_;
  std::filesystem::path folder_;
  std::filesystem::path own_;
  std::unique_ptr<QLockFile> lock_;
  QTimer delay_;
  bool isKept_ = false;
  bool isTold_ = false;
  bool stays_ = false;
};

}  // namespace texturon
