#include "core/profile_marks.h"

#include <cmath>
#include <numbers>
#include <optional>

#include "core/number_text.h"
#include "core/units.h"

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

/// Writes two values and their difference.
std::string Pair(const char* name, double first, double second, int decimals, const char* unit) {
  return std::string(name) + " " + FixedText(first, decimals) + ", " + FixedText(second, decimals) + "  d" + name +
         " " + FixedText(second - first, decimals) + " " + unit;
}

std::string SlopeText(double riseUM, double runMM) {
  const double degrees = std::atan(riseUM * kMillimetresPerMicrometre / runMM) * 180.0 / std::numbers::pi;
  return "slope " + FixedText(degrees, 4) + "\xB0";
}

}  // namespace

ProfileMarks MarksOf(const Document& document) {
  const ProfileSet& profiles = document.profiles;
  MarkList list;
  if (!document.results.formRemoved) return {};
  using Kind = MarkedStretch::Kind;
  const IndexRange& computed = profiles.computeRange;
  list.Add(Kind::kNotComputed, 0.0, computed.first * profiles.spacingUM);
  list.Add(Kind::kNotComputed, computed.last * profiles.spacingUM, (profiles.pointCount - 1) * profiles.spacingUM);
  if (document.excludeSet) {
    list.Add(Kind::kExcluded, document.excludeFirst * profiles.spacingUM, document.excludeLast * profiles.spacingUM);
  }
  if (!profiles.wavinessComputed) return list.marks;
  const IndexRange& evaluated = profiles.evaluationRange;
  const double spacingUM = profiles.residualSpacingUM;
  list.Add(Kind::kDiscarded, computed.first * spacingUM, evaluated.first * spacingUM);
  list.Add(Kind::kDiscarded, evaluated.last * spacingUM, computed.last * spacingUM);
  const double stepMM = document.settings.analysis.LcCutoffMM;
  const double firstMM = evaluated.first * spacingUM * kMillimetresPerMicrometre;
  const double lastMM = evaluated.last * spacingUM * kMillimetresPerMicrometre;
  if (stepMM > 0.0 && (lastMM - firstMM) / stepMM <= kMostSamplingLengths) {
    for (int i = 1; firstMM + i * stepMM < lastMM; ++i) list.marks.samplingLengthEndsMM.push_back(firstMM + i * stepMM);
  }
  return list.marks;
}

std::string CursorReadout(const Document& document, ProfileKind kind, const CursorPlaces& places) {
  const bool metric = document.settings.display.Metric;
  const double length = metric ? 1.0 : kInchesPerMillimetre;
  const double height = metric ? 1.0 : kMicroinchesPerMicrometre;
  const char* const heightUnit = metric ? "\xB5m" : "\xB5in";
  std::string text;
  if (places.hasX) {
    const auto [x1, x2] = places.xMM;
    text += Pair("X", x1 * length, x2 * length, metric ? 4 : 5, metric ? "mm" : "in");
    if (HasProfile(document, kind)) {
      const Profile profile = document.profiles.View(kind);
      const auto z1 = HeightAt(profile, x1);
      const auto z2 = HeightAt(profile, x2);
      if (z1 && z2) text += "    " + Pair("Z", *z1 * height, *z2 * height, metric ? 4 : 2, heightUnit);
      if (z1 && z2 && x1 != x2) text += "    " + SlopeText(*z2 - *z1, x2 - x1);
    }
  }
  if (places.hasY) {
    if (!text.empty()) text += "    ";
    text += Pair("Y", places.yUM.first * height, places.yUM.second * height, metric ? 4 : 2, heightUnit);
  }
  return text;
}

}  // namespace texturon
