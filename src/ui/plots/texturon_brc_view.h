// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ui/plots/curve_view.h"

namespace texturon {

class CPlotCursors;

/// The bearing-ratio curve of a profile with the construction of the core roughness, and its amplitude distribution, as
/// BrcAdfType says. For the view and the report.
void DrawBearingRatio(QCustomPlot& plot, const Document& document);
/// What of it is drawn, and of which profile.
QString BearingTitle(const Document& document);

/// The same with an upright cursor for material ratios and a level one for heights.
class CTexturonBRCView : public CCurveView {
  Q_OBJECT

public:
  explicit CTexturonBRCView(CTexturonDoc& doc, QWidget* parent = nullptr);

  CPlotCursors& Cursors() { return *cursors_; }

protected:
  void Draw() override;
  void OnViewChanged() override;

private:
  void Tell();

  CPlotCursors* cursors_;
};

}  // namespace texturon
