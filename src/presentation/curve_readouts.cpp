// SPDX-License-Identifier: Apache-2.0

#include "presentation/curve_readouts.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/quantity.h"
#include "parameters/height_curve.h"

namespace texturon {
namespace {

constexpr BearingChoice kBearingChoices[] = {
    {ProfileKind::kRoughness, true, false}, {ProfileKind::kRoughness, false, true},
    {ProfileKind::kRoughness, true, true},  {ProfileKind::kPrimary, true, false},
    {ProfileKind::kPrimary, false, true},   {ProfileKind::kPrimary, true, true},
};

std::string PercentText(double percent) {
  return ReadoutText(percent, 2) + " %";
}

std::string CountOf(const char* kind, const std::vector<Motif>& motifs, double spacingUM, bool metric) {
  std::string text = IntegerText(static_cast<std::int64_t>(motifs.size())) + " " + kind + " motifs";
  if (motifs.empty()) return text;
  const double steps = static_cast<double>(motifs.back().lastPeak - motifs.front().firstPeak);
  const double meanMM = steps * spacingUM * kMillimetresPerMicrometre / static_cast<double>(motifs.size());
  return text + ", mean length " + LengthReadout(meanMM, metric);
}

}  // namespace

BearingChoice BearingChoiceOf(const DisplaySettings& display) {
  const auto type = static_cast<std::size_t>(display.BrcAdfType);
  return type < std::size(kBearingChoices) ? kBearingChoices[type] : BearingChoice();
}

std::span<const double> BearingHeights(const Document& document) {
  const AnalysisResults& results = document.results;
  const bool isPrimary = BearingChoiceOf(document.settings.display).profile == ProfileKind::kPrimary;
  return isPrimary ? results.primaryCurve.heightsUM : results.roughnessCurve.heightsUM;
}

std::string BearingReadout(const Document& document, double ratioPercent, double heightUM) {
  const std::span<const double> sorted = BearingHeights(document);
  if (sorted.empty()) return {};
  const bool metric = document.settings.display.Metric;
  const double ratio = std::clamp(ratioPercent, 0.0, 100.0);
  return "At " + PercentText(ratio) + ": " + HeightReadout(HeightAtRatio(sorted, ratio), metric) + "    At " +
         HeightReadout(heightUM, metric) + ": " + PercentText(RatioAtHeight(sorted, heightUM));
}

std::vector<std::string> ProbabilityTexts(const Document& document) {
  const auto& fit = document.results.probability;
  if (!fit) return {};
  const bool metric = document.settings.display.Metric;
  std::vector<std::string> texts;
  if (fit->plateau) texts.push_back("Rpq = " + HeightReadout(std::abs(fit->plateau->slopeUM), metric));
  if (fit->valley) texts.push_back("Rvq = " + HeightReadout(std::abs(fit->valley->slopeUM), metric));
  if (fit->crossingPercent) texts.push_back("Rmq = " + PercentText(*fit->crossingPercent));
  return texts;
}

std::optional<std::size_t> NearestHarmonic(const Spectrum& spectrum, double wavelengthMM) {
  if (spectrum.wavelengthMM.size() < 2 || !(wavelengthMM > 0.0)) return std::nullopt;
  const auto last = static_cast<double>(spectrum.wavelengthMM.size() - 1);
  const double place = std::clamp(spectrum.wavelengthMM[1] / wavelengthMM, 1.0, last);
  const double below = std::floor(place);
  // Nearest by ratio: the border between k and k + 1 lies at their geometric mean.
  const bool isAbove = place > std::sqrt(below * (below + 1.0));
  return static_cast<std::size_t>(std::min(isAbove ? below + 1.0 : below, last));
}

std::string SpectrumReadout(const Document& document, std::size_t harmonic) {
  const Spectrum& spectrum = document.profiles.spectrum;
  if (harmonic < 1 || harmonic >= spectrum.amplitudeUM.size()) return {};
  const bool metric = document.settings.display.Metric;
  return "Harmonic " + IntegerText(static_cast<std::int64_t>(harmonic)) + ": wavelength " +
         LengthReadout(spectrum.wavelengthMM[harmonic], metric) + ", amplitude " +
         HeightReadout(spectrum.amplitudeUM[harmonic], metric);
}

ShownMotifs ShownMotifsOf(const AnalysisSettings& settings) {
  if (settings.MotifRProfile == settings.MotifWProfile) return {};
  return {settings.MotifRProfile, settings.MotifWProfile};
}

std::string MotifReadout(const Document& document) {
  const ProfileSet& profiles = document.profiles;
  if (!document.profiles.primaryRange) return {};
  const bool metric = document.settings.display.Metric;
  const ShownMotifs shown = ShownMotifsOf(document.settings.analysis);
  const double spacingUM = profiles.residualSpacingUM;
  std::string text;
  if (shown.roughness) text = CountOf("roughness", profiles.roughnessMotifs, spacingUM, metric);
  if (shown.waviness) {
    text += (text.empty() ? "" : "    ") + CountOf("waviness", profiles.wavinessMotifs, spacingUM, metric);
  }
  return text;
}

}  // namespace texturon
