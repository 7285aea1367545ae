// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ui/plots/curve_view.h"

namespace texturon {

/// What the filters let through, over the wavelength: to the primary profile, the waviness and the roughness, with
/// lines at the cut-offs. False where there is nothing to draw.
bool DrawFilters(QCustomPlot& plot, const Document& document);

/// The same as a view of its own, with a legend.
class CFilterView : public CCurveView {
  Q_OBJECT

public:
  CFilterView(CTexturonDoc& doc, QWidget* parent);

protected:
  void Draw() override;
};

/// The same as a small picture beside the heading of the profile, without words: pointed at it says what it is, clicked
/// it asks for the view.
class CTransmissionInset : public QCustomPlot {
  Q_OBJECT

public:
  explicit CTransmissionInset(QWidget* parent);

  /// Hides itself where there is nothing to show, or no room for it.
  void Show(const Document& document);
  void SetRoom(bool hasRoom);

  QSize sizeHint() const override { return maximumSize(); }

signals:
  void Clicked();

protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  bool hasCurves_ = false;
  bool hasRoom_ = true;
};

}  // namespace texturon
