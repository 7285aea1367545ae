// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>

#include "base/index_range.h"
#include "settings/settings.h"

namespace texturon {

/// `mode`: which of the three lengths tell where the region lies. Any other number is kBetweenOffsets.
enum RegionMode : std::int32_t {
  kFromStart = 0,  ///< from the start on to the end of the record
  kStartAndLength = 1,
  kUpToEndOffset = 2,  ///< from the first sample on
  kLengthUpToEndOffset = 3,
  kBetweenOffsets = 4,
};

/// A stretch of the record to compute over; all lengths in mm.
struct RegionChoice {
  std::int32_t mode = kBetweenOffsets;
  double startMM = 0.0;      ///< from the first sample
  double endOffsetMM = 0.0;  ///< from the last sample
  double lengthMM = 0.0;

  bool ReadsStart() const { return mode != kUpToEndOffset && mode != kLengthUpToEndOffset; }
  bool ReadsEndOffset() const { return mode != kFromStart && mode != kStartAndLength; }
  bool ReadsLength() const { return mode == kStartAndLength || mode == kLengthUpToEndOffset; }

  friend bool operator==(const RegionChoice&, const RegionChoice&) = default;
};

/// Type and length of the end discard.
struct DiscardSetting {
  std::int32_t type = kDiscardNone;
  double lengthMM = 0.0;

  friend bool operator==(const DiscardSetting&, const DiscardSetting&) = default;
};

/// What of the record is computed over, and what of that the form is fitted to.
struct AnalysisScope {
  std::optional<RegionChoice> region;   ///< none: the whole record
  std::optional<IndexRange> exclusion;  ///< samples of the record that no form is fitted to
  /// The evaluation length is a whole number of cut-offs. Holds the settings' own end discard, which that replaces.
  std::optional<DiscardSetting> wholeCutoffs;
  bool allDataForForm = false;

  friend bool operator==(const AnalysisScope&, const AnalysisScope&) = default;
};

/// All that says how a record is analysed.
struct AnalysisRequest {
  AnalysisSettings settings;
  AnalysisScope scope;

  friend bool operator==(const AnalysisRequest&, const AnalysisRequest&) = default;
};

}  // namespace texturon
