// SPDX-License-Identifier: Apache-2.0

#include "signal/envelope/column_envelope.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <random>

namespace texturon {
namespace {

constexpr double kGap = std::numeric_limits<double>::quiet_NaN();

std::vector<double> Noise(std::size_t n) {
  std::mt19937 random(7);
  std::normal_distribution<double> heights;
  std::vector<double> z(n);
  for (double& height : z) height = heights(random);
  return z;
}

TEST(ColumnEnvelope, KeepsEndsAndExtremesOfEveryColumn) {
  const std::vector<double> z = Noise(50'000);
  for (const ColumnGrid& grid : {ColumnGrid{0.0, 49'999.0, 1000}, ColumnGrid{1234.5, 40'000.25, 777},
                                 ColumnGrid{-9000.0, 70'000.0, 640}, ColumnGrid{100.0, 900.0, 3}}) {
    const std::vector<std::uint32_t> kept = ColumnEnvelope(z, grid);
    EXPECT_TRUE(std::is_sorted(kept.begin(), kept.end(), std::less_equal<>())) << "each once, in order";
    EXPECT_LE(kept.size(), 4 * grid.columns + 2);
    const double width = (grid.last - grid.first) / static_cast<double>(grid.columns);
    // Columns by division, each with all heights and with the kept ones.
    struct Column {
      std::size_t first, last;
      double low, high;
      bool operator==(const Column&) const = default;
    };
    const auto columnsOf = [&](const auto& indices) {
      std::vector<Column> columns(grid.columns, {z.size(), 0, 1e9, -1e9});
      for (const std::size_t i : indices) {
        const double place = static_cast<double>(i);
        if (place < grid.first || place >= grid.last) continue;
        Column& column = columns[static_cast<std::size_t>((place - grid.first) / width)];
        column = {std::min(column.first, i), std::max(column.last, i), std::min(column.low, z[i]),
                  std::max(column.high, z[i])};
      }
      return columns;
    };
    std::vector<std::uint32_t> all(z.size());
    std::iota(all.begin(), all.end(), 0U);
    EXPECT_TRUE(columnsOf(kept) == columnsOf(all)) << grid.first;
    // The line goes on to the edges.
    EXPECT_TRUE(grid.first <= 0.0 || kept.front() < grid.first) << grid.first;
    EXPECT_TRUE(grid.last >= 49'999.0 || kept.back() >= grid.last) << grid.last;
  }
}

TEST(ColumnEnvelope, KeepsAllWhereThereIsRoom) {
  const std::vector<double> z = Noise(10);
  EXPECT_EQ(ColumnEnvelope(z, {2.5, 6.5, 100}), (std::vector<std::uint32_t>{2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(ColumnEnvelope(z, {20.0, 30.0, 100}), std::vector<std::uint32_t>{9}) << "beyond the curve";
  EXPECT_TRUE(ColumnEnvelope({}, {0.0, 1.0, 100}).empty());
  EXPECT_TRUE(ColumnEnvelope(z, {3.0, 3.0, 100}).empty());
}

TEST(ColumnEnvelope, GapsHideNoExtreme) {
  const std::vector<double> z = {kGap, kGap, 1.0, 3.0, kGap, -2.0, 0.0, kGap};
  EXPECT_EQ(ColumnEnvelope(z, {0.0, 8.0, 1}), (std::vector<std::uint32_t>{0, 3, 5, 7}));
  const std::vector<double> nothing(100, kGap);
  EXPECT_EQ(ColumnEnvelope(nothing, {0.0, 100.0, 1}), (std::vector<std::uint32_t>{0, 99}));
}

}  // namespace
}  // namespace texturon
