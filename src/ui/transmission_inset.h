#pragma once

#include <qcustomplot.h>

#include "core/document.h"

namespace texturon {

/// A small picture of what the filters let through, over the wavelength: to the primary profile, the waviness and the
/// roughness, with lines at the cut-offs. It lies over a corner of the profile view and lets the mouse through.
class CTransmissionInset : public QCustomPlot {
  Q_OBJECT

public:
  explicit CTransmissionInset(QWidget* parent);

  /// Hides itself where there is nothing to show.
  void Show(const Document& document);
  /// Takes the lower right corner of an area; hides itself where that has no room for it.
  void PutInto(const QRect& area);

private:
  bool hasCurves_ = false;
};

}  // namespace texturon
