// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/profile_plot.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "analysis/captions.h"
#include "base/quantity.h"
#include "parameters/edition2021/edition_list.h"
#include "parameters/local_slopes.h"
#include "presentation/feature_marks.h"
#include "presentation/profile_marks.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/plots/plot_axes.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr double kMicroinchesPerInch = 1e6;
/// Wide enough to be seen on the curve without its colour.
constexpr double kSteepWidth = 2.5;
constexpr double kFormWidth = 1.5;

/// By ProfileKind: what is usually seen together differs most.
constexpr int kColours[] = {3, 4, 0, 1, 2, 5, 6};

QString NameOf(const Document& document, ProfileKind kind) {
  const AnalysisSettings& settings = document.settings.analysis;
  const double ballMM = kind == ProfileKind::kOpening ? settings.OpeningRadiusForWcvx : settings.ClosingRadiusForWvoid;
  return EngineText(ProfileTitle(kind, ballMM));
}

void SetGrid(CClickableProfileGraph& graph, const DisplaySettings& display, double heightFactor) {
  if (display.ProfileAutoYSpacing || !(display.ProfileYGridSpacingUM > 0.0)) {
    graph.yAxis->setTicker(MakeTicker());
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
    if (stretch.kind == MarkedStretch::Kind::kExcluded)
      brush = QBrush(CurveColour(1, graph.palette()), Qt::BDiagPattern);
    shown.push_back({stretch.firstMM * factor, stretch.lastMM * factor, brush});
  }
  for (const double endMM : marks.samplingLengthEndsMM) shown.push_back({endMM * factor, endMM * factor, tint(0.6)});
  graph.SetMarks(shown);
}

/// Peaks and pits as marks, and the levels of hills and dales as lines; what pruning takes out is faint.
void DrawFeatures(CClickableProfileGraph& graph, const Document& document, ProfileKind kind) {
  constexpr double kMarkPixels = 7.0;
  constexpr double kPixelsOfMany = 4.0;
  constexpr std::size_t kMany = 150;
  constexpr float kFaint = 0.3F;
  const bool metric = document.settings.display.Metric;
  const double heightFactor = kHeightUM.Factor(metric);
  const double lengthFactor = kLengthMM.Factor(metric);
  const QColor ink = graph.palette().color(QPalette::Text);
  QColor faint = ink;
  faint.setAlphaF(kFaint);
  for (const bool ofHills : {true, false}) {
    const FeatureMarks marks = FeatureMarksOf(document, kind, ofHills);
    if (marks.extremes.empty()) continue;  // a profile without such rows has no legend of them
    const auto shape = ofHills ? QCPScatterStyle::ssTriangle : QCPScatterStyle::ssTriangleInverted;
    // Many side by side would hide the profile.
    const double pixels = marks.extremes.size() > kMany ? kPixelsOfMany : kMarkPixels;
    for (const bool isKept : {false, true}) {
      QCPGraph* const points = graph.addGraph();
      points->setName(isKept ? (ofHills ? QObject::tr("hills") : QObject::tr("dales")) : QObject::tr("pruned"));
      points->setLineStyle(QCPGraph::lsNone);
      points->setPen(QPen(isKept ? ink : faint));
      points->setScatterStyle(
          QCPScatterStyle(shape, isKept ? QPen(ink) : QPen(faint), isKept ? QBrush(ink) : QBrush(Qt::NoBrush), pixels));
      if (!isKept && !ofHills) points->removeFromLegend();
      for (const FeatureMark& mark : marks.extremes) {
        if (mark.isKept == isKept) points->addData(mark.xMM * lengthFactor, mark.heightUM * heightFactor);
      }
    }
    QCPGraph* const levels = graph.addGraph();
    levels->removeFromLegend();
    levels->setPen(QPen(ink, 1.0, ofHills ? Qt::DotLine : Qt::DashLine));
    for (const LevelMark& level : marks.levels) {
      levels->addData(level.firstMM * lengthFactor, level.heightUM * heightFactor);
      levels->addData(level.lastMM * lengthFactor, level.heightUM * heightFactor);
      levels->addData(level.lastMM * lengthFactor, std::nan(""));
    }
  }
}

class CurveList {
public:
  explicit CurveList(const Document& document)
      : computed_(document.profiles.computeRange),
        heightFactor_(kHeightUM.Factor(document.settings.display.Metric)),
        lengthFactor_(kMillimetresPerMicrometre * kLengthMM.Factor(document.settings.display.Metric)) {}

  void Add(const Profile& profile, const QString& name, const QColor& colour, double width) {
    Add(profile, profile.Heights(), name, colour, width);
  }
  /// Heights of a profile's range that are not the profile's own.
  void Add(const Profile& profile, std::span<const double> heights, const QString& name, const QColor& colour,
           double width) {
    curves.push_back({.name = name,
                      .colour = colour,
                      .width = width,
                      .heights = heights,
                      .firstX = profile.range.first * profile.spacingUM * lengthFactor_,
                      .step = profile.spacingUM * lengthFactor_,
                      .heightFactor = heightFactor_,
                      .ofStretch = Computed(profile.range, heights)});
  }

