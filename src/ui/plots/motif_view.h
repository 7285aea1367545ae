// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ui/plots/curve_view.h"

namespace texturon {

/// The primary profile with its roughness motifs from peak to dale to peak, the upper envelope through the peaks, and
/// the waviness motifs on it. For the view and the report.
void DrawMotifs(QCustomPlot& plot, const Document& document);

class CMotifView : public CCurveView {
  Q_OBJECT

public:
  explicit CMotifView(CTexturonDoc& doc, QWidget* parent = nullptr);

protected:
  void Draw() override;
  void OnViewChanged() override;
};

}  // namespace texturon
