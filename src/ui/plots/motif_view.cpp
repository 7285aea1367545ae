// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/motif_view.h"

#include "base/units.h"
#include "presentation/curve_readouts.h"
#include "presentation/motif_plot.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/plots/plot_axes.h"
#include "ui/plots/plot_items.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Columns that are told apart; each takes two points of a line.
constexpr std::size_t kColumns = kMostScreenPoints / 2;
/// With more peaks in view their marks would be a band.
constexpr std::size_t kMostMarks = 150;

struct MotifLine {
  const char* name;
  int colour;
  double width;
  QCPScatterStyle::ScatterShape mark;
  MotifPlot::Line MotifPlot::*points;
};

constexpr MotifLine kLines[] = {
    {QT_TRANSLATE_NOOP("QObject", "primary profile"), 0, 0.0, QCPScatterStyle::ssNone, &MotifPlot::profile},
    {QT_TRANSLATE_NOOP("QObject", "roughness motifs"), 1, 1.0, QCPScatterStyle::ssNone, &MotifPlot::roughness},
    {QT_TRANSLATE_NOOP("QObject", "upper envelope"), 2, 2.0, QCPScatterStyle::ssTriangleInverted, &MotifPlot::envelope},
    {QT_TRANSLATE_NOOP("QObject", "waviness motifs"), 3, 2.0, QCPScatterStyle::ssSquare, &MotifPlot::waviness},
};

/// Fills the lines that are there with what can be told apart in the stretch.
void FillLines(QCustomPlot& plot, const Document& document, double fromMM, double toMM) {
  const ShownUnits units = UnitsOf(document);
  const MotifPlot motifs = MotifPlotOf(document, fromMM, toMM, kColumns);
  const double size = QFontMetrics(plot.xAxis->tickLabelFont()).height() / 2.5;
  for (int i = 0; i < plot.graphCount(); ++i) {
    QCPGraph& graph = *plot.graph(i);
    for (const MotifLine& line : kLines) {
      if (graph.name() != QObject::tr(line.name)) continue;
      QVector<QCPGraphData> points;
      for (const MotifPlot::Point& point : motifs.*line.points) {
        points.push_back({point.xMM * units.length, point.zUM * units.height});
      }
      graph.data()->set(points, true);
      const bool isMarked = (motifs.*line.points).size() <= kMostMarks;
      const double markSize = line.mark == QCPScatterStyle::ssSquare ? 1.5 * size : size;
      graph.setScatterStyle(isMarked ? QCPScatterStyle(line.mark, CurveColour(line.colour, plot.palette()), markSize)
                                     : QCPScatterStyle());
      // Thick lines through thousands of points take most of the time.
      graph.setPen(QPen(CurveColour(line.colour, plot.palette()), motifs.isThinned ? 0.0 : line.width));
      graph.setAntialiased(!motifs.isThinned);
    }
  }
}

}  // namespace

void DrawMotifs(QCustomPlot& plot, const Document& document) {
  const ShownUnits units = UnitsOf(document);
  plot.xAxis->setLabel(QObject::tr("X in %1").arg(units.lengthName));
  plot.yAxis->setLabel(QObject::tr("height in %1").arg(units.heightName));
  ClearDrawing(plot);
  PutLegendAbove(plot, 2);
  if (!document.profiles.primaryRange) return;
  const ShownMotifs shown = ShownMotifsOf(document.settings.analysis);
  for (const MotifLine& line : kLines) {
    if (line.points == &MotifPlot::roughness && !shown.roughness) continue;
    if (line.points == &MotifPlot::waviness && !shown.waviness) continue;
    plot.addGraph()->setName(QObject::tr(line.name));
  }
  const Profile primary = document.profiles.View(ProfileKind::kPrimary);
  FillLines(plot, document, 0.0, primary.range.last * primary.spacingUM * kMillimetresPerMicrometre);
  plot.legend->setFont(plot.xAxis->tickLabelFont());
  plot.rescaleAxes();
  plot.yAxis->scaleRange(1.06);
}

CMotifView::CMotifView(CTexturonDoc& doc, QWidget* parent)
    : CCurveView(doc, {.spectrum = false, .heightCurves = false, .coreRoughness = false, .motifs = true}, parent) {
  SetTitle(tr("Motifs, Primary"));
  Plot().axisRect()->setRangeZoom(Qt::Horizontal);
  Plot().axisRect()->setRangeDrag(Qt::Horizontal);
}

void CMotifView::Draw() {
  DrawMotifs(Plot(), Doc().document());
  SetReadout(EngineReadout(MotifReadout(Doc().document())));
}

void CMotifView::OnViewChanged() {
  const double toMM = 1.0 / UnitsOf(Doc().document()).length;
  const QCPRange range = Plot().xAxis->range();
  FillLines(Plot(), Doc().document(), range.lower * toMM, range.upper * toMM);
}

}  // namespace texturon
