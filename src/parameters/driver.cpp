// SPDX-License-Identifier: Apache-2.0

#include "parameters/driver.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "base/text.h"
#include "base/units.h"
#include "parameters/edition2021/edition_list.h"
#include "parameters/parameter_profile.h"
#include "parameters/suffix_table.h"
#include "parameters/void_convexity.h"

namespace texturon {
namespace {

/// A row that only holds a place of the list: never computed, never complained of.
bool IsPlaceholder(std::string_view name) {
  return EqualIgnoringCase(name, "Special") || TrimBlanks(name).empty();
}

/// The profiles of one pass by letter.
class PassProfiles {
public:
  explicit PassProfiles(const DriverInput& input) : coreIsRoughness_(input.coreIsRoughness) {
    const AnalysisSettings& settings = input.settings;
    Put('F', input.formSuppressed, LengthsOf(input.formSuppressed, settings, std::nullopt));
    Put('P', input.primary, LengthsOf(input.primary, settings, std::nullopt), input.sortedPrimary);
    Put('W', input.waviness, LengthsOf(input.waviness, settings, input.wavinessLengthMM));
    Put('R', input.roughness, LengthsOf(input.roughness, settings, settings.LcCutoffMM), input.sortedRoughness);
    if (input.coreRoughness) {
      core_.emplace('R', input.coreRoughness->Heights(), LengthsOf(input.coreRoughness, settings, settings.LcCutoffMM));
    }
  }

  static constexpr std::string_view kLetters = "FPWR";

  static bool IsKnown(char letter) { return IndexOf(letter).has_value(); }

  /// Frees all that was made for its rows.
  void Drop(char letter) {
    profiles_[*IndexOf(letter)].reset();
    if (letter == 'R') core_.reset();
  }

  /// Null when the profile does not exist.
  ParameterProfile* Find(char letter) {
    auto& profile = profiles_[*IndexOf(letter)];
    return profile ? &*profile : nullptr;
  }

  /// Of the core rows of 2021; null where the filter for it gave none.
  ParameterProfile* Core() {
    if (coreIsRoughness_) return Find('R');
    return core_ ? &*core_ : nullptr;
  }

private:
  static std::optional<std::size_t> IndexOf(char letter) {
    const std::size_t index = kLetters.find(letter);
    if (index == std::string_view::npos) return std::nullopt;
    return index;
  }

  static ParameterProfile::Lengths LengthsOf(const std::optional<Profile>& profile, const AnalysisSettings& settings,
                                             std::optional<double> samplingLengthMM) {
    if (!profile) return {};
    const double evaluationLengthMM =
        static_cast<double>(profile->range.count) * profile->spacingUM * kMillimetresPerMicrometre;
    return {.spacingUM = profile->spacingUM,
            .samplingLengthMM = samplingLengthMM.value_or(evaluationLengthMM * 0.2),
            .roughnessCutoffMM = settings.LcCutoffMM};
  }

  void Put(char letter, const std::optional<Profile>& profile, const ParameterProfile::Lengths& lengths,
           std::span<const double> sorted = {}) {
    if (!profile || profile->range.count < 1) return;
    profiles_[*IndexOf(letter)].emplace(letter, profile->Heights(), lengths, sorted);
  }

  std::array<std::optional<ParameterProfile>, 4> profiles_;
  bool coreIsRoughness_;
  std::optional<ParameterProfile> core_;
};

/// Without a value the row failed, and so it did with one that is no finite number, except where the row may have one.
void SetResult(ParameterDef& row, const RowResult& result, bool mayBeInfinite = false) {
  row.valid = result && (mayBeInfinite || std::isfinite(*result));
  row.value = row.valid ? *result : 0.0;
  row.reason = result ? NoValue{Why::kNotFinite} : result.Reason();
}

/// The row keeps what it held.
void Skip(ParameterDef& row, Why why) {
  row.valid = false;
  row.reason = {why};
}

bool IsOfCore(const EditionName& name) {
  return name.letter == 'R' && name.row != nullptr && name.row->ofCore;
}

/// A selected row and where its value comes from.
struct RowTask {
  ParameterDef* row;
  char letter;  // of the profile
  RowRoutine routine = nullptr;
  const SuffixRow* suffix = nullptr;  // none: a motif row, or one of the edition of 2021
  std::optional<EditionName> name = {};
};

/// The rows that can be computed, in their order. The others get their reason, and a message where the name is wrong.
class RowPlan {
public:
  RowPlan(ParameterCatalogue& catalogue, PassProfiles& profiles, DriverReport& report)
      : profiles_(profiles), report_(report) {
    tasks_.reserve(catalogue.rows.size());
    for (ParameterDef& row : catalogue.rows) Add(row);
  }
  std::span<const RowTask> Tasks() const { return tasks_; }

private:
  void Add(ParameterDef& row) {
    Skip(row, Why::kNotComputed);
    if (!row.selected) return;
    Skip(row, Why::kPlaceholder);
    if (IsPlaceholder(row.name)) return;
    Skip(row, Why::kNoProfile);
    if (row.edition == Edition::k2021) return AddOf2021(row);
    if (const RowRoutine motifRow = FindWholeName(row.name)) {
      if (profiles_.Find('P') != nullptr) tasks_.push_back({.row = &row, .letter = 'P', .routine = motifRow});
      return;
    }
    const char letter = UpperAscii(row.name.front());
    if (!PassProfiles::IsKnown(letter)) return Complain(row, " - Unknown profile", Why::kUnknownLetter);
    if (profiles_.Find(letter) == nullptr) return;
    const SuffixRow* const suffix = FindSuffix(std::string_view(row.name).substr(1));
    if (suffix == nullptr) return Complain(row, " - Unknown parameter", Why::kUnknownName);
    if (suffix->letters.find(letter) == std::string_view::npos) return Skip(row, Why::kNotOfThisLetter);
    tasks_.push_back({.row = &row, .letter = letter, .routine = suffix->routine, .suffix = suffix});
  }