  /// What was not computed over, paler than any profile and without a name: the scale of the whole view goes by it.
  void AddBeside(const Document& document, std::span<const double> heights, const QPalette& palette) {
    constexpr float kPale = 0.45F;
    QColor ink = palette.color(QPalette::Text);
    ink.setAlphaF(kPale);
    const double step = document.profiles.spacingUM * lengthFactor_;
    curves.push_back({.colour = ink, .heights = heights, .step = step, .heightFactor = heightFactor_});
    curves.back().isOverlay = true;
    curves.back().isOutside = true;
  }

  std::vector<CClickableProfileGraph::Curve> curves;

private:
  /// Those of a range's heights that are computed over, empty where that is all or none.
  std::span<const double> Computed(const IndexRange& range, std::span<const double> heights) const {
    const std::int32_t first = std::max(computed_ ? computed_->first : range.first, range.first);
    const std::int32_t last = std::min(computed_ ? computed_->last : range.last, range.last);
    if (last < first || last - first + 1 == range.count) return {};
    return heights.subspan(static_cast<std::size_t>(first - range.first), static_cast<std::size_t>(last - first + 1));
  }

  std::optional<IndexRange> computed_;
  double heightFactor_;
  double lengthFactor_;
};

}  // namespace

void DrawProfiles(CClickableProfileGraph& graph, const Document& document, const ShownProfiles& shown, ViewAfter view) {
  const DisplaySettings& display = document.settings.display;
  const bool metric = display.Metric;
  const double heightFactor = kHeightUM.Factor(metric);
  graph.SetXTitle(metric ? QObject::tr("X in mm") : QObject::tr("X in inch"));
  graph.yAxis->setLabel(QObject::tr("height in %1").arg(FromText(kHeightUM.Unit(metric))));
  CurveList list(document);
  for (std::size_t i = 0; i < kShownForm; ++i) {
    const auto kind = static_cast<ProfileKind>(i);
    if (!shown[i] || !document.profiles.Has(kind)) continue;
    list.Add(document.profiles.View(kind), NameOf(document, kind), CurveColour(kColours[i], graph.palette()),
             kind == ProfileKind::kWaviness ? 2.0 : 0.0);
  }
  if (list.curves.empty() && !document.profiles.primaryRange && document.profiles.Has(ProfileKind::kRaw)) {
    // Nothing could be computed: what was measured is seen.
    list.Add(document.profiles.View(ProfileKind::kRaw), NameOf(document, ProfileKind::kRaw),
             CurveColour(kColours[0], graph.palette()), 0.0);
  }
  // Held until the graph has taken the heights over.
  const bool hasRest = HasHeightsBeside(shown) && !list.curves.empty();
  const std::vector<double> beside = hasRest ? HeightsBeside(document) : std::vector<double>();
  if (!beside.empty()) list.AddBeside(document, beside, graph.palette());
  const Profile form = RemovedForm(document);
  if (shown[kShownForm] && form.range.count > 0) {
    list.Add(form, "Form: " + FromText(FormDescription(document)), graph.palette().color(QPalette::Text), kFormWidth);
    // So that what it lies on can be seen.
    list.curves.back().style = Qt::DashLine;
  }
  SteepPart steep;
  const auto steepKind = SteepKind(shown);
  if (display.ShowExtremeSlopes && steepKind && document.profiles.Has(*steepKind)) {
    const Profile profile = document.profiles.View(*steepKind);
    steep = FindSteepPart(profile.Heights(), profile.spacingUM, display.ExtremeSlopePlotDegrees);
    list.Add(profile, steep.heightsUM,
             EngineText(SteepCaption(*steepKind, display.ExtremeSlopePlotDegrees, steep.percent)),
             graph.palette().color(QPalette::Text), kSteepWidth);
    list.curves.back().isOverlay = true;
  }
  MarkStretches(graph, document, kLengthMM.Factor(metric));
  SetGrid(graph, display, heightFactor);
  CClickableProfileGraph::WholeView whole{.heightsInLength = metric ? kMicrometresPerMillimetre : kMicroinchesPerInch};
  if (display.ProfileAutoScale || !(display.ProfileYMaxUM > display.ProfileYMinUM)) {
    whole.hasEqualScales = display.Profile11AspectRatio;
  } else {
    whole.heights = QCPRange(display.ProfileYMinUM * heightFactor, display.ProfileYMaxUM * heightFactor);
  }
  // What was not computed over stays in view.
  const double lastMM = (document.profiles.pointCount - 1) * document.profiles.spacingUM * kMillimetresPerMicrometre;
  if (lastMM > 0.0) whole.record = QCPRange(0.0, kLengthMM.Shown(lastMM, metric));
  whole.isOverStretch = IsOverStretch(document);
  graph.SetCurves(list.curves, whole);
  const bool hasFeatures = ChosenEdition(document.settings.analysis) != EditionChoice::k1997;
  if (display.ShowFeatures && hasFeatures && steepKind) DrawFeatures(graph, document, *steepKind);
  if (view == ViewAfter::kWhole) graph.StartAnew();
  if (view == ViewAfter::kSameWithRest) graph.HoldHeights();
  graph.replot();
}

}  // namespace texturon
