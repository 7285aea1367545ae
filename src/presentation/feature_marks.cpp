// SPDX-License-Identifier: Apache-2.0

#include "presentation/feature_marks.h"

#include <algorithm>
#include <unordered_set>

#include "base/units.h"
#include "parameters/edition2021/crossing_parts.h"
#include "parameters/edition2021/feature_segments.h"

namespace texturon {

FeatureMarks FeatureMarksOf(const Document& document, ProfileKind kind, bool ofHills) {
  constexpr std::size_t kMostShown = 5000;
  FeatureMarks marks;
  const bool hasRows =
      kind == ProfileKind::kPrimary || kind == ProfileKind::kWaviness || kind == ProfileKind::kRoughness;
  if (!hasRows || !document.profiles.Has(kind)) return marks;
  const Profile profile = document.profiles.View(kind);
  const std::span<const double> z = profile.Heights();
  const StandardSettings& standard = document.settings.analysis.standard;
  const auto sections = static_cast<std::size_t>(std::max(standard.Sections, 0));
  const auto heights = MeanSectionHeights(z, FindCrossingParts(z), sections);
  if (!heights) return marks;

  std::vector<double> turned(z.begin(), z.end());
  const double sign = ofHills ? -1.0 : 1.0;
  for (double& height : turned) height *= sign;
  const std::vector<Dale> dales = FindDales(turned);
  const DaleMeasure measure(turned, profile.spacingUM);
  std::vector<Dale> kept = dales;
  PruneDales(kept, measure, FeatureAttribute::kLocalDepth,
             standard.PruningPercent * 0.01 * (heights->peak + heights->pit));

  const double spacingMM = profile.spacingUM * kMillimetresPerMicrometre;
  const auto place = [&](double point) { return (profile.range.first + point) * spacingMM; };
  std::unordered_set<std::size_t> keptPits;
  for (const Dale& dale : kept) {
    keptPits.insert(dale.pit.first);
    const double start = place(dale.Lower().Place());
    const double width = measure.Of(dale, FeatureAttribute::kWidth);
    const double end = dale.lowerIsLeft ? start + width : start - width;
    marks.levels.push_back({std::min(start, end), std::max(start, end), sign * dale.Lower().height});
  }
  const bool showsPruned = dales.size() <= kMostShown;
  for (const Dale& dale : dales) {
    const bool isKept = keptPits.contains(dale.pit.first);
    if (isKept || showsPruned) marks.extremes.push_back({place(dale.pit.Place()), sign * dale.pit.height, isKept});
  }
  return marks;
}

}  // namespace texturon
