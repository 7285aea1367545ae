// SPDX-License-Identifier: Apache-2.0

#include "parameters/driver.h"

#include <array>
#include <cmath>
#include <utility>

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

  static bool IsKnown(char letter) { return IndexOf(letter).has_value(); }

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
    constexpr std::string_view kLetters = "FPWR";
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

void ComputeRowOf2021(ParameterDef& row, PassProfiles& profiles, const AnalysisSettings& settings,
                      DriverReport& report) {
  const EditionName name = ParseEditionName(row.name);
  if (!name.fault.empty()) {
    report.messages.push_back(row.name + (name.isUnknownLetter ? " - Unknown profile" : " - Unknown parameter"));
    Skip(row, name.isUnknownLetter ? Why::kUnknownLetter : Why::kUnknownName);
    return;
  }
  const bool isOfCore = name.letter == 'R' && name.row != nullptr && name.row->ofCore;
  const ParameterProfile* const profile = isOfCore ? profiles.Core() : profiles.Find(name.letter);
  if (profile == nullptr) {
    if (isOfCore && profiles.Find('R') != nullptr) Skip(row, Why::kNoCoreProfile);
    return;
  }
  SetResult(row, ComputeEditionRow(name, {*profile, settings}));
}

}  // namespace

DriverReport ComputeParameters(ParameterCatalogue& catalogue, const DriverInput& input) {
  PassProfiles profiles(input);
  DriverReport report;
  for (ParameterDef& row : catalogue.rows) {
    Skip(row, Why::kNotComputed);
    if (!row.selected) continue;
    Skip(row, Why::kPlaceholder);
    if (IsPlaceholder(row.name)) continue;
    Skip(row, Why::kNoProfile);
    if (row.edition == Edition::k2021) {
      ComputeRowOf2021(row, profiles, input.settings, report);
      continue;
    }
    if (const RowRoutine motifRow = FindWholeName(row.name)) {
      const ParameterProfile* primary = profiles.Find('P');
      if (primary != nullptr) SetResult(row, motifRow({*primary, input.settings}));
      continue;
    }
    const char letter = UpperAscii(row.name.front());
    if (!PassProfiles::IsKnown(letter)) {
      report.messages.push_back(row.name + " - Unknown profile");
      Skip(row, Why::kUnknownLetter);
      continue;
    }
    const ParameterProfile* profile = profiles.Find(letter);
    if (profile == nullptr) continue;
    const SuffixRow* suffix = FindSuffix(std::string_view(row.name).substr(1));
    if (suffix == nullptr) {
      report.messages.push_back(row.name + " - Unknown parameter");
      Skip(row, Why::kUnknownName);
      continue;
    }
    if (suffix->letters.find(letter) == std::string_view::npos) {
      Skip(row, Why::kNotOfThisLetter);
      continue;
    }
    SetResult(row, suffix->routine({*profile, input.settings}), suffix->mayBeInfinite);
    if (suffix->findsElements && profile->Heights().size() >= 2 &&
        !profile->SegmentExtremes(profile->SamplingLengthMM()).empty()) {
      report.elementHeights = profile->Heights();
    }
  }
  if (const ParameterProfile* primary = profiles.Find('P')) {
    if (const auto* motifs = primary->FindCached<MotifResult>()) report.motifs = *motifs;
  }
  if (ParameterProfile* waviness = profiles.Find('W')) {
    if (auto closing = waviness->TakeCached<ClosingOfProfile>()) report.closingUM = std::move(closing->envelopeUM);
    if (auto opening = waviness->TakeCached<OpeningOfProfile>()) report.openingUM = std::move(opening->envelopeUM);
  }
  if (const ParameterProfile* roughness = profiles.Find('R')) {
    const bool isMade = roughness->FindCached<RkResult>() != nullptr;
    if (isMade || input.wantsCoreRoughness) report.coreRoughness = CoreRoughnessOf(*roughness);
    if (const auto* fit = roughness->FindCached<ProbabilityFit>()) report.probability = *fit;
  }
  return report;
}

}  // namespace texturon
