// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/document.h"

namespace texturon {

/// A stretch of the record that a profile view sets apart; millimetres from the first sample.
struct MarkedStretch {
  enum class Kind { kNotComputed, kDiscarded, kExcluded };
  Kind kind = Kind::kNotComputed;
  double firstMM = 0.0;
  double lastMM = 0.0;
};

struct ProfileMarks {
  std::vector<MarkedStretch> stretches;
  std::vector<double> samplingLengthEndsMM;  ///< over the evaluation range; none where they are too many to tell apart
};

/// The stretch that the form in force was fitted without. None for the mean and the filter, which take every sample,
/// nor for a fit to all data.
std::optional<IndexRange> HeededExclusion(const Document& document);

/// What lies outside the compute range, what filters and end discard took off, what the form fit left out.
ProfileMarks MarksOf(const Document& document);

/// Two places along the profile (mm from the first sample) and two heights (um).
struct CursorPlaces {
  std::pair<double, double> xMM;
  std::pair<double, double> yUM;
  bool hasX = false;
  bool hasY = false;
};

/// One line about the cursors, in the units shown: the places, the heights of a profile there with their difference and
/// slope, and the two heights with theirs.
std::string CursorReadout(const Document& document, ProfileKind kind, const CursorPlaces& places);

/// What stands at the two upright and the two level cursors: the place, and below it the height there.
std::array<std::string, 4> CursorLabels(const Document& document, ProfileKind kind, const CursorPlaces& places);

}  // namespace texturon
