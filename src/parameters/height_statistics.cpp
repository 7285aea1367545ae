// SPDX-License-Identifier: Apache-2.0

#include "parameters/height_statistics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/multiversion.h"

namespace texturon {
namespace {

constexpr std::size_t kLanes = 4;
constexpr std::size_t kBlock = 64;
using Lanes = std::array<double, kLanes>;

double Fold(const Lanes& lanes) {
  return (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
}

}  // namespace

HeightExtremes FindExtremes(std::span<const double> heights) {
  if (heights.empty()) return {};
  Lanes highest;
  Lanes lowest;
  highest.fill(heights[0]);
  PairOfDoubles high0 = LoadPair(&highest[0]), high1 = high0, low0 = high0, low1 = high0;
  std::size_t i = 0;
  for (; i + kLanes <= heights.size(); i += kLanes) {
    const PairOfDoubles z0 = LoadPair(&heights[i]), z1 = LoadPair(&heights[i + 2]);
    high0 = LargerOfPairs(high0, z0);
    high1 = LargerOfPairs(high1, z1);
    low0 = SmallerOfPairs(low0, z0);
    low1 = SmallerOfPairs(low1, z1);
  }
  StorePair(&highest[0], high0);
  StorePair(&highest[2], high1);
  StorePair(&lowest[0], low0);
  StorePair(&lowest[2], low1);
  for (; i < heights.size(); ++i) {
    highest[0] = std::max(highest[0], heights[i]);
    lowest[0] = std::min(lowest[0], heights[i]);
  }
  return {*std::max_element(highest.begin(), highest.end()), *std::min_element(lowest.begin(), lowest.end())};
}

HeightMoments ComputeMoments(std::span<const double> heights) {
  HeightMoments sums;
  std::size_t i = 0;
  while (i + kLanes <= heights.size()) {
    Lanes absolute{};
    Lanes square{};
    Lanes cube{};
    Lanes fourth{};
    const std::size_t steps = std::min(kBlock, (heights.size() - i) / kLanes);
    for (std::size_t s = 0; s < steps; ++s, i += kLanes) {
      for (std::size_t lane = 0; lane < kLanes; ++lane) {
        const double z = heights[i + lane];
        const double z2 = z * z;
        absolute[lane] += std::abs(z);
        square[lane] += z2;
        cube[lane] += z2 * z;
        fourth[lane] += z2 * z2;
      }
    }
    sums.absolute += Fold(absolute);
    sums.square += Fold(square);
    sums.cube += Fold(cube);
    sums.fourth += Fold(fourth);
  }
  for (; i < heights.size(); ++i) {
    const double z = heights[i];
    sums.absolute += std::abs(z);
    sums.square += z * z;
    sums.cube += z * z * z;
    sums.fourth += z * z * z * z;
  }
  if (heights.empty()) return {};
  const auto n = static_cast<double>(heights.size());
  return {sums.absolute / n, sums.square / n, sums.cube / n, sums.fourth / n};
}

}  // namespace texturon
