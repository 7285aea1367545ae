// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/transmission_inset.h"

#include "base/quantity.h"
#include "presentation/filter_curves.h"
#include "ui/plots/clickable_profile_graph.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// In lines and characters of text.
constexpr int kLeastHeight = 8;
constexpr int kLeastWidth = 34;
/// Least size of the graph, in sizes of the picture.
constexpr double kLeastShareOfWidth = 3.0;
constexpr double kLeastShareOfHeight = 1.7;

}  // namespace

CTransmissionInset::CTransmissionInset(QWidget* parent) : QCustomPlot(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAttribute(Qt::WA_OpaquePaintEvent, false);
  setFocusPolicy(Qt::NoFocus);
  setObjectName("transmission");
  legend->setVisible(false);
  axisRect()->setupFullAxesBox();
  xAxis->setScaleType(QCPAxis::stLogarithmic);
  xAxis->setTicker(QSharedPointer<QCPAxisTickerLog>::create());
  xAxis->setNumberFormat("g");
  xAxis->setNumberPrecision(3);
  yAxis->setRange(0.0, 105.0);
  yAxis->ticker()->setTickCount(3);
  yAxis->setLabel(tr("%"));
  hide();
}

void CTransmissionInset::Show(const Document& document) {
  const auto curves =
      document.settings.display.ShowFilterTrans ? FilterCurvesOf(document) : std::optional<FilterCurves>();
  hasCurves_ = curves.has_value();
  if (!hasCurves_) return hide();
  ApplyPalette(*this);
  QColor ground = palette().color(QPalette::Base);
  ground.setAlphaF(0.85F);
  setBackground(ground);
  QFont small = font();
  small.setPointSizeF(small.pointSizeF() * 0.85);
  for (QCPAxis* const axis : {xAxis, yAxis}) {
    axis->setTickLabelFont(small);
    axis->setLabelFont(small);
  }
  clearPlottables();
  clearItems();
  const bool metric = document.settings.display.Metric;
  const double factor = kLengthMM.Factor(metric);
  // The colours of the profiles that the waves go to.
  const std::pair<const std::vector<double>*, int> lines[] = {
      {&curves->primary, 0}, {&curves->waviness, 1}, {&curves->roughness, 2}};
  for (const auto& [percent, colour] : lines) {
    if (percent->empty()) continue;
    QCPGraph* const graph = addGraph();
    graph->setPen(QPen(CurveColour(colour), 1.5));
    for (std::size_t i = 0; i < percent->size(); ++i) graph->addData(curves->wavelengthMM[i] * factor, (*percent)[i]);
  }
  for (const double cutoffMM : curves->cutoffsMM) {
    auto* const line = new QCPItemStraightLine(this);
    line->point1->setCoords(cutoffMM * factor, 0.0);
    line->point2->setCoords(cutoffMM * factor, 1.0);
    line->setPen(QPen(palette().color(QPalette::Text), 0.0, Qt::DashLine));
  }
  auto* const half = new QCPItemStraightLine(this);
  half->point1->setCoords(1.0, 50.0);
  half->point2->setCoords(2.0, 50.0);
  half->setPen(QPen(palette().color(QPalette::Text), 0.0, Qt::DotLine));
  const QString unit = FromText(kLengthMM.Unit(metric));
  const QString remark = FromText(curves->remark);
  xAxis->setLabel(remark.isEmpty() ? tr("Wavelength in %1").arg(unit) : tr("Wavelength in %1\n%2").arg(unit, remark));
  xAxis->setRange(curves->wavelengthMM.front() * factor, curves->wavelengthMM.back() * factor);
  replot();
}

int CTransmissionInset::RoomBeside(const QSize& graph) {
  const QFontMetrics metrics = fontMetrics();
  resize(metrics.averageCharWidth() * kLeastWidth, metrics.height() * kLeastHeight);
  const bool fits = graph.width() > width() * kLeastShareOfWidth && graph.height() > height() * kLeastShareOfHeight;
  setVisible(hasCurves_ && fits);
  return hasCurves_ && fits ? width() : 0;
}

void CTransmissionInset::PutBeside(const QRect& axes) {
  const int gap = fontMetrics().height() / 2;
  move(axes.right() + gap, axes.bottom() - height());
}

}  // namespace texturon
