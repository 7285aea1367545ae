#pragma once

#include <qcustomplot.h>

#include "core/document.h"

namespace texturon {

/// A small picture of what the filters let through, over the wavelength: to the primary profile, the waviness and the
/// roughness, with lines at the cut-offs. It lies over a corner of the profile view, lets the mouse through and
/// gives way to it, so that it hides no part of the profile for good.
class CTransmissionInset : public QCustomPlot {
  Q_OBJECT

public:
  explicit CTransmissionInset(QWidget* parent);

  /// Hides itself where there is nothing to show.
  void Show(const Document& document);
  /// Takes the lower right corner of an area; hides itself where that has no room for it.
  void PutInto(const QRect& area);

  /// Whether what lies below it can be seen.
  void LetThrough(bool lets);

private:
  bool hasCurves_ = false;
  bool fits_ = false;
  bool letsThrough_ = false;
};

}  // namespace texturon
