// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <any>
#include <map>
#include <optional>
#include <span>
#include <typeindex>
#include <utility>
#include <vector>

#include "base/units.h"
#include "parameters/height_statistics.h"
#include "parameters/no_value.h"
#include "parameters/profile_elements.h"
#include "parameters/sampling_lengths.h"
#include "settings/analysis_settings.h"

namespace texturon {

/// What the rows of one profile letter are computed from in one pass: the heights over the profile's valid range, the
/// lengths that go with them, and the intermediate results that several rows share, each made when first asked for.
class ParameterProfile {
public:
  struct Lengths {
    double spacingUM = 0.0;
    double samplingLengthMM = 0.0;   ///< of the profile letter
    double roughnessCutoffMM = 0.0;  ///< sampling length of the rows that always use the cutoff
  };

  /// Heights in um about the mean line (no routine subtracts a mean), and the same from the highest to the lowest where
  /// somebody has sorted them already (otherwise empty). They must outlive this object.
  ParameterProfile(char letter, std::span<const double> heights, Lengths lengths, std::span<const double> sorted = {})
      : letter_(letter), heights_(heights), lengths_(lengths), sorted_(sorted) {}
  ParameterProfile(const ParameterProfile&) = delete;
  ParameterProfile& operator=(const ParameterProfile&) = delete;

  char Letter() const { return letter_; }  ///< F, P, W or R
  std::span<const double> Heights() const { return heights_; }
  double SpacingUM() const { return lengths_.spacingUM; }
  double SpacingMM() const { return lengths_.spacingUM * kMillimetresPerMicrometre; }
  double SamplingLengthMM() const { return lengths_.samplingLengthMM; }
  double RoughnessCutoffMM() const { return lengths_.roughnessCutoffMM; }

  /// From the highest to the lowest.
  std::span<const double> SortedHeights() const;
  const HeightExtremes& Extremes() const;
  const HeightMoments& Moments() const;

  /// Extremes of each sampling length; a profile shorter than one counts as one. Empty when it cannot be divided.
  const std::vector<HeightExtremes>& SegmentExtremes(double samplingLengthMM) const;

  /// Why that is empty.
  NoValue WhyNotDivided(double samplingLengthMM) const;

  /// Elements for the discrimination percentages: of the mean peak-to-valley height over the letter's own sampling
  /// lengths, and of that sampling length. The vector inside is empty for a profile without elements.
  const Defined<std::vector<ProfileElement>>& Elements(double heightPercent, double widthPercent) const;

  /// What the rows of one family have in common, made by `make` when the first of them asks for it. There is one result
  /// of a type: it must follow from this profile and the settings of the pass.
  template <typename Result, typename Make>
  const Result& Cached(const Make& make) const {
    std::any& slot = cachedByType_[typeid(Result)];
    if (!slot.has_value()) slot = std::any(std::in_place_type<Result>, make());
    return *std::any_cast<Result>(&slot);
  }
  /// Null when no row has asked for it.
  template <typename Result>
  const Result* FindCached() const {
    const auto slot = cachedByType_.find(typeid(Result));
    return slot != cachedByType_.end() ? std::any_cast<Result>(&slot->second) : nullptr;
  }

  /// Takes it out, for who asks last.
  template <typename Result>
  std::optional<Result> TakeCached() {
    const auto slot = cachedByType_.find(typeid(Result));
    if (slot == cachedByType_.end()) return std::nullopt;
    return std::move(*std::any_cast<Result>(&slot->second));
  }

private:
  char letter_;
  std::span<const double> heights_;
  Lengths lengths_;
  mutable std::span<const double> sorted_;
  mutable std::vector<double> ownSorted_;
  mutable std::map<std::type_index, std::any> cachedByType_;
  mutable std::optional<HeightExtremes> extremes_;
  mutable std::optional<HeightMoments> moments_;
  mutable std::map<double, std::vector<HeightExtremes>> segments_;
  mutable std::map<std::pair<double, double>, Defined<std::vector<ProfileElement>>> elements_;
};

/// What a family routine receives: the profile that the row's letter names, and the settings.
struct RowInput {
  const ParameterProfile& profile;
  const AnalysisSettings& settings;
};

/// A row's value in its metric unit, or why it is not defined for this profile; the row is then invalid and holds 0.
using RowResult = Defined<double>;

/// Computes one row.
using RowRoutine = RowResult (*)(const RowInput&);

}  // namespace texturon
