#pragma once

#include <QLabel>
#include <QWidget>

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

private:
  /// Takes the curves anew; what is in view stays unless another record, unit or choice of profiles came.
  void Update();

  CTexturonDoc& doc_;
  QLabel* heading_;
  CClickableProfileGraph* graph_;
  ShownProfiles shown_{};
  std::string shownSource_;
  bool shownMetric_ = true;
};

}  // namespace texturon
