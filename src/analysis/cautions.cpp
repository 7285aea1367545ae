// SPDX-License-Identifier: Apache-2.0

#include "analysis/cautions.h"

#include "base/number_text.h"
#include "base/quantity.h"
#include "settings/setting_choices.h"

namespace texturon {
namespace {

std::string FormName(std::int32_t number) {
  const std::vector<SettingChoice> choices = ChoicesOf(*FindSetting("ANALYSIS", "FormRemovalType")->key);
  const auto choice = ChoiceOf(choices, number);
  return choice ? choices[*choice].name : IntegerText(number);
}

std::string ShortLength(const Document& document) {
  constexpr double kRounding = 1.0 - 1e-9;
  const double lengthMM =
      document.profiles.evaluationRange->count * document.profiles.residualSpacingUM * kMillimetresPerMicrometre;
  const double samplingMM = document.AnalysedBy().LcCutoffMM;
  if (!(lengthMM < samplingMM * kRounding)) return {};
  const bool metric = document.settings.display.Metric;
  return "Less than one sampling length evaluated: " + LengthText(lengthMM, metric) + " of " +
         LengthText(samplingMM, metric) + ".";
}

}  // namespace

std::vector<Caution> CautionsOf(const Document& document) {
  std::vector<Caution> cautions;
  if (!document.profiles.evaluationRange) return cautions;
  const AnalysisResults& results = document.results;
  if (results.formApplied == kNoFormApplied && results.formRequested != kFormNone) {
    cautions.push_back({"The form asked for (" + FormName(results.formRequested) +
                            ") could not be fitted: the mean is taken out in its place.",
                        ", form not removed"});
  }
  if (std::string sentence = ShortLength(document); !sentence.empty()) {
    cautions.push_back({std::move(sentence), ", short profile"});
  }
  return cautions;
}

}  // namespace texturon
