// SPDX-License-Identifier: Apache-2.0

#include "presentation/cautions.h"

#include "base/quantity.h"

namespace texturon {

std::string CautionOf(const Document& document) {
  constexpr double kRounding = 1.0 - 1e-9;
  const auto& evaluated = document.profiles.evaluationRange;
  if (!evaluated) return {};
  const double lengthMM = evaluated->count * document.profiles.residualSpacingUM * kMillimetresPerMicrometre;
  const double samplingMM = document.AnalysedBy().LcCutoffMM;
  if (!(lengthMM < samplingMM * kRounding)) return {};
  const bool metric = document.settings.display.Metric;
  return "Less than one sampling length evaluated: " + LengthText(lengthMM, metric) + " of " +
         LengthText(samplingMM, metric) + ".";
}

}  // namespace texturon
