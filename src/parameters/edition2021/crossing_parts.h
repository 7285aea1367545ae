// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

// Hills and dales of the mean line (height 0), as the section parameters and the profile elements of ISO 21920-2 take
// them.
namespace texturon {

/// A stretch between two crossings of the mean line, or between one and an end of the record.
struct CrossingPart {
  std::size_t first = 0;
  std::size_t last = 0;     ///< inclusive
  std::size_t extreme = 0;  ///< the point farthest from the mean line, the first of equals
};

/// The whole record, in order: cut between points i - 1 and i where z[i-1] <= 0 < z[i] or z[i-1] >= 0 > z[i]. Parts of
/// one side may follow each other where the profile only touches the line; a part whose extreme is 0 is neither hill
/// nor dale. Empty for no points.
std::vector<CrossingPart> FindCrossingParts(std::span<const double> z);

/// Means over the sections, um.
struct SectionHeights {
  double peak = 0.0;  ///< of the largest peak height of each section
  double pit = 0.0;   ///< of the largest pit depth of each section
};

/// The record is cut into `sections` of floor(n / sections) points from its first one on; what is left over belongs to
/// none. A hill or dale belongs to the section in which its extreme lies; a section without one gives 0 for that side.
/// Nothing for fewer points than sections, or no section.
std::optional<SectionHeights> MeanSectionHeights(std::span<const double> z, std::span<const CrossingPart> parts,
                                                 std::size_t sections);

/// Thresholds that hills and dales must at least reach to count, um.
struct PartThresholds {
  double peak = 0.0;
  double pit = 0.0;
};

/// A hill followed by a dale, or the other way round.
struct CrossingElement {
  double width = 0.0;   ///< in points
  double height = 0.0;  ///< peak height plus pit depth, um
};

/// Elements of both directions of a walk along the profile.
///
/// A part below its threshold joins the one before it, and so does one of the same side; a significant one of the other
/// side begins at the crossing (by linear interpolation) at its own beginning. The first and the last are complete only
/// where both their ends are crossings. Each complete hill with the complete dale that follows it is an element: once
/// from left to right, once from right to left, so that the mirrored profile gives the same ones.
std::vector<CrossingElement> FindCrossingElements(std::span<const double> z, const PartThresholds& thresholds);

}  // namespace texturon
