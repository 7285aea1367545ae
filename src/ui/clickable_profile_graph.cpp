#include "ui/clickable_profile_graph.h"

namespace texturon {

CClickableProfileGraph::CClickableProfileGraph(QWidget* parent) : QCustomPlot(parent) {
  setInteractions(QCP::iRangeDrag | QCP::iRangeZoom | QCP::iSelectLegend);
  axisRect()->setupFullAxesBox(true);
  xAxis->setLabel(tr("X in mm"));
  legend->setVisible(true);
  axisRect()->insetLayout()->setInsetAlignment(0, Qt::AlignTop | Qt::AlignRight);
  setNoAntialiasingOnDrag(true);
  setPlottingHint(QCP::phFastPolylines, true);
  setFocusPolicy(Qt::StrongFocus);
  ApplyPalette(*this);
}

void CClickableProfileGraph::SetCurves(std::span<const Curve> curves, bool showsAll) {
  clearGraphs();
  for (const Curve& curve : curves) {
    QCPGraph* const graph = addGraph();
    graph->setName(curve.name);
    graph->setPen(QPen(curve.colour, curve.width));
    QVector<QCPGraphData> points(static_cast<qsizetype>(curve.heights.size()));
    for (std::size_t i = 0; i < curve.heights.size(); ++i) {
      points[static_cast<qsizetype>(i)] = {curve.firstX + static_cast<double>(i) * curve.step,
                                           curve.heights[i] * curve.heightFactor};
    }
    graph->data()->set(points, true);
  }
  if (showsAll) rescaleAxes();
  replot();
}

void CClickableProfileGraph::ShowAll() {
  rescaleAxes();
  replot();
}

void CClickableProfileGraph::mousePressEvent(QMouseEvent* event) {
  const bool marks = event->button() == Qt::LeftButton && event->modifiers().testFlag(Qt::ShiftModifier);
  setSelectionRectMode(marks ? QCP::srmZoom : QCP::srmNone);
  QCustomPlot::mousePressEvent(event);
}

void CClickableProfileGraph::mouseReleaseEvent(QMouseEvent* event) {
  QCustomPlot::mouseReleaseEvent(event);
  setSelectionRectMode(QCP::srmNone);
}

void CClickableProfileGraph::mouseDoubleClickEvent(QMouseEvent* event) {
  QCustomPlot::mouseDoubleClickEvent(event);
  ShowAll();
}

void CClickableProfileGraph::wheelEvent(QWheelEvent* event) {
  const bool alongXOnly = event->modifiers().testFlag(Qt::ControlModifier);
  axisRect()->setRangeZoom(alongXOnly ? Qt::Horizontal : Qt::Horizontal | Qt::Vertical);
  QCustomPlot::wheelEvent(event);
}

QColor CurveColour(int number) {
  // After Okabe and Ito, "Color Universal Design" (2008).
  constexpr QRgb kColours[] = {0xFF0072B2, 0xFFD55E00, 0xFF009E73, 0xFFCC79A7, 0xFFE69F00, 0xFF56B4E9, 0xFF808080};
  return QColor::fromRgb(kColours[static_cast<std::size_t>(number) % std::size(kColours)]);
}

void ApplyPalette(QCustomPlot& plot) {
  const QPalette palette = plot.palette();
  const QColor ink = palette.color(QPalette::Text);
  QColor faint = ink;
  faint.setAlphaF(0.2F);
  plot.setBackground(palette.color(QPalette::Base));
  plot.legend->setBrush(palette.color(QPalette::Base));
  plot.legend->setTextColor(ink);
  plot.legend->setBorderPen(QPen(faint));
  for (QCPAxis* const axis : {plot.xAxis, plot.yAxis, plot.xAxis2, plot.yAxis2}) {
    for (const auto setPen : {&QCPAxis::setBasePen, &QCPAxis::setTickPen, &QCPAxis::setSubTickPen}) {
      (axis->*setPen)(QPen(ink));
    }
    axis->setLabelColor(ink);
    axis->setTickLabelColor(ink);
    axis->grid()->setPen(QPen(faint, 0.0, Qt::DotLine));
  }
}

}  // namespace texturon
