// SPDX-License-Identifier: Apache-2.0

#include "signal/envelope/column_envelope.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace texturon {
namespace {

/// First index at or behind a place; n for places behind all.
std::size_t IndexFrom(double place, std::size_t n) {
  if (!(place > 0.0)) return 0;
  return place >= static_cast<double>(n) ? n : static_cast<std::size_t>(std::ceil(place));
}

/// Adds first, lowest, highest and last of the heights from `begin` to before `end`.
void AddColumn(std::span<const double> heights, std::size_t begin, std::size_t end,
               std::vector<std::uint32_t>& indices) {
  constexpr std::size_t kMost = 4;
  if (end - begin <= kMost) {
    for (std::size_t i = begin; i < end; ++i) indices.push_back(static_cast<std::uint32_t>(i));
    return;
  }
  std::size_t lowest = begin;
  std::size_t highest = begin;
  double low = heights[begin];
  double high = low;
  for (std::size_t i = begin + 1; i < end; ++i) {
    // Every comparison with a gap is false; negated, the first number takes its place.
    if (!(heights[i] >= low) && !std::isnan(heights[i])) low = heights[lowest = i];
    if (!(heights[i] <= high) && !std::isnan(heights[i])) high = heights[highest = i];
  }
  std::array<std::size_t, kMost> chosen = {begin, std::min(lowest, highest), std::max(lowest, highest), end - 1};
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    if (i == 0 || chosen[i] != chosen[i - 1]) indices.push_back(static_cast<std::uint32_t>(chosen[i]));
  }
}

}  // namespace

std::vector<std::uint32_t> ColumnEnvelope(std::span<const double> heights, const ColumnGrid& grid) {
  std::vector<std::uint32_t> indices;
  const std::size_t n = heights.size();
  if (n == 0 || grid.columns == 0 || !(grid.last > grid.first)) return indices;
  const double width = (grid.last - grid.first) / static_cast<double>(grid.columns);
  std::size_t begin = IndexFrom(grid.first, n);
  if (begin > 0) indices.push_back(static_cast<std::uint32_t>(begin - 1));
  for (std::size_t column = 0; column < grid.columns && begin < n; ++column) {
    const bool isLast = column + 1 == grid.columns;
    const double edge = isLast ? grid.last : grid.first + width * static_cast<double>(column + 1);
    const std::size_t end = std::max(begin, IndexFrom(edge, n));
    AddColumn(heights, begin, end, indices);
    begin = end;
  }
  if (begin < n) indices.push_back(static_cast<std::uint32_t>(begin));
  return indices;
}

}  // namespace texturon
