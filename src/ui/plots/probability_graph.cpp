// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/probability_graph.h"

#include "parameters/curves.h"
#include "presentation/curve_readouts.h"
#include "presentation/probability_plot.h"
#include "ui/colours.h"
#include "ui/plots/clickable_profile_graph.h"
#include "ui/plots/plot_items.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

void FillCurve(QCPGraph& graph, const Document& document, const QCPRange& deviations) {
  const double factor = UnitsOf(document).height;
  QVector<QCPGraphData> points;
  for (const ProbabilityPoint& point : ProbabilityCurve(document.results.roughnessCurve.heightsUM, deviations.lower,
                                                        deviations.upper, kMostScreenPoints)) {
    points.push_back({point.deviations, point.heightUM * factor});
  }
  graph.data()->set(points, true);
}

/// The scale of percents over the plot.
void LabelPercents(QCustomPlot& plot) {
  auto ticker = QSharedPointer<QCPAxisTickerText>::create();
  for (const PercentTick& tick : PercentTicks()) ticker->addTick(tick.deviations, FromText(tick.text));
  plot.xAxis2->setTicker(ticker);
  plot.xAxis2->setTickLabels(true);
  plot.xAxis2->setTickLabelFont(plot.xAxis->tickLabelFont());
  plot.xAxis2->setLabelFont(plot.xAxis->labelFont());
  plot.xAxis2->setLabel(QObject::tr("material ratio in %"));
  plot.xAxis2->setRange(plot.xAxis->range());
}

void DrawRegion(QCustomPlot& plot, const std::optional<ProbabilityPlot::Region>& region, const QString& from,
                const QString& to, const QColor& colour) {
  if (!region) return;
  AddBand(plot, region->from, region->to, Tint(colour, 0.12));
  AddLabel(plot, region->from, 0.99, " " + from, Qt::AlignLeft | Qt::AlignBottom, LabelPlace::kShareOfY);
  AddLabel(plot, region->to, 0.99, " " + to, Qt::AlignLeft | Qt::AlignBottom, LabelPlace::kShareOfY);
}

void DrawLine(QCustomPlot& plot, const std::optional<ProbabilityPlot::Segment>& line, double factor,
              const QColor& colour) {
  if (line) AddSegment(plot, line->x0, line->y0 * factor, line->x1, line->y1 * factor, QPen(colour, 2.0));
}

}  // namespace

void DrawProbability(QCustomPlot& plot, const Document& document) {
  const ShownUnits units = UnitsOf(document);
  plot.xAxis->setLabel(QObject::tr("standard deviations"));
  plot.yAxis->setLabel(QObject::tr("height in %1").arg(units.heightName));
  ClearDrawing(plot);
  LabelPercents(plot);
  const std::vector<double>& sorted = document.results.roughnessCurve.heightsUM;
  if (sorted.size() < 2) return;
  constexpr double kFarEnough = 10.0;
  QCPGraph* const curve = plot.addGraph();
  curve->setPen(QPen(CurveColour(0, plot.palette()), 1.5));
  FillCurve(*curve, document, {-kFarEnough, kFarEnough});
  plot.rescaleAxes();
  plot.yAxis->scaleRange(1.06);
  FillCurve(*curve, document, plot.xAxis->range());
  const ProbabilityPlot lines = ProbabilityPlotOf(document);
  DrawRegion(plot, lines.plateauRegion, "UPL", "LPL", CurveColour(1, plot.palette()));
  DrawRegion(plot, lines.valleyRegion, "UVL", "LVL", CurveColour(2, plot.palette()));
  DrawLine(plot, lines.plateau, units.height, CurveColour(1, plot.palette()));
  DrawLine(plot, lines.valley, units.height, CurveColour(2, plot.palette()));
  QStringList texts;
  for (const std::string& text : ProbabilityTexts(document)) texts << FromText(text);
  QCPItemText* const values =
      AddLabel(plot, 0.98, 0.02, texts.join('\n'), Qt::AlignRight | Qt::AlignTop, LabelPlace::kShare);
  values->setTextAlignment(Qt::AlignLeft);
  plot.xAxis2->setRange(plot.xAxis->range());
}

CProbabilityGraph::CProbabilityGraph(CTexturonDoc& doc, QWidget* parent)
    : CCurveView(doc, {.spectrum = false, .heightCurves = true, .coreRoughness = false, .probability = true}, parent) {
  SetTitle(tr("Material Probability, Roughness"));
}

void CProbabilityGraph::Draw() {
  DrawProbability(Plot(), Doc().document());
}

void CProbabilityGraph::OnViewChanged() {
  if (Plot().graphCount() > 0) FillCurve(*Plot().graph(0), Doc().document(), Plot().xAxis->range());
  Plot().xAxis2->setRange(Plot().xAxis->range());
}

}  // namespace texturon
