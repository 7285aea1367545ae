// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

#include "ui/window/texturon_doc.h"

class QComboBox;
class QStackedWidget;

namespace texturon {

class CCurveView;

/// A choice of curves, of which it shows one. Which one is kept, under the pane's name, from one start to the next.
class CCurvePane : public QWidget {
  Q_OBJECT

public:
  /// The views in their order in the choice.
  enum Curve { kBearingRatio, kProbability, kSpectrum, kMotifs, kFilters };

  CCurvePane(CTexturonDoc& doc, const QString& name, Curve preset, QWidget* parent = nullptr);

  static QString TitleOf(Curve curve);
  void Choose(Curve curve);
  Curve Chosen() const;
  CCurveView& View();
  QSize sizeHint() const override;

private:
  QString name_;
  QComboBox* choice_;
  QStackedWidget* views_;
};

}  // namespace texturon
