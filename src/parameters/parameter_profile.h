#pragma once

#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "core/settings.h"
#include "parameters/height_statistics.h"
#include "parameters/profile_elements.h"
#include "parameters/sampling_lengths.h"

namespace texturon {

/// What the rows of one profile letter are computed from in one pass: the heights over the profile's valid range, the
/// lengths that go with them, and the intermediate results that several rows share, each made when first asked for.
class ParameterProfile {
public:
  struct Lengths {
    double spacingMM = 0.0;
    double samplingLengthMM = 0.0;   ///< of the profile letter
    double roughnessCutoffMM = 0.0;  ///< sampling length of the rows that always use the cutoff
  };

  /// Heights in um about the mean line (no routine subtracts a mean). They must outlive this object.
  ParameterProfile(char letter, std::span<const double> heights, Lengths lengths)
      : letter_(letter), heights_(heights), lengths_(lengths) {}

  char Letter() const { return letter_; }  ///< F, P, W or R
  std::span<const double> Heights() const { return heights_; }
  double SpacingMM() const { return lengths_.spacingMM; }
  double SamplingLengthMM() const { return lengths_.samplingLengthMM; }
  double RoughnessCutoffMM() const { return lengths_.roughnessCutoffMM; }

  const HeightExtremes& Extremes() const;
  const HeightMoments& Moments() const;

  /// Extremes of each sampling length; a profile shorter than one counts as one. Empty when it cannot be divided.
  const std::vector<HeightExtremes>& SegmentExtremes(double samplingLengthMM) const;

  /// Elements for the discrimination percentages: of the mean peak-to-valley height over the letter's own sampling
  /// lengths, and of that sampling length. Empty when there is no such height; the vector inside is empty for a profile
  /// without elements.
  const std::optional<std::vector<ProfileElement>>& Elements(double heightPercent, double widthPercent) const;

private:
  char letter_;
  std::span<const double> heights_;
  Lengths lengths_;
  mutable std::optional<HeightExtremes> extremes_;
  mutable std::optional<HeightMoments> moments_;
  mutable std::map<double, std::vector<HeightExtremes>> segments_;
  mutable std::map<std::pair<double, double>, std::optional<std::vector<ProfileElement>>> elements_;
};

/// What a family routine receives: the profile that the row's letter names, and the settings.
struct RowInput {
  const ParameterProfile& profile;
  const AnalysisSettings& settings;
};

/// Computes one row in its metric unit. Empty: not defined for this profile; the row is invalid and holds 0.
using RowRoutine = std::optional<double> (*)(const RowInput&);

}  // namespace texturon
