#pragma once

#include <QLabel>
#include <QWidget>
#include <string>
#include <tuple>
#include <utility>

#include "core/shown_profiles.h"
#include "ui/clickable_profile_graph.h"
#include "ui/texturon_doc.h"

namespace texturon {

/// The profiles of the document over each other, under a heading that says what they are.
class CTexturonView : public QWidget {
  Q_OBJECT

public:
  explicit CTexturonView(CTexturonDoc& doc, QWidget* parent = nullptr);

  /// Shows or hides a profile.
  void SetShown(ProfileKind kind, bool shown);
  bool IsShown(ProfileKind kind) const;
  CClickableProfileGraph& Graph() { return *graph_; }
  /// Ends of what is between the upright cursors, in mm from the first sample.
  std::pair<double, double> BetweenCursorsMM() const;
  /// What the cursors say, in one line.
  QString Readout() const;

signals:
  void ReadoutChanged();

private:
  /// Takes the curves anew; what is in view stays unless another record, unit or choice of profiles came.
  void Update();

  CTexturonDoc& doc_;
  QLabel* heading_;
  CClickableProfileGraph* graph_;
  /// What the stretch in view depends on.
  using Basis = std::tuple<std::string, bool, ShownProfiles, bool, double, double, bool>;

  Basis shownBasis_;
};

}  // namespace texturon
