// SPDX-License-Identifier: Apache-2.0

#include "analysis/pipeline.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "analysis/compute_range.h"
#include "analysis/curve_step.h"
#include "analysis/filter_step.h"
#include "analysis/form_step.h"
#include "analysis/spectrum_step.h"
#include "base/number_text.h"
#include "base/units.h"
#include "parameters/driver.h"
#include "parameters/edition2021/edition_list.h"
#include "platform/busy_scope.h"
#include "platform/platform.h"
#include "settings/filter_table.h"

namespace texturon {
namespace {

/// The heights that the profile-element finder was given last, one a line. A file that cannot be written is done
/// without.
void WriteTraceFile(std::span<const double> heightsUM, const Environment& environment) {
  std::string text;
  text.reserve(heightsUM.size() * 12);
  for (const double height : heightsUM) {
    AppendFixed(text, height, 6);
    text += "\r\n";
  }
  (void)WriteSideFile(environment.traceFile, text);
}

/// Puts an envelope of the evaluation range into its place in the record; without one there is no such profile.
void KeepEnvelope(Samples& profile, Samples&& envelopeUM, const ProfileSet& profiles) {
  profile = std::move(envelopeUM);
  if (profile.empty() || profile.size() == profiles.raw.size()) return;
  Samples whole(profiles.raw.size(), 0.0);
  std::copy(profile.begin(), profile.end(), whole.begin() + profiles.evaluationRange->first);
  profile = std::move(whole);
}

/// That of the filter that took the form out: longer waves are not in the waviness.
std::optional<double> WavinessLengthMM(const AnalysisSettings& settings) {
  const auto cutoffMM = RequestedForm(settings).filterCutoffMM;
  return cutoffMM != nullptr ? std::optional(settings.*cutoffMM) : std::nullopt;
}

void ComputeSelectedParameters(Document& document, Prompts& prompts, const Environment& environment) {
  ProfileSet& profiles = document.profiles;
  AnalysisResults& results = document.results;
  const auto viewIf = [&profiles](ProfileKind kind) {
    return profiles.Has(kind) ? std::optional(profiles.View(kind)) : std::nullopt;
  };
  const bool coreIsRoughness = CoreFilter(document.settings.analysis) == nullptr;
  std::optional<Samples> core;
  if (!coreIsRoughness && NeedsCoreProfile(document.catalogue)) core = CoreRoughness(document, prompts);
  std::optional<Profile> coreView;
  if (core) coreView = Profile{ProfileKind::kRoughness, *core, *profiles.evaluationRange, profiles.residualSpacingUM};
  DriverReport report =
      ComputeParameters(document.catalogue, {.settings = document.settings.analysis,
                                             .formSuppressed = viewIf(ProfileKind::kFormSuppressed),
                                             .primary = viewIf(ProfileKind::kPrimary),
                                             .waviness = viewIf(ProfileKind::kWaviness),
                                             .roughness = viewIf(ProfileKind::kRoughness),
                                             .sortedPrimary = results.primaryCurve.heightsUM,
                                             .sortedRoughness = results.roughnessCurve.heightsUM,
                                             .wantsCoreRoughness = document.wanted.coreRoughness,
                                             .wantsEnvelopes = document.wanted.envelopes,
                                             .coreRoughness = coreView,
                                             .coreIsRoughness = coreIsRoughness,
                                             .wavinessLengthMM = WavinessLengthMM(document.settings.analysis)});
  results.coreRoughness = report.coreRoughness;
  KeepEnvelope(profiles.closing, std::move(report.closingUM), profiles);
  KeepEnvelope(profiles.opening, std::move(report.openingUM), profiles);
  results.probability = report.probability;
  KeepMotifs(profiles, report.motifs);
  if (!document.quietMode) {
    for (const std::string& message : report.messages) prompts.ShowMessage(message);
  }
  if (report.elementHeights && WritesTraceFile(document, environment))
    WriteTraceFile(*report.elementHeights, environment);
}

void ComputeRatioRows(Document& document) {
  const AnalysisSettings& settings = document.settings.analysis;
  AnalysisResults& results = document.results;
  results.primaryMaterialRatios = ComputeMaterialRatios(results.primaryCurve.heightsUM, settings.primaryMaterialRatios);
  results.roughnessMaterialRatios =
      ComputeMaterialRatios(results.roughnessCurve.heightsUM, settings.roughnessMaterialRatios);
  results.primaryHtps = ComputeHtps(results.primaryCurve.heightsUM, settings.primaryHtps);
  results.roughnessHtps = ComputeHtps(results.roughnessCurve.heightsUM, settings.roughnessHtps);
}

/// Says where the record is coarser than its setting class allows.
void NoticeOfClass(const Document& document, Prompts& prompts) {
  const StandardSettings& standard = document.settings.analysis.standard;
  const std::string forClass = standard.Class.empty() ? "" : " of " + standard.Class;
  const double spacingUM = document.profiles.spacingUM;
  const double tipUM = document.profiles.tipRadiusMM * kMicrometresPerMillimetre;
  constexpr double kRounding = 1.0 + 1e-9;
  const auto say = [&](std::string_view what, double value, double most) {
    prompts.Notice("The " + std::string(what) + " of " + SignificantText(value, 4) + " \xB5m is above the " +
                   ShortestText(most) + " \xB5m" + forClass + ".");
  };
  if (standard.MostSpacingUM > 0.0 && spacingUM > standard.MostSpacingUM * kRounding) {
    say("point spacing", spacingUM, standard.MostSpacingUM);
  }
  if (standard.MostTipRadiusUM > 0.0 && tipUM > standard.MostTipRadiusUM * kRounding) {
    say("tip radius", tipUM, standard.MostTipRadiusUM);
  }
}

}  // namespace

bool WritesTraceFile(const Document& document, const Environment& environment) {
  return document.writesTraceFile && !environment.traceFile.empty();
}

namespace {

ComputeOutcome RunSteps(Document& document, Prompts& prompts, const Environment& environment) {
  if (document.profiles.IsEmpty()) return ComputeOutcome::kNoProfile;
  ApplyWholeCutoffs(document);
  const RangeOrMessage resolved = ResolveComputeRange(document, prompts);
  if (const auto* message = std::get_if<std::string_view>(&resolved)) {
    prompts.ShowMessage(*message);
    return ComputeOutcome::kRefused;
  }
  const auto& compute = std::get<ComputeRange>(resolved);

  document.results = {};
  ProfileSet& profiles = document.profiles;
  profiles.computeRange = compute.range;
  profiles.primaryRange.reset();
  profiles.evaluationRange.reset();
  profiles.shortCutoffMM.reset();
  profiles.longCutoffMM.reset();
  profiles.spectrum = {};
  {
    const BusyScope busy(prompts, document.quietMode, true);
    RemoveForm(document, compute, prompts);
  }
  const bool hasPrimary = FilterStep(document, prompts);
  // Not earlier: the steps write settings that follow from others.
  document.results.request = document.Request();
  if (!hasPrimary) return ComputeOutcome::kEmptyPrimary;
  NoticeOfClass(document, prompts);
  if (const auto missing = FindMissingSections(document)) {
    prompts.ShowMessage(missing->Text(document.settings.display.Metric));
    return ComputeOutcome::kTooShort;
  }
  ComputeSpectrum(document);
  ComputeHeightCurves(document);
  ComputeSelectedParameters(document, prompts, environment);
  ComputeRatioRows(document);
  ComputeMissingCurves(document);
  return ComputeOutcome::kDone;
}

}  // namespace

ComputeOutcome Compute(Document& document, Prompts& prompts, const Environment& environment) {
  const ComputeOutcome outcome = RunSteps(document, prompts, environment);
  if (outcome != ComputeOutcome::kDone) FillEmpty(document.profiles);
  return outcome;
}

}  // namespace texturon
