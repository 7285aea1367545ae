// SPDX-License-Identifier: Apache-2.0

#include "settings/cutoff_choices.h"

#include <algorithm>

namespace texturon {
namespace {

// The steps of ISO 3274.
constexpr double kLongMM[] = {0.08, 0.25, 0.8, 2.5, 8.0};
constexpr double kShortMM[] = {0.0, 0.0025, 0.008, 0.025};

struct CutoffFields {
  double AnalysisSettings::*inForce;
  double AnalysisSettings::*own;
  bool AnalysisSettings::*isStandard;
};

constexpr CutoffFields FieldsOf(Cutoff cutoff) {
  if (cutoff == Cutoff::kLong) {
    return {&AnalysisSettings::LcCutoffMM, &AnalysisSettings::UserLcCutoffMM, &AnalysisSettings::StandardLcCutoff};
  }
  return {&AnalysisSettings::LsCutoffMM, &AnalysisSettings::UserLsCutoffMM, &AnalysisSettings::StandardLsCutoff};
}

}  // namespace

std::span<const double> StandardCutoffsMM(Cutoff cutoff) {
  if (cutoff == Cutoff::kLong) return kLongMM;
  return kShortMM;
}

std::size_t ChosenCutoff(const AnalysisSettings& settings, Cutoff cutoff) {
  const CutoffFields fields = FieldsOf(cutoff);
  const std::span<const double> standard = StandardCutoffsMM(cutoff);
  if (!(settings.*fields.isStandard)) return standard.size();
  const auto found = std::find(standard.begin(), standard.end(), settings.*fields.inForce);
  return static_cast<std::size_t>(found - standard.begin());
}

void ChooseCutoff(AnalysisSettings& settings, Cutoff cutoff, std::size_t index) {
  const CutoffFields fields = FieldsOf(cutoff);
  const std::span<const double> standard = StandardCutoffsMM(cutoff);
  settings.*fields.isStandard = index < standard.size();
  settings.*fields.inForce = index < standard.size() ? standard[index] : settings.*fields.own;
}

void SettleOwnCutoffs(AnalysisSettings& settings) {
  for (const Cutoff cutoff : {Cutoff::kLong, Cutoff::kShort}) {
    if (ChosenCutoff(settings, cutoff) < StandardCutoffsMM(cutoff).size()) continue;
    const CutoffFields fields = FieldsOf(cutoff);
    settings.*fields.own = settings.*fields.inForce;
    settings.*fields.isStandard = false;
  }
}

void FollowOwnCutoffs(AnalysisSettings& settings) {
  for (const Cutoff cutoff : {Cutoff::kLong, Cutoff::kShort}) {
    const CutoffFields fields = FieldsOf(cutoff);
    if (!(settings.*fields.isStandard)) settings.*fields.inForce = settings.*fields.own;
  }
}

}  // namespace texturon
