// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "parameters/edition2021/edition_input.h"
#include "parameters/edition2021/feature_text.h"

// Feature parameters of ISO 21920-2.
namespace texturon {

/// The dales of a profile that pruning leaves, those of the profile upside down for hills; in order.
const std::vector<Dale>& PrunedDales(const EditionInput& row, const FeatureParameter& feature);

/// The attributes of the features that count, in order; curvatures are those of the profile itself, negative at peaks.
/// Nothing where the profile has no feature.
///
/// Of the most extreme, equal ones are taken from the first on; both words mean peaks for hills and pits for dales.
/// Open: the lower peak of a dale is at or below c, the higher pit of a hill at or above it. Closed: a dale's lower
/// peak at or above c and its pit at or below it, a hill the other way round.
Defined<std::vector<double>> FeatureAttributes(const EditionInput& row, const FeatureParameter& feature);

/// The statistic of them. Density: sum over evaluation length, per cm. Share: of those above v, 0 to 1. Deviation with
/// n - 1. A histogram is no number.
RowResult FeatureValue(const EditionInput& row, const FeatureParameter& feature);

// Pruned by Wolfprune with PruningPercent of Rz (Pz, Wz).
RowResult PeakDensity(const EditionInput& row);            ///< pd, 1/cm
RowResult PitDensity(const EditionInput& row);             ///< vd, 1/cm
RowResult MeanPeakCurvature(const EditionInput& row);      ///< mpc, 1/um, negative
RowResult MeanPitCurvature(const EditionInput& row);       ///< mvc, 1/um
RowResult FivePeakHeight(const EditionInput& row);         ///< 5p, um: mean of the FeatureCount highest peaks
RowResult FivePitDepth(const EditionInput& row);           ///< 5v, um: mean of the FeatureCount deepest pits
RowResult TenPointFeatureHeight(const EditionInput& row);  ///< 10z = 5p + 5v, um

}  // namespace texturon
