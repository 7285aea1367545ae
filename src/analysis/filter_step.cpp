// SPDX-License-Identifier: Apache-2.0

#include "analysis/filter_step.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/compute_range.h"
#include "base/number_text.h"
#include "base/quantity.h"
#include "base/units.h"
#include "parameters/height_statistics.h"
#include "settings/filter_table.h"
#include "signal/mean.h"

namespace texturon {
namespace {

template <typename Values>
auto Part(Values& values, const IndexRange& range) {
  return std::span(values).subspan(static_cast<std::size_t>(range.first), static_cast<std::size_t>(range.count));
}

std::string ProgressTitle(const FilterRow& filter, double cutoffMM) {
  constexpr double kShownInMicrometresBelowMM = 0.08;
  const bool inMicrometres = cutoffMM < kShownInMicrometresBelowMM;
  const double shown = inMicrometres ? cutoffMM * kMicrometresPerMillimetre : cutoffMM;
  return FixedText(shown, 3) + (inMicrometres ? " \xB5m " : " mm ") + std::string(filter.progressTitle);
}

/// Room for a mean line over a range. A filter that does not reach all of it finds zeros there.
void MakeRoomForLine(Samples& line, const ProfileSet& profiles, const IndexRange& range, const FilterRow* filter) {
  const bool isWritten = filter == nullptr || filter->reachesAll;
  MakeRoom(line, profiles.pointCount, isWritten ? range : IndexRange{});
}

void FilterShortWaves(Document& document) {
  ProfileSet& profiles = document.profiles;
  const AnalysisSettings& settings = document.settings.analysis;
  const IndexRange& computed = *profiles.computeRange;
  const FilterRow* const filter = settings.LsCutoffMM > 0.0 ? &ShortWaveFilter(settings) : nullptr;
  MakeRoomForLine(profiles.primary, profiles, computed, filter);
  const auto source = Part(std::as_const(profiles.formSuppressed), computed);
  const auto target = Part(profiles.primary, computed);
  if (filter != nullptr) {
    const FilterSetup setup{.spacingUM = profiles.residualSpacingUM,
                            .cutoffMM = settings.LsCutoffMM * document.cutoffDeviation.shortWave};
    const FilterRange valid = filter->run(source, target, setup);
    if (valid) {
      if (valid->count > 0) profiles.primaryRange = valid->ShiftedBy(computed.first);
      profiles.shortCutoffMM = settings.LsCutoffMM;
      return;
    }
  }
  std::copy(source.begin(), source.end(), target.begin());
  profiles.primaryRange = computed;
}

/// The mean line of the primary profile, into `line` over the primary range.
FilterRange FilterPrimary(const Document& document, const FilterRow* filter, Samples& line, Prompts& prompts) {
  const ProfileSet& profiles = document.profiles;
  const AnalysisSettings& settings = document.settings.analysis;
  if (filter == nullptr) return std::nullopt;
  const std::span<const double> z = Part(profiles.primary, *profiles.primaryRange);
  MakeRoomForLine(line, profiles, *profiles.primaryRange, filter);
  const std::span<double> w = Part(line, *profiles.primaryRange);
  FilterSetup setup{.spacingUM = profiles.residualSpacingUM,
                    .cutoffMM = settings.LcCutoffMM * document.cutoffDeviation.longWave,
                    .tension = settings.SplineTension};
  std::unique_ptr<Progress> progress;
  if (!filter->progressTitle.empty()) {
    progress = prompts.OpenProgress(ProgressTitle(*filter, settings.LcCutoffMM), "");
    setup.progress = progress.get();
  }
  std::string ending;
  setup.ending = &ending;
  const FilterRange filtered = filter->run(z, w, setup);
  if (!ending.empty()) prompts.Notice(ending);
  return filtered;
}

/// Trims both ends by the discard in force, if that takes more than the filter itself did and leaves enough. The
/// lengths of the fixed kinds are written back into the settings.
IndexRange DiscardEnds(const IndexRange& filtered, std::int32_t primaryCount, double spacingUM,
                       AnalysisSettings& settings) {
  if (settings.UserDiscardType <= kDiscardNone) return filtered;
  settings.UserDiscardLengthMM = DiscardLengthMM(settings);
  const std::int32_t discard = StepsInLength(settings.UserDiscardLengthMM, spacingUM);
  if (discard <= filtered.first || discard >= filtered.count / 2) return filtered;
  return IndexRange::FromEnds(discard, std::min(primaryCount - discard - 1, filtered.last));
}

/// The evaluation length of the settings in the middle of what the filter leaves; all of that where it is no longer.
IndexRange MiddleOf(const IndexRange& filtered, double spacingUM, const AnalysisSettings& settings) {
  if (!(settings.standard.EvaluationLengthMM > 0.0)) return filtered;
  const std::int32_t count = StepsInLength(settings.standard.EvaluationLengthMM, spacingUM);
  if (count < 1 || count >= filtered.count) return filtered;
  return IndexRange::FromCount(filtered.first + (filtered.count - count) / 2, count);
}

void UsePrimaryAsWaviness(ProfileSet& profiles) {
  profiles.waviness = profiles.primary;
  profiles.roughness.assign(profiles.primary.size(), 0.0);
  profiles.evaluationRange = profiles.primaryRange;
}

}  // namespace

bool FilterStep(Document& document, Prompts& prompts) {
  ProfileSet& profiles = document.profiles;
  AnalysisResults& results = document.results;
  if (profiles.IsEmpty()) return false;
  for (ParameterDef& row : document.catalogue.rows) {
    row.valid = false;
    row.reason = {Why::kNoProfile};
  }

  FilterShortWaves(document);
  const HeightExtremes measured = FindExtremes(profiles.raw);
  results.rawPeak = measured.highest;
  results.rawValleyDepth = -measured.lowest;
  if (!profiles.primaryRange) return false;

  const std::span<double> primary = Part(profiles.primary, *profiles.primaryRange);
  const double mean = Mean(primary);
  for (double& height : primary) height -= mean;
  const HeightExtremes extremes = FindExtremes(primary);
  results.primaryPeak = extremes.highest;
  results.primaryValleyDepth = -extremes.lowest;

  const FilterRow* const longWaves = LongWaveFilter(document.settings.analysis);
  if (const auto filtered = FilterPrimary(document, longWaves, profiles.waviness, prompts)) {
    const double spacingUM = profiles.residualSpacingUM;
    AnalysisSettings& settings = document.settings.analysis;
    const IndexRange kept = DiscardEnds(*filtered, profiles.primaryRange->count, spacingUM, settings);
    const IndexRange range = MiddleOf(kept, spacingUM, settings).ShiftedBy(profiles.primaryRange->first);
    profiles.evaluationRange = range;
    MakeRoom(profiles.roughness, profiles.pointCount, range);
    profiles.longCutoffMM = document.settings.analysis.LcCutoffMM;
    for (auto i = static_cast<std::size_t>(range.first); i <= static_cast<std::size_t>(range.last); ++i) {
      profiles.roughness[i] = profiles.primary[i] - profiles.waviness[i];
    }
  } else {
    if (!document.quietMode) prompts.ShowMessage("Waviness Not Computed - using Primary as Waviness");
    UsePrimaryAsWaviness(profiles);
  }
  return true;
}

std::string MissingSections::Text(bool metric) const {
  return "The record has room for " + IntegerText(found) + " of " + IntegerText(asked) + " sections of " +
         LengthText(lengthMM, metric) +
         (found > 0 ? "; ask for " + IntegerText(found) + (found == 1 ? " section, " : " sections, ") +
                          LengthText(found * lengthMM, metric) + " in all, to compute with them."
                    : ".");
}

std::optional<MissingSections> FindMissingSections(const Document& document) {
  const StandardSettings& standard = document.settings.analysis.standard;
  const auto& range = document.profiles.evaluationRange;
  if (!standard.CompleteSections || !(standard.EvaluationLengthMM > 0.0) || standard.Sections < 1 || !range) {
    return std::nullopt;
  }
  const double spacingUM = document.profiles.residualSpacingUM;
  if (range->count >= StepsInLength(standard.EvaluationLengthMM, spacingUM)) return std::nullopt;
  const double lengthMM = standard.EvaluationLengthMM / standard.Sections;
  const double present = WholePartsOfLength(range->count * spacingUM * kMillimetresPerMicrometre, lengthMM);
  return MissingSections{standard.Sections, RoundToIndex(present), lengthMM};
}

std::optional<Samples> CoreRoughness(const Document& document, Prompts& prompts) {
  const FilterRow* const filter = CoreFilter(document.settings.analysis);
  const ProfileSet& profiles = document.profiles;
  if (filter == nullptr || !profiles.primaryRange || !profiles.longCutoffMM) return std::nullopt;
  Samples heights;
  if (!FilterPrimary(document, filter, heights, prompts)) return std::nullopt;
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = profiles.primary[i] - heights[i];
  return heights;
}

}  // namespace texturon
