// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/units.h"

namespace texturon {

// The contract that all profile filters share. Input heights z[0..n-1] are equally spaced and stay unchanged; the mean
// line w has the same length; the sample spacing is in micrometres, the cutoff wavelength in millimetres. A filter
// returns the valid part of w as an IndexRange relative to the array it was given, or nothing when it cannot filter;
// then w is unspecified.

/// True when the profile is sampled finely enough for the cutoff: spacing <= cutoff / 3, both taken in mm.
inline bool SpacingAllowsCutoff(double spacingUM, double cutoffMM) {
  return spacingUM * kMillimetresPerMicrometre <= cutoffMM / 3.0;
}

}  // namespace texturon
