// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/texturon_brc_view.h"

#include <algorithm>

#include "parameters/curves.h"
#include "presentation/curve_readouts.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/plots/plot_axes.h"
#include "ui/plots/plot_cursors.h"
#include "ui/plots/plot_items.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

QString RatiosName() {
  return QObject::tr("material ratio");
}

QCPGraph* RatiosOf(QCustomPlot& plot) {
  for (int i = 0; i < plot.graphCount(); ++i) {
    if (plot.graph(i)->name() == RatiosName()) return plot.graph(i);
  }
  return nullptr;
}

/// As many points as can be told apart in the stretch.
void FillRatios(QCPGraph& graph, const Document& document, const QCPRange& percents) {
  const double factor = UnitsOf(document).height;
  QVector<QCPGraphData> points;
  for (const BearingPoint& point :
       BearingRatioCurve(BearingHeights(document), percents.lower, percents.upper, kMostScreenPoints)) {
    points.push_back({point.ratioPercent, point.heightUM * factor});
  }
  graph.data()->set(points, true);
}

void DrawAmplitudes(QCustomPlot& plot, const Document& document) {
  const double factor = UnitsOf(document).height;
  auto* const amplitudes = new QCPCurve(plot.xAxis, plot.yAxis);
  QVector<QCPCurveData> classes;
  for (const AmplitudeClass& amplitude : AmplitudeDistribution(BearingHeights(document))) {
    classes.push_back({static_cast<double>(classes.size()), amplitude.scaledCount, amplitude.heightUM * factor});
  }
  amplitudes->data()->set(classes, true);
  amplitudes->setName(QObject::tr("amplitudes"));
  amplitudes->setPen(QPen(CurveColour(4, plot.palette()), 1.5));
}

/// The equivalent line, the core between its two heights, and the triangles of the same areas as peaks and valleys.
void DrawCore(QCustomPlot& plot, const RkResult& core, double factor) {
  const double upper = core.upperLine * factor;
  const double lower = core.lowerLine * factor;
  const double peak = upper + core.Rpk * factor;
  const double valley = lower - core.Rvk * factor;
  AddArea(plot, {{0.0, upper}, {100.0, upper}, {100.0, lower}, {0.0, lower}},
          Tint(CurveColour(2, plot.palette()), 0.15));
  AddArea(plot, {{0.0, upper}, {core.Mr1, upper}, {0.0, peak}}, Tint(CurveColour(1, plot.palette()), 0.45));
  AddArea(plot, {{100.0, lower}, {core.Mr2, lower}, {100.0, valley}}, Tint(CurveColour(3, plot.palette()), 0.45));
  const QPen dashed(CurveColour(1, plot.palette()), 1.0, Qt::DashLine);
  AddSegment(plot, 0.0, upper, 100.0, lower, QPen(CurveColour(1, plot.palette()), 1.5));
  AddSegment(plot, 0.0, upper, 100.0, upper, dashed);
  AddSegment(plot, 0.0, lower, 100.0, lower, dashed);
  const struct {
    double x, y;
    QString text;
    Qt::Alignment anchor;
  } labels[] = {{30.0, upper, "Rk", Qt::AlignHCenter | Qt::AlignTop},
                {core.Mr1, upper, "Mr1", Qt::AlignLeft | Qt::AlignTop},
                {core.Mr2, lower, "Mr2", Qt::AlignRight | Qt::AlignTop},
                {core.Mr1 / 2.0, (upper + 2.0 * peak) / 3.0, " A1", Qt::AlignLeft | Qt::AlignVCenter},
                {(100.0 + core.Mr2) / 2.0, (lower + valley) / 2.0, "A2", Qt::AlignRight | Qt::AlignVCenter}};
  for (const auto& label : labels) AddLabel(plot, label.x, label.y, label.text, label.anchor);
}

}  // namespace

QString BearingTitle(const Document& document) {
  const BearingChoice choice = BearingChoiceOf(document.settings.display);
  const QString what = choice.showsRatios && choice.showsAmplitudes ? QObject::tr("Bearing Ratio and Amplitudes, %1")
                       : choice.showsRatios                         ? QObject::tr("Bearing Ratio, %1")
                                                                    : QObject::tr("Amplitude Distribution, %1");
  return what.arg(choice.profile == ProfileKind::kPrimary ? QObject::tr("Primary") : QObject::tr("Roughness"));
}

void DrawBearingRatio(QCustomPlot& plot, const Document& document) {
  const ShownUnits units = UnitsOf(document);
  const BearingChoice choice = BearingChoiceOf(document.settings.display);
  plot.xAxis->setLabel(choice.showsRatios && choice.showsAmplitudes ? QObject::tr("material ratio in %, occurrences")
                       : choice.showsRatios                         ? QObject::tr("material ratio in %")
                                                                    : QObject::tr("occurrences, the most 100"));
  plot.yAxis->setLabel(QObject::tr("height in %1").arg(units.heightName));
  ClearDrawing(plot);
  const std::span<const double> sorted = BearingHeights(document);
  plot.xAxis->setRange(0.0, 100.0);
  if (sorted.empty()) return;
  PutLegendAbove(plot, 2);
  const RkResult& core = document.results.coreRoughness;
  const bool showsCore = choice.showsRatios && choice.profile == ProfileKind::kRoughness && core.valid &&
                         document.settings.display.ShowRkLines;
  if (showsCore) DrawCore(plot, core, units.height);
  if (choice.showsAmplitudes) DrawAmplitudes(plot, document);
  if (choice.showsRatios) {
    QCPGraph* const ratios = plot.addGraph();
    ratios->setName(RatiosName());
    ratios->setPen(QPen(CurveColour(0, plot.palette()), 1.5));
    FillRatios(*ratios, document, {0.0, 100.0});
  }
  const double top = std::max(sorted.front(), showsCore ? core.upperLine + core.Rpk : sorted.front());
  const double bottom = std::min(sorted.back(), showsCore ? core.lowerLine - core.Rvk : sorted.back());
  const double air = top > bottom ? 0.03 * (top - bottom) : 1.0;
  plot.yAxis->setRange((bottom - air) * units.height, (top + air) * units.height);
}

CTexturonBRCView::CTexturonBRCView(CTexturonDoc& doc, QWidget* parent)
    : CCurveView(doc, {.spectrum = false, .heightCurves = true, .coreRoughness = true}, parent),
      cursors_(new CPlotCursors(Plot(), true)) {
  connect(cursors_, &CPlotCursors::Moved, this, &CTexturonBRCView::Tell);
  connect(&Plot(), &QCustomPlot::afterLayout, this, [this] { SpreadLabels(Plot()); });
}

void CTexturonBRCView::Draw() {
  SetTitle(BearingTitle(Doc().document()));
  DrawBearingRatio(Plot(), Doc().document());
}

void CTexturonBRCView::OnViewChanged() {
  const Document& document = Doc().document();
  if (QCPGraph* const ratios = RatiosOf(Plot())) FillRatios(*ratios, document, Plot().xAxis->range());
  const bool isThere = !BearingHeights(document).empty();
  cursors_->SetVisible(isThere);
  if (isThere) cursors_->Begin();
  Tell();
}

void CTexturonBRCView::Tell() {
  const Document& document = Doc().document();
  SetReadout(EngineReadout(BearingReadout(document, cursors_->X(), cursors_->Y() / UnitsOf(document).height)));
}

}  // namespace texturon
