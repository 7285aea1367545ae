// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>

#include "base/index_range.h"

namespace texturon {

/// Two-step mean line of ISO 13565-1 for plateau surfaces, whose valleys must not pull the line down: a first Gaussian
/// mean line replaces the profile where it lies above it, the result is filtered again, and the line is shifted so that
/// the profile minus the line has zero mean over the returned range. One cutoff is left out at each end: first = e,
/// last = n - e - 1 with e = StepsInLength(cutoff, spacing), but never behind the points that the Gaussian filter
/// reached.
///
/// Nothing when the Gaussian filter fails or when no point is left between the ends.
std::optional<IndexRange> Iso13565Filter(std::span<const double> z, std::span<double> w, double spacingUM,
                                         double cutoffMM);

}  // namespace texturon
