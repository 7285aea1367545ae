// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <qcustomplot.h>

#include "analysis/document.h"

namespace texturon {

/// Layer of what stays when a plot is drawn anew.
inline constexpr char kCursorLayer[] = "cursors";
/// More points than any screen has columns.
inline constexpr std::size_t kMostScreenPoints = 4000;

/// Factors from um and mm to the units shown, with the names of these.
struct ShownUnits {
  double height = 1.0;
  double length = 1.0;
  QString heightName;
  QString lengthName;
};
ShownUnits UnitsOf(const Document& document);

/// Takes away curves and items, but for those on the layer of the cursors.
void ClearDrawing(QCustomPlot& plot);

QColor Tint(QColor colour, double share);

/// A straight line between two points of the axes.
void AddSegment(QCustomPlot& plot, double x0, double y0, double x1, double y1, const QPen& pen);
/// A filled area.
void AddArea(QCustomPlot& plot, const QList<QPointF>& corners, const QColor& fill);
/// The stretch of the X axis from one place to another, over the whole height.
void AddBand(QCustomPlot& plot, double first, double last, const QColor& fill);
/// An upright line over the whole height with a name, where it has one, at its upper end: on its right, or on its left
/// with Qt::AlignRight.
void AddNamedLine(QCustomPlot& plot, double x, const QString& name, const QPen& pen,
                  Qt::Alignment side = Qt::AlignLeft);
/// Moves labels that lie on each other apart, downwards. To be called when the plot has been laid out.
void SpreadLabels(QCustomPlot& plot);
/// `anchor` says which side of the text stands at the point. With kShare a place is a share of the axes' rectangle from
/// left or above.
enum class LabelPlace { kPoint, kShareOfY, kShare };
QCPItemText* AddLabel(QCustomPlot& plot, double x, double y, const QString& text, Qt::Alignment anchor,
                      LabelPlace place = LabelPlace::kPoint);

}  // namespace texturon
