#include "ui/profile_plot.h"

#include <vector>

#include "core/units.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// By ProfileKind: what is usually seen together differs most.
constexpr int kColours[] = {3, 4, 0, 1, 2, 5, 6};

QString NameOf(const Document& document, ProfileKind kind) {
  const AnalysisSettings& settings = document.settings.analysis;
  const double ballMM = kind == ProfileKind::kOpening ? settings.OpeningRadiusForWcvx : settings.ClosingRadiusForWvoid;
  return FromText(ProfileTitle(kind, ballMM));
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
  graph.SetCurves(curves, showsAll);
}

}  // namespace texturon
