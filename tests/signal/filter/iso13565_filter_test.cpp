// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/iso13565_filter.h"

#include <gtest/gtest.h>
#include <numeric>
#include <vector>

#include "signal/filter/gaussian_filter.h"
#include "support/naive_transform.h"
#include "support/near.h"

namespace texturon {
namespace {

TEST(Iso13565Filter, DiscardsOneCutoffAtEachEnd) {
  struct Case {
    std::size_t n;
    double spacingUM, cutoffMM;
    std::optional<IndexRange> expected;
  };
  const Case cases[] = {
      {1000, 1.0, 0.1, IndexRange::FromEnds(100, 899)},
      {1000, 1.0, 0.1004, IndexRange::FromEnds(100, 899)},
      {1000, 1.0, 0.1005, IndexRange::FromEnds(101, 898)},
      {200, 1.0, 0.1, std::nullopt},  // nothing is left
      {201, 1.0, 0.1, IndexRange::FromEnds(100, 100)},
      {1000, 1.0, 1e12, std::nullopt},
      {1000, 1.0, 0.002, std::nullopt},  // too coarse
      {1019, 1.0, 0.003, IndexRange::FromEnds(3, 1015)},
      {2309, 1.0, 0.003, IndexRange::FromEnds(3, 2304)},  // the last 4 points are beyond the transform
      {4, 1.0, 0.003, std::nullopt},
  };
  for (const Case& c : cases) {
    const std::vector<double> z = RandomSignal(c.n).re;
    std::vector<double> w(c.n);
    EXPECT_EQ(Iso13565Filter(z, w, c.spacingUM, c.cutoffMM), c.expected) << c.n << " " << c.cutoffMM;
  }
}

TEST(Iso13565Filter, FollowsThePlateauOverAValley) {
  // A plateau at 0 with one valley 10 um deep and 40 samples wide: the plain mean line dips, this one hardly does.
  std::vector<double> z(2000, 0.0);
  for (std::size_t i = 980; i < 1020; ++i) z[i] = -10.0;
  std::vector<double> plain(2000);
  std::vector<double> w(2000);
  ASSERT_TRUE(GaussianFilter(z, plain, 1.0, 0.25).has_value());
  const IndexRange range = *Iso13565Filter(z, w, 1.0, 0.25);
  const auto first = static_cast<std::size_t>(range.first);
  const auto count = static_cast<std::size_t>(range.count);

  double roughness = 0.0;
  for (std::size_t i = first; i < first + count; ++i) roughness += z[i] - w[i];
  EXPECT_NEAR(roughness / static_cast<double>(count), 0.0, 1e-14);
  // Twice the plain filter by hand, with the valley closed in between.
  std::vector<double> closed = z;
  for (std::size_t i = 0; i < z.size(); ++i) {
    if (plain[i] > z[i]) closed[i] = plain[i];
  }
  std::vector<double> line(2000);
  ASSERT_TRUE(GaussianFilter(closed, line, 1.0, 0.25).has_value());
  const double shift = w[first] - line[first];
  for (std::size_t i = first; i < first + count; ++i) EXPECT_TRUE(Near(w[i], line[i] + shift, 1e-14)) << i;
}

}  // namespace
}  // namespace texturon
