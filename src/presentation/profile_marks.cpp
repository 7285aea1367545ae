// SPDX-License-Identifier: Apache-2.0

#include "presentation/profile_marks.h"

#include <numbers>
#include <optional>

#include "base/elementary.h"
#include "base/number_text.h"
#include "base/quantity.h"

namespace texturon {
namespace {

constexpr double kMostSamplingLengths = 200.0;

class MarkList {
public:
  void Add(MarkedStretch::Kind kind, double firstUM, double lastUM) {
    if (lastUM <= firstUM) return;
    marks.stretches.push_back({kind, firstUM * kMillimetresPerMicrometre, lastUM * kMillimetresPerMicrometre});
  }

  ProfileMarks marks;
};

/// Height of a profile at the sample next to a place; nothing outside its range.
std::optional<double> HeightAt(const Profile& profile, double xMM) {
  const std::int32_t index = StepsInLength(xMM, profile.spacingUM);
  if (index < profile.range.first || index > profile.range.last) return std::nullopt;
  return profile.samples[static_cast<std::size_t>(index)];
}

/// Two values and their difference.
std::string Pair(const std::string& name, const std::string& first, const std::string& second,
                 const std::string& difference) {
  return name + "1 " + first + "  " + name + "2 " + second + "  d" + name + " " + difference;
}

std::string SlopeText(double riseUM, double runMM) {
  const double degrees = Atan(riseUM * kMillimetresPerMicrometre / runMM) * 180.0 / std::numbers::pi;
  return "slope " + ReadoutText(degrees, 4) + "\xB0";
}

}  // namespace

std::optional<IndexRange> HeededExclusion(const Document& document) {
  const AnalysisResults& results = document.results;
  if (!results.request || results.request->scope.allDataForForm) return std::nullopt;
  if (results.formApplied == kNoFormApplied || !FormOf(results.formGeometry).heedsExclusion) return std::nullopt;
  return results.request->scope.exclusion;
}

ProfileMarks MarksOf(const Document& document) {
  const ProfileSet& profiles = document.profiles;
  MarkList list;
  if (!profiles.computeRange) return {};
  using Kind = MarkedStretch::Kind;
  const IndexRange& computed = *profiles.computeRange;
  list.Add(Kind::kNotComputed, 0.0, computed.first * profiles.spacingUM);
  list.Add(Kind::kNotComputed, computed.last * profiles.spacingUM, (profiles.pointCount - 1) * profiles.spacingUM);
  if (const auto excluded = HeededExclusion(document)) {
    list.Add(Kind::kExcluded, excluded->first * profiles.spacingUM, excluded->last * profiles.spacingUM);
  }
  if (!profiles.evaluationRange) return list.marks;
  const IndexRange& evaluated = *profiles.evaluationRange;
  const double spacingUM = profiles.residualSpacingUM;
  list.Add(Kind::kDiscarded, computed.first * spacingUM, evaluated.first * spacingUM);
  list.Add(Kind::kDiscarded, evaluated.last * spacingUM, computed.last * spacingUM);
  const double stepMM = document.AnalysedBy().LcCutoffMM;
  const double firstMM = evaluated.first * spacingUM * kMillimetresPerMicrometre;
  const double lastMM = evaluated.last * spacingUM * kMillimetresPerMicrometre;
  if (stepMM > 0.0 && (lastMM - firstMM) / stepMM <= kMostSamplingLengths) {
    for (int i = 1; firstMM + i * stepMM < lastMM; ++i) list.marks.samplingLengthEndsMM.push_back(firstMM + i * stepMM);
  }
  return list.marks;
}

std::string CursorReadout(const Document& document, ProfileKind kind, const CursorPlaces& places) {
  const bool metric = document.settings.display.Metric;
  std::string text;
  if (places.hasX) {
    const auto [x1, x2] = places.xMM;
    text += Pair("X", LengthReadout(x1, metric), LengthReadout(x2, metric), LengthReadout(x2 - x1, metric));
    if (document.profiles.Has(kind)) {
      const Profile profile = document.profiles.View(kind);
      const auto z1 = HeightAt(profile, x1);
      const auto z2 = HeightAt(profile, x2);
      if (z1 && z2)
        text += "    " +
                Pair("Z", HeightReadout(*z1, metric), HeightReadout(*z2, metric), HeightReadout(*z2 - *z1, metric));
      if (z1 && z2 && x1 != x2) text += "    " + SlopeText(*z2 - *z1, x2 - x1);
      if (z1 && z2) text += "  (" + ProfileTitle(kind) + ")";
    }
  }
  if (places.hasY) {
    if (!text.empty()) text += "    ";
    const auto [y1, y2] = places.yUM;
    text += Pair("Y", HeightReadout(y1, metric), HeightReadout(y2, metric), HeightReadout(y2 - y1, metric));
  }
  return text;
}

std::array<std::string, 4> CursorLabels(const Document& document, ProfileKind kind, const CursorPlaces& places) {
  const bool metric = document.settings.display.Metric;
  std::array<std::string, 4> labels = {
      "X1 " + LengthReadout(places.xMM.first, metric), "X2 " + LengthReadout(places.xMM.second, metric),
      "Y1 " + HeightReadout(places.yUM.first, metric), "Y2 " + HeightReadout(places.yUM.second, metric)};
  if (!document.profiles.Has(kind)) return labels;
  const Profile profile = document.profiles.View(kind);
  if (const auto z = HeightAt(profile, places.xMM.first)) labels[0] += "\nZ1 " + HeightReadout(*z, metric);
  if (const auto z = HeightAt(profile, places.xMM.second)) labels[1] += "\nZ2 " + HeightReadout(*z, metric);
  return labels;
}

}  // namespace texturon
