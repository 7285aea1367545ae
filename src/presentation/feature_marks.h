// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "analysis/document.h"

namespace texturon {

/// A peak or a pit; millimetres from the first sample, heights of the profile in um.
struct FeatureMark {
  double xMM = 0.0;
  double heightUM = 0.0;
  bool isKept = false;  ///< pruning leaves it
};

/// The level of the lower peak of a dale, or of the higher pit of a hill, as far as its farthest crossing.
struct LevelMark {
  double firstMM = 0.0;
  double lastMM = 0.0;
  double heightUM = 0.0;
};

/// Hills or dales of a profile, in order.
struct FeatureMarks {
  std::vector<FeatureMark> extremes;  ///< peaks of hills, pits of dales
  std::vector<LevelMark> levels;      ///< of those that pruning leaves
};

/// As the feature rows of the edition of 2021 take them: pruned by PruningPercent of the profile's Rz. Of very many
/// only those that pruning leaves. Empty for a profile that there is not, or that no such row is of.
FeatureMarks FeatureMarksOf(const Document& document, ProfileKind kind, bool ofHills);

}  // namespace texturon
