// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/plot_items.h"

#include <algorithm>
#include <vector>

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
  area->removeFromLegend();
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

void AddNamedLine(QCustomPlot& plot, double x, const QString& name, const QPen& pen, Qt::Alignment side) {
  auto* const line = new QCPItemStraightLine(&plot);
  line->point1->setCoords(x, 0.0);
  line->point2->setCoords(x, 1.0);
  line->setPen(pen);
  if (!name.isEmpty()) AddLabel(plot, x, 0.01, " " + name + " ", side | Qt::AlignTop, LabelPlace::kShareOfY);
}

void SpreadLabels(QCustomPlot& plot) {
  constexpr char kHome[] = "home";
  std::vector<QRectF> taken;
  for (int i = 0; i < plot.itemCount(); ++i) {
    auto* const label = qobject_cast<QCPItemText*>(plot.item(i));
    if (label == nullptr || label->layer()->name() == kCursorLayer) continue;
    if (label->position->typeY() != QCPItemPosition::ptPlotCoords) continue;
    // Where it belongs, before it was ever moved.
    if (!label->property(kHome).isValid()) label->setProperty(kHome, label->position->coords());
    label->position->setCoords(label->property(kHome).toPointF());
    QPointF place = label->position->pixelPosition();
    const QSizeF size = QFontMetricsF(label->font()).size(0, label->text());
    const Qt::Alignment anchor = label->positionAlignment();
    const auto boxAt = [&](const QPointF& at) {
      double x = at.x() - ((anchor & Qt::AlignRight) != 0 ? size.width() : 0.0);
      if ((anchor & Qt::AlignHCenter) != 0) x -= 0.5 * size.width();
      const double y = at.y() - ((anchor & Qt::AlignVCenter) != 0 ? 0.5 * size.height() : 0.0);
      return QRectF(QPointF(x, y), size);
    };
    // Beside each other they would read as one word.
    const double gap = QFontMetricsF(label->font()).averageCharWidth();
    const auto hits = [&] {
      return std::any_of(taken.begin(), taken.end(), [&](const QRectF& box) {
        return box.intersects(boxAt(place).marginsAdded({gap, 0.0, gap, 0.0}));
      });
    };
    for (int round = 0; round < 20 && hits(); ++round) place.ry() += 0.5 * size.height();
    taken.push_back(boxAt(place));
    label->position->setPixelPosition(place);
  }
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
