// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>

namespace texturon {

/// The value that stands at `rank`, from 0, once all are in ascending order; rank is below their number, none is NaN.
/// Linear in time; reorders the values, where it must. Of a long row only those between two of a sample are sorted out,
/// so that nearly no step depends on a comparison that a processor cannot foresee.
double NthSmallest(std::span<double> values, std::size_t rank);

/// The middle one of at least one value, the mean of the middle two of an even number; none is NaN. As NthSmallest.
double Median(std::span<double> values);
/// The same, sooner where it lies within `aside` of a guess or not far beyond. Any guess that is a number will do.
double MedianNear(std::span<double> values, double guess, double aside);

}  // namespace texturon
