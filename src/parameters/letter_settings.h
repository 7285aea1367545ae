// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "settings/analysis_settings.h"

namespace texturon {

/// The settings that rows of one suffix take from different keys by the letter of their profile: what they are computed
/// with and what tables show behind their names.
struct LetterSettings {
  using Field = double AnalysisSettings::*;

  /// Discrimination of the profile elements, in percent of the mean peak-to-valley height and of the sampling length.
  struct Discrimination {
    Field height;
    Field width;
  };

  char letter;
  Discrimination widths;   ///< where widths of elements are taken: sm, dsm
  Discrimination heights;  ///< where heights of elements are taken: c, tc, cl
  Field highSpotLevelUM;   ///< hsc
  Field valleyLevelUM;     ///< vc
  Field peakBandUM;        ///< pc: the whole width of the band
};

/// The letters of the profiles. F has no keys of its own. The roughness has one discrimination, that of its heights:
/// the keys of Rsm play no part.
inline constexpr LetterSettings kLetterSettings[] = {
    {.letter = 'F',
     .widths = {&AnalysisSettings::PsmPzPercent, &AnalysisSettings::PsmSamplingLengthPercent},
     .heights = {&AnalysisSettings::PsmPzPercent, &AnalysisSettings::PsmSamplingLengthPercent},
     .highSpotLevelUM = &AnalysisSettings::PrimaryHSCHeight,
     .valleyLevelUM = &AnalysisSettings::PrimaryVCHeight,
     .peakBandUM = &AnalysisSettings::WavinessPcLevel},
    {.letter = 'P',
     .widths = {&AnalysisSettings::PsmPzPercent, &AnalysisSettings::PsmSamplingLengthPercent},
     .heights = {&AnalysisSettings::PsmPzPercent, &AnalysisSettings::PsmSamplingLengthPercent},
     .highSpotLevelUM = &AnalysisSettings::PrimaryHSCHeight,
     .valleyLevelUM = &AnalysisSettings::PrimaryVCHeight,
     .peakBandUM = &AnalysisSettings::PrimaryPcLevel},
    {.letter = 'W',
     .widths = {&AnalysisSettings::WsmWzPercent, &AnalysisSettings::WsmSamplingLengthPercent},
     .heights = {&AnalysisSettings::WcWzPercent, &AnalysisSettings::WcSamplingLengthPercent},
     .highSpotLevelUM = &AnalysisSettings::PrimaryHSCHeight,
     .valleyLevelUM = &AnalysisSettings::PrimaryVCHeight,
     .peakBandUM = &AnalysisSettings::WavinessPcLevel},
    {.letter = 'R',
     .widths = {&AnalysisSettings::RcRzPercent, &AnalysisSettings::RcSamplingLengthPercent},
     .heights = {&AnalysisSettings::RcRzPercent, &AnalysisSettings::RcSamplingLengthPercent},
     .highSpotLevelUM = &AnalysisSettings::RoughnessHSCHeight,
     .valleyLevelUM = &AnalysisSettings::RoughnessVCHeight,
     .peakBandUM = &AnalysisSettings::RoughnessPcLevel},
};

/// Of a letter F, P, W or R; the first row for any other.
constexpr const LetterSettings& SettingsOfLetter(char letter) {
  for (const LetterSettings& row : kLetterSettings) {
    if (row.letter == letter) return row;
  }
  return kLetterSettings[0];
}

}  // namespace texturon
