// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/samples.h"
#include "parameters/catalogue.h"
#include "parameters/core_roughness.h"
#include "parameters/motifs.h"
#include "parameters/probability.h"
#include "record/profile.h"
#include "settings/analysis_settings.h"

namespace texturon {

/// What one pass of the driver reads. A profile that does not exist is empty; rows that need it are skipped.
struct DriverInput {
  const AnalysisSettings& settings;
  std::optional<Profile> formSuppressed;
  std::optional<Profile> primary;
  std::optional<Profile> waviness;
  std::optional<Profile> roughness;
  /// Heights of primary and roughness from the highest to the lowest, where they are at hand.
  std::span<const double> sortedPrimary = {};
  std::span<const double> sortedRoughness = {};
  bool wantsCoreRoughness = true;  ///< also when no row asks for it
  bool wantsEnvelopes = true;      ///< in the report, where a row asks for them
  /// Roughness that the core rows of the edition of 2021 are of, where that is another than `roughness`.
  std::optional<Profile> coreRoughness = {};
  bool coreIsRoughness = true;                  ///< false: without `coreRoughness` these rows have no profile
  std::optional<double> wavinessLengthMM = {};  ///< sampling length of the waviness; none: a fifth of the evaluation
};

struct DriverReport {
  /// Message-box texts, in row order: unknown profile letters and unknown suffixes.
  std::vector<std::string> messages;
  /// Heights that the profile-element finder was given last; empty when it did not run.
  std::optional<std::span<const double>> elementHeights;
  /// The roughness profile's; as it was made where it is not wanted and no row asks for it.
  RkResult coreRoughness;
  /// Envelopes of the waviness over its range; empty when no row asked for them.
  Samples closingUM;
  Samples openingUM;
  /// Of the primary profile, counted from its first point; empty lists when no row asked for them.
  MotifResult motifs;
  /// Of the roughness; empty when no row asked for it.
  std::optional<ProbabilityFit> probability;
};

/// Computes every selected row of the working list, those of one profile after those of another, and sets each row's
/// value and valid flag. A value that is not finite is a failure, but for the ratios of the core roughness, which have
/// no guard against a core of 0.
///
/// The first letter of a name chooses the profile (F form-suppressed, P primary, W waviness, R roughness), the rest of
/// it the routine, both without regard to case. Sampling lengths: a fifth of the evaluation length for F and P, for W
/// too unless another is given, the roughness cutoff for R.
DriverReport ComputeParameters(ParameterCatalogue& catalogue, const DriverInput& input);

}  // namespace texturon
