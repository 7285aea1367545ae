// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/plot_items.h"

#include "base/quantity.h"
#include "ui/qt_text.h"

namespace texturon {

ShownUnits UnitsOf(const Document& document) {
  const bool metric = document.settings.display.Metric;
  return {kHeightUM.Factor(metric), kLengthMM.Factor(metric), FromText(kHeightUM.Unit(metric)),
          FromText(kLengthMM.Unit(metric))};
}

void ClearDrawing(QCustomPlot& plot) {
  plot.clearPlottables();
  for (int i = plot.itemCount() - 1; i >= 0; --i) {
    if (plot.item(i)->layer()->name() != kCursorLayer) plot.removeItem(i);
  }
}

QColor Tint(QColor colour, double share) {
  colour.setAlphaF(static_cast<float>(share));
  return colour;
}

void AddSegment(QCustomPlot& plot, double x0, double y0, double x1, double y1, const QPen& pen) {
  auto* const line = new QCPItemLine(&plot);
  line->start->setCoords(x0, y0);
  line->end->setCoords(x1, y1);
  line->setPen(pen);
}

void AddArea(QCustomPlot& plot, const QList<QPointF>& corners, const QColor& fill) {
  auto* const area = new QCPCurve(plot.xAxis, plot.yAxis);
  QVector<QCPCurveData> points;
  for (const QPointF& corner : corners) {
    points.push_back({static_cast<double>(points.size()), corner.x(), corner.y()});
  }
  area->data()->set(points, true);
  area->setPen(Qt::NoPen);
  area->setBrush(fill);
}

void AddBand(QCustomPlot& plot, double first, double last, const QColor& fill) {
  auto* const band = new QCPItemRect(&plot);
  for (QCPItemPosition* const corner : {band->topLeft, band->bottomRight}) {
    corner->setTypeY(QCPItemPosition::ptAxisRectRatio);
  }
  band->topLeft->setCoords(first, 0.0);
  band->bottomRight->setCoords(last, 1.0);
  band->setPen(Qt::NoPen);
  band->setBrush(fill);
  band->setLayer("grid");
}

void AddNamedLine(QCustomPlot& plot, double x, const QString& name, const QPen& pen) {
  auto* const line = new QCPItemStraightLine(&plot);
  line->point1->setCoords(x, 0.0);
  line->point2->setCoords(x, 1.0);
  line->setPen(pen);
  AddLabel(plot, x, 0.01, " " + name, Qt::AlignLeft | Qt::AlignTop, LabelPlace::kShareOfY);
}

QCPItemText* AddLabel(QCustomPlot& plot, double x, double y, const QString& text, Qt::Alignment anchor,
                      LabelPlace place) {
  auto* const label = new QCPItemText(&plot);
  label->setText(text);
  label->setColor(plot.palette().color(QPalette::Text));
  label->setFont(plot.xAxis->tickLabelFont());
  label->setPositionAlignment(anchor);
  if (place != LabelPlace::kPoint) label->position->setTypeY(QCPItemPosition::ptAxisRectRatio);
  if (place == LabelPlace::kShare) label->position->setTypeX(QCPItemPosition::ptAxisRectRatio);
  label->position->setCoords(x, y);
  return label;
}

}  // namespace texturon
