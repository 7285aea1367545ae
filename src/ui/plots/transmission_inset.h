// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <qcustomplot.h>

#include "analysis/document.h"

namespace texturon {

/// A small picture of what the filters let through, over the wavelength: to the primary profile, the waviness and the
/// roughness, with lines at the cut-offs. It stands beside the profile, so that it hides nothing of it.
class CTransmissionInset : public QCustomPlot {
  Q_OBJECT

public:
  explicit CTransmissionInset(QWidget* parent);

  /// Hides itself where there is nothing to show.
  void Show(const Document& document);
  /// The width that it takes beside the axes of a graph of this size; 0: it is not shown.
  int RoomBeside(const QSize& graph);
  /// Stands at the foot of the axes, to their right.
  void PutBeside(const QRect& axes);

private:
  bool hasCurves_ = false;
};

}  // namespace texturon
