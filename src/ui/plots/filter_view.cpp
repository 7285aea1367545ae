// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/filter_view.h"

#include <QKeyEvent>

#include "base/quantity.h"
#include "presentation/filter_curves.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/plots/plot_axes.h"
#include "ui/plots/plot_items.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Of the small picture, in characters and lines of text.
constexpr int kWidth = 26;
constexpr int kHeight = 4;

void SetUpAxes(QCustomPlot& plot) {
  plot.axisRect()->setupFullAxesBox();
  plot.xAxis->setScaleType(QCPAxis::stLogarithmic);
  plot.xAxis->setTicker(QSharedPointer<QCPAxisTickerLog>::create());
  plot.xAxis->setNumberFormat("g");
  plot.xAxis->setNumberPrecision(3);
}

void AddLevel(QCustomPlot& plot, double x, double y, bool isUpright, Qt::PenStyle style) {
  auto* const line = new QCPItemStraightLine(&plot);
  line->point1->setCoords(x, y);
  line->point2->setCoords(isUpright ? x : 2.0 * x, isUpright ? y + 1.0 : y);
  line->setPen(QPen(plot.palette().color(QPalette::Text), 0.0, style));
}

}  // namespace

bool DrawFilters(QCustomPlot& plot, const Document& document) {
  ClearDrawing(plot);
  const auto curves = FilterCurvesOf(document);
  if (!curves) return false;
  const bool metric = document.settings.display.Metric;
  const double factor = kLengthMM.Factor(metric);
  const bool isDark = IsDark(plot.palette());
  // The colours of the profiles that the waves go to.
  const struct {
    const std::vector<double>* percent;
    QString name;
    int colour;
  } lines[] = {{&curves->primary, QObject::tr("Primary"), 0},
               {&curves->waviness, QObject::tr("Waviness"), 1},
               {&curves->roughness, QObject::tr("Roughness"), 2}};
  for (const auto& line : lines) {
    if (line.percent->empty()) continue;
    QCPGraph* const graph = plot.addGraph();
    graph->setName(line.name);
    graph->setPen(QPen(CurveColour(line.colour, isDark), 1.5));
    for (std::size_t i = 0; i < line.percent->size(); ++i) {
      graph->addData(curves->wavelengthMM[i] * factor, (*line.percent)[i]);
    }
  }
  for (const double cutoffMM : curves->cutoffsMM) AddLevel(plot, cutoffMM * factor, 0.0, true, Qt::DashLine);
  AddLevel(plot, 1.0, 50.0, false, Qt::DotLine);
  plot.yAxis->setRange(0.0, 105.0);
  plot.xAxis->setRange(curves->wavelengthMM.front() * factor, curves->wavelengthMM.back() * factor);
  return true;
}

CFilterView::CFilterView(CTexturonDoc& doc, QWidget* parent) : CCurveView(doc, kNoCurves, parent) {
  SetUpAxes(Plot());
  PutLegendAbove(Plot(), 3);
  SetTitle(tr("Filter Transmission"));
  Plot().yAxis->setLabel(tr("passed in %"));
}

void CFilterView::Draw() {
  const Document& document = Doc().document();
  Plot().xAxis->setLabel(tr("Wavelength in %1").arg(FromText(kLengthMM.Unit(document.settings.display.Metric))));
  DrawFilters(Plot(), document);
  const auto curves = FilterCurvesOf(document);
  SetReadout(curves ? EngineText(curves->remark) : QString());
}

CTransmissionInset::CTransmissionInset(QWidget* parent) : QCustomPlot(parent) {
  setObjectName("transmission");
  setAccessibleName(tr("Filter transmission"));
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
  setFixedSize(fontMetrics().averageCharWidth() * kWidth, fontMetrics().height() * kHeight);
  setMinimumWidth(1);  // a narrow view leaves it out
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  SetUpAxes(*this);
  for (QCPAxis* const axis : {xAxis, yAxis}) axis->setTickLabels(false);
  yAxis->ticker()->setTickCount(2);
  axisRect()->setMinimumMargins(QMargins(4, 4, 4, 4));
  axisRect()->setAutoMargins(QCP::msNone);
  axisRect()->setMargins(QMargins(4, 4, 4, 4));
  for (QCPAxis* const axis : {xAxis, yAxis, xAxis2, yAxis2}) {
    axis->setTickLength(3);
    axis->setSubTicks(false);
  }
  hide();
}

void CTransmissionInset::SetRoom(bool hasRoom) {
  hasRoom_ = hasRoom;
  setVisible(hasCurves_ && hasRoom_);
}

void CTransmissionInset::Show(const Document& document) {
  ApplyPalette(*this);
  hasCurves_ = document.settings.display.ShowFilterTrans && DrawFilters(*this, document);
  setVisible(hasCurves_ && hasRoom_);
  if (!hasCurves_) return;
  const QString unit = FromText(kLengthMM.Unit(document.settings.display.Metric));
  const QString remark = EngineText(FilterCurvesOf(document)->remark);
  setToolTip(tr("How much of each wavelength goes into primary profile, waviness and roughness, from %1 to %2 %3, with "
                "the cut-offs. %4 Click for the whole.")
                 .arg(xAxis->range().lower, 0, 'g', 3)
                 .arg(xAxis->range().upper, 0, 'g', 3)
                 .arg(unit, remark));
  replot();
}

void CTransmissionInset::mousePressEvent(QMouseEvent* event) {
  event->accept();
  emit Clicked();
}

void CTransmissionInset::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return) return emit Clicked();
  QCustomPlot::keyPressEvent(event);
}

}  // namespace texturon
