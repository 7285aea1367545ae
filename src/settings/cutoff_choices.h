// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>

#include "settings/analysis_settings.h"

namespace texturon {

enum class Cutoff { kLong, kShort };

/// The standard cut-offs to choose from (mm), the short-wave ones with 0 for none.
std::span<const double> StandardCutoffsMM(Cutoff cutoff);

/// Index of the standard cut-off in force; their count for the user's own.
std::size_t ChosenCutoff(const AnalysisSettings& settings, Cutoff cutoff);
/// Puts one in force; their count puts the user's own in force.
void ChooseCutoff(AnalysisSettings& settings, Cutoff cutoff, std::size_t index);
/// Takes a cut-off in force that is no standard one for the user's own.
void SettleOwnCutoffs(AnalysisSettings& settings);
/// After the user's own was changed: it is in force where it is chosen.
void FollowOwnCutoffs(AnalysisSettings& settings);

}  // namespace texturon
