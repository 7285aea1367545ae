// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "presentation/profile_marks.h"
#include "presentation/shown_profiles.h"
#include "ui/plots/clickable_profile_graph.h"
#include "ui/plots/filter_view.h"
#include "ui/plots/profile_heading.h"
#include "ui/window/texturon_doc.h"

class QLabel;
class QScrollBar;

namespace texturon {

/// The profiles of the document over each other, under a heading that says what they are.
class CTexturonView : public QWidget {
  Q_OBJECT

public:
  explicit CTexturonView(CTexturonDoc& doc, QWidget* parent = nullptr);

  /// Shows or hides a curve, by its place in ShownProfiles.
  void SetShown(std::size_t curve, bool shown);
  CClickableProfileGraph& Graph() { return *graph_; }
  /// Ends of what is between the upright cursors, in mm from the first sample.
  std::pair<double, double> BetweenCursorsMM() const;
  /// What the cursors say, in one line.
  QString Readout() const;
  /// What the upright cursors measure, in one line.
  QString Measures() const;
  /// Whether that line is shown below the profile; kept from one start to the next.
  void ShowMeasures(bool shown);
  bool ShowsMeasures() const { return showsMeasures_; }
  /// Zooms to one sampling length in the middle of what is in view.
  void ShowSamplingLength();
  CTransmissionInset& Transmission() { return *transmission_; }
  CHeading& Heading() { return *heading_; }

signals:
  void ReadoutChanged();
  /// The stretch that came is hardly seen beside the rest of the record.
  void StretchIsFlat();

protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  /// Takes the curves anew; what is in view stays unless another record, unit or choice of profiles came.
  void Update();
  void ShowScroll();
  void UpdateMeasures();
  CursorPlaces Places() const;

  CTexturonDoc& doc_;
  CHeading* heading_;
  CClickableProfileGraph* graph_;
  CTransmissionInset* transmission_;
  QScrollBar* scroll_;
  QLabel* measures_;
  bool showsMeasures_;
  /// What the stretch in view depends on.
  using Basis = std::tuple<std::filesystem::path, bool, ShownProfiles, bool, double, double, bool>;

  Basis shownBasis_;
  std::optional<IndexRange> stretch_;  ///< that was computed over, where it is not the whole record
};

}  // namespace texturon
