// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ui/plots/curve_view.h"

namespace texturon {

class CPlotCursors;

/// Amplitude over wavelength of the form-suppressed profile, with the cut-offs. For the view and the report.
void DrawSpectrum(QCustomPlot& plot, const Document& document);

/// The same with a cursor that goes from harmonic to harmonic.
class CTexturonSpectView : public CCurveView {
  Q_OBJECT

public:
  explicit CTexturonSpectView(CTexturonDoc& doc, QWidget* parent = nullptr);

  CPlotCursors& Cursors() { return *cursors_; }

protected:
  void Draw() override;
  void OnViewChanged() override;

private:
  /// Wavelength, in the units shown, of the harmonic `steps` shorter ones away from that nearest to a place.
  double Settle(double place, int steps) const;
  void Tell();

  CPlotCursors* cursors_;
};

}  // namespace texturon
