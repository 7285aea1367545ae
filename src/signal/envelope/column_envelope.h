// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace texturon {

/// A stretch of an axis in units of sample steps from the first height, divided into equal columns.
struct ColumnGrid {
  double first = 0.0;
  double last = 0.0;
  std::size_t columns = 1;
};

/// Indices of the heights that draw the same picture as all of them, in ascending order: of each column its first and
/// last height, its lowest and its highest. A polyline through them covers the same part of every column. All heights
/// of a column that has no more than four; one height more beyond each end, so that the line goes on to the edges.
///
/// Heights that are not a number are gaps: the first and the last of a column may be one, the extremes are those of the
/// numbers.
std::vector<std::uint32_t> ColumnEnvelope(std::span<const double> heights, const ColumnGrid& grid);

}  // namespace texturon
