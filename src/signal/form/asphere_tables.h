// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "signal/form/asphere.h"

namespace texturon {

struct TableRow {
  double xMM = 0.0;
  double zMM = 0.0;
};

/// The nominal sag from `firstMM` to `lastMM` from the vertex, both included when the spacing divides the distance. X
/// is first + i x spacing. No rows for a spacing that is not positive or for more than `kMostTableRows` of them.
inline constexpr std::size_t kMostTableRows = 10'000'000;
std::vector<TableRow> SagTable(const AsphereDescription& asphere, double firstMM, double lastMM, double spacingMM);

/// What stands in a residual table where the data do not reach.
enum class ResidualPadding : std::uint8_t {
  kNone = 0,     // those rows are left out
  kZero = 1,     // height 0, before the offset
  kNearest = 2,  // the height at the nearer end of the data
};

struct ResidualTableOptions {
  double sideLengthMM = 0.0;  // from the apex to either side
  double spacingMM = 0.0;
  ResidualPadding padding = ResidualPadding::kNone;
  double offsetUM = 0.0;  // added to every height
};

struct ResidualTable {
  std::vector<TableRow> rows;  // X from the apex, from left to right; 0 is always one of them
  bool exceedsData = false;    // the side length is greater than the data on one side
};

/// Heights above the asphere, `spacingUM` apart, at equal distances from the apex, linearly between two points.
/// `apexMM` is counted from the first of the heights. Nothing without heights, for a spacing or length that is not
/// positive, for an apex that is no number or for more than kMostTableRows.
std::optional<ResidualTable> MakeResidualTable(std::span<const double> residualUM, double spacingUM, double apexMM,
                                               const ResidualTableOptions& options);

}  // namespace texturon
