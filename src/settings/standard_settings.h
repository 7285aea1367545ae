// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace texturon {

inline constexpr std::size_t kMostFeatures = 100;

/// What the edition of 2021 asks for beyond the settings of before: section STANDARD of the settings file, written only
/// where it differs from these defaults.
struct StandardSettings {
  std::string Edition = "1997";  // 1997, 2021 or both
  std::string ShortWaveFilter = "spline";
  std::string LongWaveFilter;                    // empty: by FilterType
  std::string CoreFilter = "robust-gaussian-2";  // for the Rk family; roughness: that profile itself
  std::int32_t Sections = 5;
  double EvaluationLengthMM = 0.0;  // in the middle of what the filter leaves; 0: all of that
  bool CompleteSections = false;    // a record without room for them is refused
  std::string Class;                // setting class that the others were taken from
  double MostSpacingUM = 0.0;       // a notice where points lie farther apart; 0: none
  double MostTipRadiusUM = 0.0;     // a notice for a blunter tip; 0: none
  std::string Indication;           // of a drawing: reports name it with its verdict
  std::string ClassTable;           // file; empty: the built-in table

  double HillThresholdPercent = 10.0;  // of Rp
  double DaleThresholdPercent = 10.0;  // of Rv
  double PruningPercent = 5.0;         // of Rz
  std::int32_t FeatureCount = 5;       // of R5p and R5v
  double AutocorrelationLevel = 0.2;   // of Ral
  double VolumeUpperPercent = 10.0;    // p of the volumes
  double VolumeLowerPercent = 80.0;    // q of the volumes

  /// Rows beside those of the list: "P: FC; D; Wolfprune 5 %; All; HDh; Mean".
  std::vector<std::string> features;

  friend bool operator==(const StandardSettings&, const StandardSettings&) = default;
};

}  // namespace texturon
