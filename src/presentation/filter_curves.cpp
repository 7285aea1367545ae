// SPDX-License-Identifier: Apache-2.0

#include "presentation/filter_curves.h"

#include <algorithm>
#include <cmath>

#include "signal/filter/filter_contract.h"
#include "signal/filter/filter_transmission.h"
#include "signal/filter/spline_filter.h"

namespace texturon {
namespace {

constexpr std::size_t kPoints = 201;
/// How far the wavelengths go beyond the cutoffs: there all but the last percent is passed, or stopped.
constexpr double kMargin = 8.0;

double LongWaveShare(const Document& document, double wavelengthMM) {
  const AnalysisSettings& settings = document.AnalysedBy();
  const bool isSpline = settings.FilterType == kFilterSplineGaussian || settings.FilterType == kFilterRobustGaussian;
  if (!isSpline) return GaussianTransmission(settings.LcCutoffMM, wavelengthMM);
  return SplineTransmission(settings.LcCutoffMM, settings.SplineTension, document.profiles.residualSpacingUM,
                            wavelengthMM);
}

}  // namespace

std::optional<FilterCurves> FilterCurvesOf(const Document& document) {
  const AnalysisSettings& settings = document.AnalysedBy();
  const ProfileSet& profiles = document.profiles;
  const double cutoffMM = settings.LcCutoffMM;
  const double spacingUM = profiles.residualSpacingUM;
  const bool isKnown = settings.FilterType >= kFilterGaussian && settings.FilterType <= kFilterRobustGaussian;
  if (!profiles.evaluationRange || !isKnown || !(cutoffMM > 0.0) || !SpacingAllowsCutoff(spacingUM, cutoffMM))
    return std::nullopt;
  FilterCurves curves{.cutoffsMM = {cutoffMM}};
  if (profiles.shortCutoffMM) curves.cutoffsMM.push_back(*profiles.shortCutoffMM);
  if (settings.FilterType == kFilterIso13565) curves.remark = "Gaussian of either step";
  if (settings.FilterType == kFilterRobustGaussian) curves.remark = "without robust weights";

  const auto [shortest, longest] = std::minmax_element(curves.cutoffsMM.begin(), curves.cutoffsMM.end());
  // Shorter waves than two points cannot be told apart.
  const double firstMM = std::max(*shortest / kMargin, 2.0 * spacingUM * kMillimetresPerMicrometre);
  const double ratio = *longest * kMargin / firstMM;
  for (std::size_t i = 0; i < kPoints; ++i) {
    const double share = static_cast<double>(i) / static_cast<double>(kPoints - 1);
    const double wavelengthMM = firstMM * std::pow(ratio, share);
    double primary = 100.0;
    if (profiles.shortCutoffMM) {
      primary *= SplineTransmission(*profiles.shortCutoffMM, kGaussianLikeTension, spacingUM, wavelengthMM);
      curves.primary.push_back(primary);
    }
    const double toWaviness = LongWaveShare(document, wavelengthMM);
    curves.wavelengthMM.push_back(wavelengthMM);
    curves.waviness.push_back(primary * toWaviness);
    curves.roughness.push_back(primary * (1.0 - toWaviness));
  }
  return curves;
}

}  // namespace texturon
