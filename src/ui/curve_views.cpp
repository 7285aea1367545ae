#include "ui/curve_views.h"

#include <QVBoxLayout>

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

CTexturonBRCView::CTexturonBRCView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent), doc_(doc), plot_(PlotIn(this)) {
  plot_->xAxis->setLabel(tr("material ratio in %, scaled occurrences"));
  plot_->yAxis->setLabel(FromText("height in \xB5m"));
  connect(&doc_, &CTexturonDoc::Changed, this, &CTexturonBRCView::Update);
  Update();
}

void CTexturonBRCView::Update() {
  plot_->clearPlottables();
  plot_->clearItems();
  const AnalysisResults& results = doc_.document().results;
  if (results.roughnessCurveComputed && !results.roughnessCurve.heightsUM.empty()) {
    auto* const ratios = new QCPCurve(plot_->xAxis, plot_->yAxis);
    QVector<QCPCurveData> points;
    const std::vector<double>& sorted = results.roughnessCurve.heightsUM;
    // More points than the plot has pixels only cost time.
    const std::size_t step = std::max<std::size_t>(1, sorted.size() / 4000);
    for (std::size_t i = 0; i < sorted.size(); i += step) {
      points.push_back({static_cast<double>(i), RatioPercent(i, sorted.size()), sorted[i]});
    }
    ratios->data()->set(points, true);
    ratios->setPen(QPen(CurveColour(0), 0.0));
    auto* const amplitudes = new QCPCurve(plot_->xAxis, plot_->yAxis);
    QVector<QCPCurveData> classes;
    for (const AmplitudeClass& amplitude : AmplitudeDistribution(sorted)) {
      classes.push_back({static_cast<double>(classes.size()), amplitude.scaledCount, amplitude.heightUM});
    }
    amplitudes->data()->set(classes, true);
    amplitudes->setPen(QPen(CurveColour(4), 0.0));
    const RkResult& core = results.coreRoughness;
    if (core.valid && doc_.document().settings.display.ShowRkLines) {
      AddLine(*plot_, 0.0, core.upperLine, 100.0, core.lowerLine, CurveColour(1));
      AddLine(*plot_, 0.0, core.upperLine, core.Mr1, core.upperLine, CurveColour(1));
      AddLine(*plot_, core.Mr2, core.lowerLine, 100.0, core.lowerLine, CurveColour(1));
    }
  }
  plot_->rescaleAxes();
  plot_->xAxis->setRange(0.0, 100.0);
  plot_->replot();
}

CTexturonSpectView::CTexturonSpectView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent), doc_(doc), plot_(PlotIn(this)) {
  plot_->xAxis->setLabel(tr("wavelength in mm"));
  plot_->xAxis->setScaleType(QCPAxis::stLogarithmic);
  plot_->xAxis->setTicker(QSharedPointer<QCPAxisTickerLog>::create());
  plot_->xAxis->setRangeReversed(true);
  plot_->yAxis->setLabel(FromText("mean to peak amplitude in \xB5m"));
  connect(&doc_, &CTexturonDoc::Changed, this, &CTexturonSpectView::Update);
  Update();
}

void CTexturonSpectView::Update() {
  plot_->clearPlottables();
  const Spectrum& spectrum = doc_.document().profiles.spectrum;
  if (doc_.document().results.spectrumComputed) {
    QCPGraph* const graph = plot_->addGraph();
    graph->setPen(QPen(CurveColour(0), 0.0));
    QVector<QCPGraphData> points;
    for (std::size_t i = 1; i < spectrum.amplitudeUM.size(); ++i) {
      points.push_back({spectrum.wavelengthMM[i], spectrum.amplitudeUM[i]});
    }
    graph->data()->set(points, false);
  }
  plot_->rescaleAxes();
  plot_->replot();
}

}  // namespace texturon
