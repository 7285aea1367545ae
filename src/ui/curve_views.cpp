#include "ui/curve_views.h"

#include <QVBoxLayout>

#include "core/units.h"
#include "parameters/curves.h"
#include "ui/clickable_profile_graph.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

QCustomPlot* PlotIn(QWidget* view) {
  auto* const plot = new QCustomPlot(view);
  auto* const layout = new QVBoxLayout(view);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(plot);
  plot->setMinimumWidth(plot->fontMetrics().averageCharWidth() * 45);
  plot->setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
  plot->axisRect()->setupFullAxesBox(true);
  ApplyPalette(*plot);
  return plot;
}

void AddLine(QCustomPlot& plot, double x0, double y0, double x1, double y1, const QColor& colour) {
  auto* const line = new QCPItemLine(&plot);
  line->start->setCoords(x0, y0);
  line->end->setCoords(x1, y1);
  line->setPen(QPen(colour, 0.0, Qt::DashLine));
}

}  // namespace

void DrawBearingRatio(QCustomPlot& plot, const Document& document) {
  plot.xAxis->setLabel(QObject::tr("material ratio in %, scaled occurrences"));
  const bool metric = document.settings.display.Metric;
  const double factor = metric ? 1.0 : kMicroinchesPerMicrometre;
  plot.yAxis->setLabel(FromText(metric ? "height in \xB5m" : "height in \xB5in"));
  plot.clearPlottables();
  plot.clearItems();
  const AnalysisResults& results = document.results;
  if (results.roughnessCurveComputed && !results.roughnessCurve.heightsUM.empty()) {
    auto* const ratios = new QCPCurve(plot.xAxis, plot.yAxis);
    QVector<QCPCurveData> points;
    const std::vector<double>& sorted = results.roughnessCurve.heightsUM;
    // More points than the plot has pixels only cost time.
    const std::size_t step = std::max<std::size_t>(1, sorted.size() / 4000);
    for (std::size_t i = 0; i < sorted.size(); i += step) {
      points.push_back({static_cast<double>(i), RatioPercent(i, sorted.size()), sorted[i] * factor});
    }
    ratios->data()->set(points, true);
    ratios->setPen(QPen(CurveColour(0), 0.0));
    auto* const amplitudes = new QCPCurve(plot.xAxis, plot.yAxis);
    QVector<QCPCurveData> classes;
    for (const AmplitudeClass& amplitude : AmplitudeDistribution(sorted)) {
      classes.push_back({static_cast<double>(classes.size()), amplitude.scaledCount, amplitude.heightUM * factor});
    }
    amplitudes->data()->set(classes, true);
    amplitudes->setPen(QPen(CurveColour(4), 0.0));
    const RkResult& core = results.coreRoughness;
    if (core.valid && document.settings.display.ShowRkLines) {
      const double upper = core.upperLine * factor;
      const double lower = core.lowerLine * factor;
      AddLine(plot, 0.0, upper, 100.0, lower, CurveColour(1));
      AddLine(plot, 0.0, upper, core.Mr1, upper, CurveColour(1));
      AddLine(plot, core.Mr2, lower, 100.0, lower, CurveColour(1));
    }
  }
  plot.rescaleAxes();
  plot.xAxis->setRange(0.0, 100.0);
  plot.replot();
}

void DrawSpectrum(QCustomPlot& plot, const Document& document) {
  const bool metric = document.settings.display.Metric;
  const double lengthFactor = metric ? 1.0 : kInchesPerMillimetre;
  const double heightFactor = metric ? 1.0 : kMicroinchesPerMicrometre;
  plot.xAxis->setLabel(metric ? QObject::tr("wavelength in mm") : QObject::tr("wavelength in inches"));
  plot.xAxis->setScaleType(QCPAxis::stLogarithmic);
  plot.xAxis->setTicker(QSharedPointer<QCPAxisTickerLog>::create());
  plot.xAxis->setRangeReversed(true);
  plot.yAxis->setLabel(FromText(metric ? "mean to peak amplitude in \xB5m" : "mean to peak amplitude in \xB5in"));
  plot.clearPlottables();
  const Spectrum& spectrum = document.profiles.spectrum;
  if (document.results.spectrumComputed) {
    QCPGraph* const graph = plot.addGraph();
    graph->setPen(QPen(CurveColour(0), 0.0));
    QVector<QCPGraphData> points;
    for (std::size_t i = 1; i < spectrum.amplitudeUM.size(); ++i) {
      points.push_back({spectrum.wavelengthMM[i] * lengthFactor, spectrum.amplitudeUM[i] * heightFactor});
    }
    graph->data()->set(points, false);
  }
  plot.rescaleAxes();
  plot.replot();
}

CTexturonBRCView::CTexturonBRCView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent), doc_(doc), plot_(PlotIn(this)) {
  connect(&doc_, &CTexturonDoc::Changed, this, &CTexturonBRCView::Update);
}

void CTexturonBRCView::Update() {
  if (isVisible()) DrawBearingRatio(*plot_, doc_.document());
}

void CTexturonBRCView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Update();
}

CTexturonSpectView::CTexturonSpectView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent), doc_(doc), plot_(PlotIn(this)) {
  connect(&doc_, &CTexturonDoc::Changed, this, &CTexturonSpectView::Update);
}

void CTexturonSpectView::Update() {
  if (isVisible()) DrawSpectrum(*plot_, doc_.document());
}

void CTexturonSpectView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Update();
}

}  // namespace texturon
