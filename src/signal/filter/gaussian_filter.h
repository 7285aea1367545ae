// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>

#include "base/index_range.h"

namespace texturon {

/// Gaussian mean line as a periodic weighting: harmonic k of the record, wavelength lambda = m spacing / k, is
/// multiplied by 2^-(cutoff / lambda)^2, the transmission of the linear Gaussian filter of ISO 16610-21: a wavelength
/// equal to the cutoff keeps half its amplitude; the mean is kept. The transform takes the first m =
/// LargestFftLength(n) points, and the range returned is those m points: first 0, count m. w holds n values; those
/// behind the range are not touched. Ends are not removed, though the weighting wraps around.
///
/// Nothing when the profile is sampled too coarsely (filter_contract.h), when the spacing is not a positive finite
/// number, or when fewer than five points can be transformed. Error of w: a few 1e-16 of the rms height.
std::optional<IndexRange> GaussianFilter(std::span<const double> z, std::span<double> w, double spacingUM,
                                         double cutoffMM);

}  // namespace texturon
