// SPDX-License-Identifier: Apache-2.0

#include "presentation/filter_curves.h"

#include <algorithm>

#include "base/elementary.h"
#include "settings/filter_table.h"
#include "signal/filter/filter_contract.h"

namespace texturon {
namespace {

constexpr std::size_t kPoints = 201;
/// How far the wavelengths go beyond the cutoffs: there all but the last percent is passed, or stopped.
constexpr double kMargin = 8.0;

}  // namespace

std::optional<FilterCurves> FilterCurvesOf(const Document& document) {
  const AnalysisSettings& settings = document.AnalysedBy();
  const ProfileSet& profiles = document.profiles;
  const double cutoffMM = settings.LcCutoffMM;
  const double spacingUM = profiles.residualSpacingUM;
  const FilterRow* const longWaves = LongWaveFilter(settings);
  if (!profiles.evaluationRange || longWaves == nullptr || !(cutoffMM > 0.0) ||
      !SpacingAllowsCutoff(spacingUM, cutoffMM)) {
    return std::nullopt;
  }
  const FilterSetup longSetup{.spacingUM = spacingUM, .cutoffMM = cutoffMM, .tension = settings.SplineTension};
  const FilterRow& shortWaves = ShortWaveFilter(settings);
  const FilterSetup shortSetup{.spacingUM = spacingUM, .cutoffMM = profiles.shortCutoffMM.value_or(0.0)};
  FilterCurves curves{.cutoffsMM = {cutoffMM}, .remark = std::string(longWaves->transmissionRemark)};
  if (profiles.shortCutoffMM) curves.cutoffsMM.push_back(*profiles.shortCutoffMM);
  const auto [shortest, longest] = std::minmax_element(curves.cutoffsMM.begin(), curves.cutoffsMM.end());
  // Shorter waves than two points cannot be told apart.
  const double firstMM = std::max(*shortest / kMargin, 2.0 * spacingUM * kMillimetresPerMicrometre);
  const double ratio = *longest * kMargin / firstMM;
  for (std::size_t i = 0; i < kPoints; ++i) {
    const double share = static_cast<double>(i) / static_cast<double>(kPoints - 1);
    const double wavelengthMM = firstMM * Pow(ratio, share);
    double primary = 100.0;
    if (profiles.shortCutoffMM) {
      primary *= shortWaves.transmission(shortSetup, wavelengthMM);
      curves.primary.push_back(primary);
    }
    const double toWaviness = longWaves->transmission(longSetup, wavelengthMM);
    curves.wavelengthMM.push_back(wavelengthMM);
    curves.waviness.push_back(primary * toWaviness);
    curves.roughness.push_back(primary * (1.0 - toWaviness));
  }
  return curves;
}

}  // namespace texturon
