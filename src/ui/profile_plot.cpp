#include "ui/profile_plot.h"

#include <vector>

#include "core/profile_marks.h"
#include "core/units.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr double kMicroinchesPerInch = 1e6;
/// Flatter curves are not drawn with equal scales: nothing could be seen of them.
constexpr double kLeastShareOfHeight = 0.2;

/// By ProfileKind: what is usually seen together differs most.
constexpr int kColours[] = {3, 4, 0, 1, 2, 5, 6};

QString NameOf(const Document& document, ProfileKind kind) {
  const AnalysisSettings& settings = document.settings.analysis;
  const double ballMM = kind == ProfileKind::kOpening ? settings.OpeningRadiusForWcvx : settings.ClosingRadiusForWvoid;
  return FromText(ProfileTitle(kind, ballMM));
}

void ScaleHeights(CClickableProfileGraph& graph, const DisplaySettings& display, double heightFactor) {
  if (!display.ProfileAutoScale && display.ProfileYMaxUM > display.ProfileYMinUM) {
    graph.yAxis->setRange(display.ProfileYMinUM * heightFactor, display.ProfileYMaxUM * heightFactor);
  }
  if (display.ProfileAutoYSpacing || !(display.ProfileYGridSpacingUM > 0.0)) {
    graph.yAxis->setTicker(QSharedPointer<QCPAxisTicker>::create());
    return;
  }
  auto ticker = QSharedPointer<QCPAxisTickerFixed>::create();
  ticker->setTickStep(display.ProfileYGridSpacingUM * heightFactor);
  ticker->setTickOrigin(display.ProfileYGridStartUM * heightFactor);
  // Where the wanted lines would run into each other, every second, fifth ... of them.
  ticker->setScaleStrategy(QCPAxisTickerFixed::ssMultiples);
  graph.yAxis->setTicker(ticker);
}

void MarkStretches(CClickableProfileGraph& graph, const Document& document, double factor) {
  const ProfileMarks marks = MarksOf(document);
  const auto tint = [&](double share) {
    QColor ink = graph.palette().color(QPalette::Text);
    ink.setAlphaF(static_cast<float>(share));
    return QBrush(ink);
  };
  std::vector<CClickableProfileGraph::Mark> shown;
  for (const MarkedStretch& stretch : marks.stretches) {
    QBrush brush = tint(stretch.kind == MarkedStretch::Kind::kNotComputed ? 0.22 : 0.08);
    if (stretch.kind == MarkedStretch::Kind::kExcluded) brush = QBrush(CurveColour(1), Qt::BDiagPattern);
    shown.push_back({stretch.firstMM * factor, stretch.lastMM * factor, brush});
  }
  for (const double endMM : marks.samplingLengthEndsMM) shown.push_back({endMM * factor, endMM * factor, tint(0.6)});
  graph.SetMarks(shown);
}

}  // namespace

void DrawProfiles(CClickableProfileGraph& graph, const Document& document, const ShownProfiles& shown, bool showsAll) {
  const bool metric = document.settings.display.Metric;
  const double heightFactor = metric ? 1.0 : kMicroinchesPerMicrometre;
  const double lengthFactor = kMillimetresPerMicrometre * (metric ? 1.0 : kInchesPerMillimetre);
  graph.xAxis->setLabel(metric ? QObject::tr("X in mm") : QObject::tr("X in inches"));
  graph.yAxis->setLabel(FromText(metric ? "height in \xB5m" : "height in \xB5in"));
  std::vector<CClickableProfileGraph::Curve> curves;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const auto kind = static_cast<ProfileKind>(i);
    if (!shown[i] || !HasProfile(document, kind)) continue;
    const Profile profile = document.profiles.View(kind);
    curves.push_back({.name = NameOf(document, kind),
                      .colour = CurveColour(kColours[i]),
                      .width = kind == ProfileKind::kWaviness ? 2.0 : 0.0,
                      .heights = profile.Heights(),
                      .firstX = profile.range.first * profile.spacingUM * lengthFactor,
                      .step = profile.spacingUM * lengthFactor,
                      .heightFactor = heightFactor});
  }
  MarkStretches(graph, document, metric ? 1.0 : kInchesPerMillimetre);
  graph.SetCurves(curves, showsAll);
  const DisplaySettings& display = document.settings.display;
  ScaleHeights(graph, display, heightFactor);
  const double heightUnits = metric ? kMicrometresPerMillimetre : kMicroinchesPerInch;
  const bool triesEqual = showsAll && display.ProfileAutoScale && display.Profile11AspectRatio;
  if (!triesEqual || !graph.ShowAllEquallyScaled(heightUnits, kLeastShareOfHeight)) graph.replot();
}

}  // namespace texturon
