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
std::optional<double> MeanRoughnessMotifDepth(const RowInput& row);      ///< R, um: mean of both depths of all motifs
std::optional<double> GreatestRoughnessMotifDepth(const RowInput& row);  ///< Rx, um
std::optional<double> MeanRoughnessMotifLength(const RowInput& row);     ///< AR, um
std::optional<double> MeanWavinessMotifDepth(const RowInput& row);       ///< W, um
std::optional<double> GreatestWavinessMotifDepth(const RowInput& row);   ///< Wx, um
std::optional<double> MeanWavinessMotifLength(const RowInput& row);      ///< AW, um
std::optional<double> EnvelopeHeight(const RowInput& row);               ///< Wte, um

}  // namespace texturon
