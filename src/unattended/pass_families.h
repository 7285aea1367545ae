// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "record/profile.h"
#include "unattended/test_plan.h"

namespace texturon {

/// A profile that a pass writes, and the beginning of its file's name, which the run's extension ends.
struct PassProfile {
  std::string_view prefix;
  ProfileKind kind = ProfileKind::kRaw;
};

/// A family of parameters that have a pass of their own. Keys are those of the plan; an empty one: there is none.
struct PassFamily {
  Family family = Family::kStandard;
  std::string_view name;     ///< in sentences
  std::string_view counter;  ///< in the log, before the number of its parameters
  std::string_view filterKey;
  std::string_view cutoffKey;
  std::string_view cutoffCountKey;
  std::string_view bandwidthRatioKey;
  std::string_view hybridKeys;          ///< beginning of the keys of its configurable rows
  std::optional<ResultList> list;       ///< of its parameters; none: by the letter of each
  std::array<PassProfile, 2> profiles;  ///< an empty prefix: none
};

inline constexpr PassFamily kPassFamilies[] = {
    {.family = Family::kStandard,
     .name = "standard",
     .counter = "STD",
     .filterKey = "RoughFilter",
     .cutoffKey = "RoughCutOffLength",
     .cutoffCountKey = "RoughNumOfCuttOffs",
     .bandwidthRatioKey = "RoughBandWidthRatio",
     .hybridKeys = "Hybrids",
     .profiles = {{{"PRIMARY.", ProfileKind::kPrimary}, {"ROUGHNESS.", ProfileKind::kRoughness}}}},
    {.family = Family::kWaviness,
     .name = "waviness",
     .counter = "W",
     .filterKey = "WavFilter",
     .cutoffKey = "WavCutOffLength",
     .cutoffCountKey = "WavNumOfCuttOffs",
     .list = ResultList::kWaviness,
     .profiles = {{{"WAVINESS.", ProfileKind::kWaviness}}}},
    {.family = Family::kRk,
     .name = "Rk",
     .counter = "RK",
     .cutoffKey = "RKCutOffLength",
     .cutoffCountKey = "RKNumOfCuttOffs",
     .bandwidthRatioKey = "RKBandWidthRatio",
     .list = ResultList::kRk,
     .profiles = {{{"ROUGHNESS_RK.", ProfileKind::kRoughness}}}},
    {.family = Family::kMotif,
     .name = "motif",
     .counter = "MOTIF",
     .filterKey = "RoughFilter",
     .cutoffKey = "RoughCutOffLength",
     .bandwidthRatioKey = "RoughBandWidthRatio",
     .hybridKeys = "Hybrid_2",
     .list = ResultList::kMotif,
     .profiles = {{{"PRIMARY_MOTIF.", ProfileKind::kPrimary}}}},
};

/// The motif pass writes these lines as well.
inline constexpr std::string_view kWavinessMotifPrefix = "MOTIF_W.";
inline constexpr std::string_view kRoughnessMotifPrefix = "MOTIF_R.";

constexpr const PassFamily& PassFamilyOf(Family family) {
  for (const PassFamily& row : kPassFamilies) {
    if (row.family == family) return row;
  }
  return kPassFamilies[0];
}

}  // namespace texturon
