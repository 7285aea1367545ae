// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <vector>

#include "record/motif.h"

namespace texturon {

struct MotifLimits {
  double greatestLengthUM = 0.0;          ///< A for the roughness, B for the waviness
  bool leftToRightOnly = false;           ///< one pass over neighbouring pairs instead of joining until no pair is left
  bool freesShortOnesOfEnvelope = false;  ///< a joined motif shorter than half the length need not lie in the envelope
};

/// Motifs of a profile (heights and spacing in um) after ISO 12085, neighbours sharing a peak; empty for a profile
/// without two peaks. Indices count from its first point.
///
/// Peaks and dales are turning points that differ by 5 % of the mean height of stretches of half the greatest length;
/// the profile's ends are none. Two neighbours are joined when all four conditions hold, T being the smaller depth of a
/// motif: the common peak is not above both outer ones; the joined motif is not longer than the limit; its T is not
/// below either's; the smaller depth at the common peak is at most 60 % of its T. Of all pairs that may be joined, the
/// one whose common peak is shallowest goes first, so that the result does not depend on the direction, until none is
/// left. Linear in time.
std::vector<Motif> FindMotifs(std::span<const double> heights, double spacingUM, const MotifLimits& limits);

/// Straight lines from peak to peak over the motifs, sampled at every point from the first peak to the last one: the
/// upper envelope. Empty without motifs.
std::vector<double> UpperEnvelope(std::span<const double> heights, std::span<const Motif> motifs);

/// The same from peak to dale to peak: what the motifs keep of the profile.
std::vector<double> MotifLine(std::span<const double> heights, std::span<const Motif> motifs);

}  // namespace texturon
