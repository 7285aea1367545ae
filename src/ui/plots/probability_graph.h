// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ui/plots/curve_view.h"

namespace texturon {

/// The roughness's heights over their normal quantiles, with the lines of plateau and valley and what follows from
/// them. For the view and the report.
void DrawProbability(QCustomPlot& plot, const Document& document);

class CProbabilityGraph : public CCurveView {
  Q_OBJECT

public:
  explicit CProbabilityGraph(CTexturonDoc& doc, QWidget* parent = nullptr);

protected:
  void Draw() override;
  void OnViewChanged() override;
};

}  // namespace texturon