  void AddOf2021(ParameterDef& row) {
    EditionName name = ParseEditionName(row.name);
    if (!name.fault.empty()) {
      return Complain(row, name.isUnknownLetter ? " - Unknown profile" : " - Unknown parameter",
                      name.isUnknownLetter ? Why::kUnknownLetter : Why::kUnknownName);
    }
    const bool hasProfile = profiles_.Find(name.letter) != nullptr;
    if (IsOfCore(name) && profiles_.Core() == nullptr) {
      if (hasProfile) Skip(row, Why::kNoCoreProfile);
      return;
    }
    if (!hasProfile && !IsOfCore(name)) return;
    tasks_.push_back({.row = &row, .letter = name.letter, .name = std::move(name)});
  }

  void Complain(ParameterDef& row, std::string_view what, Why why) {
    report_.messages.push_back(row.name + std::string(what));
    Skip(row, why);
  }

  PassProfiles& profiles_;
  DriverReport& report_;
  std::vector<RowTask> tasks_;
};

void ComputeRow(const RowTask& task, PassProfiles& profiles, const AnalysisSettings& settings) {
  if (task.name) {
    const ParameterProfile& profile = IsOfCore(*task.name) ? *profiles.Core() : *profiles.Find(task.letter);
    return SetResult(*task.row, ComputeEditionRow(*task.name, {profile, settings}));
  }
  const RowInput input{*profiles.Find(task.letter), settings};
  SetResult(*task.row, task.routine(input), task.suffix != nullptr && task.suffix->mayBeInfinite);
}

/// What the rows of a letter leave behind besides their values.
void TakeResults(char letter, ParameterProfile& profile, const DriverInput& input, DriverReport& report) {
  if (letter == 'P') {
    if (auto motifs = profile.TakeCached<MotifResult>()) report.motifs = std::move(*motifs);
  }
  if (letter == 'W' && input.wantsEnvelopes) {
    if (auto closing = profile.TakeCached<ClosingOfProfile>()) report.closingUM = std::move(closing->envelopeUM);
    if (auto opening = profile.TakeCached<OpeningOfProfile>()) report.openingUM = std::move(opening->envelopeUM);
  }
  if (letter == 'R') {
    const bool isMade = profile.FindCached<RkResult>() != nullptr;
    if (isMade || input.wantsCoreRoughness) report.coreRoughness = CoreRoughnessOf(profile);
    if (const auto* fit = profile.FindCached<ProbabilityFit>()) report.probability = *fit;
  }
}

}  // namespace

DriverReport ComputeParameters(ParameterCatalogue& catalogue, const DriverInput& input) {
  PassProfiles profiles(input);
  DriverReport report;
  const RowPlan plan(catalogue, profiles, report);
  std::size_t lastOfElements = 0;
  // Profile by profile: what one keeps for its rows makes room for the next one's.
  for (const char letter : PassProfiles::kLetters) {
    ParameterProfile* const profile = profiles.Find(letter);
    for (std::size_t i = 0; i < plan.Tasks().size(); ++i) {
      const RowTask& task = plan.Tasks()[i];
      if (task.letter != letter) continue;
      ComputeRow(task, profiles, input.settings);
      const bool findsElements = task.suffix != nullptr && task.suffix->findsElements;
      if (!findsElements || profile->Heights().size() < 2) continue;
      if (profile->SegmentExtremes(profile->SamplingLengthMM()).empty() || i < lastOfElements) continue;
      lastOfElements = i;
      report.elementHeights = profile->Heights();
    }
    if (profile != nullptr) TakeResults(letter, *profile, input, report);
    profiles.Drop(letter);
  }
  return report;
}

}  // namespace texturon
