#include "ui/motif_view.h"

#include <vector>

#include "core/curve_readouts.h"
#include "core/units.h"
#include "ui/clickable_profile_graph.h"
#include "ui/plot_items.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Turns samples of the primary profile into points of the axes.
struct ProfilePoints {
  std::span<const double> samples;
  double step = 0.0;
  double factor = 1.0;

  QCPGraphData At(std::int32_t i) const { return {i * step, samples[static_cast<std::size_t>(i)] * factor}; }
};

QCPGraph* AddPolyline(QCustomPlot& plot, const QVector<QCPGraphData>& points, const QString& name, const QPen& pen) {
  QCPGraph* const graph = plot.addGraph();
  graph->setName(name);
  graph->setPen(pen);
  graph->data()->set(points, true);
  return graph;
}

QVector<QCPGraphData> PeaksOf(const std::vector<Motif>& motifs, const ProfilePoints& profile) {
  QVector<QCPGraphData> points;
  for (const Motif& motif : motifs) points.push_back(profile.At(motif.firstPeak));
  if (!motifs.empty()) points.push_back(profile.At(motifs.back().lastPeak));
  return points;
}

/// From peak to dale to peak. The dales of waviness motifs lie on the envelope: their depth tells how low.
QVector<QCPGraphData> MotifPoints(const std::vector<Motif>& motifs, const ProfilePoints& profile) {
  QVector<QCPGraphData> points;
  for (const Motif& motif : motifs) {
    const QCPGraphData peak = profile.At(motif.firstPeak);
    points.push_back(peak);
    points.push_back({motif.dale * profile.step, peak.value - motif.firstDepthUM * profile.factor});
  }
  if (!motifs.empty()) points.push_back(profile.At(motifs.back().lastPeak));
  return points;
}

}  // namespace

void DrawMotifs(QCustomPlot& plot, const Document& document) {
  const ShownUnits units = UnitsOf(document);
  plot.xAxis->setLabel(QObject::tr("X in %1").arg(units.lengthName));
  plot.yAxis->setLabel(QObject::tr("height in %1").arg(units.heightName));
  ClearDrawing(plot);
  if (!document.results.primaryComputed) return;
  const ProfileSet& profiles = document.profiles;
  const Profile primary = profiles.View(ProfileKind::kPrimary);
  const ProfilePoints profile{primary.samples, primary.spacingUM * kMillimetresPerMicrometre * units.length,
                              units.height};
  QVector<QCPGraphData> points(primary.range.count);
  for (std::int32_t i = 0; i < primary.range.count; ++i) points[i] = profile.At(primary.range.first + i);
  AddPolyline(plot, points, FromText(ProfileTitle(ProfileKind::kPrimary)), QPen(CurveColour(0), 0.0));
  const ShownMotifs shown = ShownMotifsOf(document.settings.analysis);
  const double size = QFontMetrics(plot.xAxis->tickLabelFont()).height() / 2.5;
  if (shown.roughness) {
    AddPolyline(plot, MotifPoints(profiles.roughnessMotifs, profile), QObject::tr("roughness motifs"),
                QPen(CurveColour(1), 1.0));
  }
  AddPolyline(plot, PeaksOf(profiles.roughnessMotifs, profile), QObject::tr("upper envelope"),
              QPen(CurveColour(2), 2.0))
      ->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssTriangleInverted, CurveColour(2), size));
  if (shown.waviness) {
    AddPolyline(plot, MotifPoints(profiles.wavinessMotifs, profile), QObject::tr("waviness motifs"),
                QPen(CurveColour(3), 2.0, Qt::DashLine))
        ->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssSquare, CurveColour(3), size * 1.5));
  }
  plot.legend->setVisible(true);
  plot.legend->setFont(plot.xAxis->tickLabelFont());
  plot.axisRect()->insetLayout()->setInsetAlignment(0, Qt::AlignTop | Qt::AlignRight);
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
  SetReadout(FromText(MotifReadout(Doc().document())));
}

}  // namespace texturon
