// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "parameters/parameter_profile.h"
#include "record/motif.h"

// Motif parameters after ISO 12085, on the primary profile: roughness motifs up to MotifAMM long; the upper envelope
// through their peaks, and on it waviness motifs up to MotifBMM.
namespace texturon {

/// Indices count from the profile's first point.
struct MotifResult {
  std::vector<Motif> roughness;
  std::vector<Motif> waviness;
  std::optional<double> envelopeHeightUM;  ///< highest minus lowest point of the upper envelope
  /// Roughness depths above this (their mean plus 1.65 standard deviations) count as this.
  double greatestDepthUM = 0.0;
};

/// Of heights and spacing in um. `UseTHMotif` joins from left to right only, `UseTHShortMotifCombination` frees short
/// motifs of the envelope condition (MotifLimits).
MotifResult ComputeMotifs(std::span<const double> heights, double spacingUM, const AnalysisSettings& settings);

/// Once a pass.
const MotifResult& MotifsOf(const RowInput& row);

// Rows. Each fails without motifs of its kind.
RowResult MeanRoughnessMotifDepth(const RowInput& row);      ///< R, um: mean of both depths of all motifs
RowResult GreatestRoughnessMotifDepth(const RowInput& row);  ///< Rx, um
RowResult MeanRoughnessMotifLength(const RowInput& row);     ///< AR, um
RowResult MeanWavinessMotifDepth(const RowInput& row);       ///< W, um
RowResult GreatestWavinessMotifDepth(const RowInput& row);   ///< Wx, um
RowResult MeanWavinessMotifLength(const RowInput& row);      ///< AW, um
RowResult EnvelopeHeight(const RowInput& row);               ///< Wte, um

}  // namespace texturon
