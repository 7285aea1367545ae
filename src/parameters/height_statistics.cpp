// SPDX-License-Identifier: Apache-2.0

#include "parameters/height_statistics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/four_doubles.h"
#include "base/multiversion.h"

namespace texturon {
namespace {

constexpr std::size_t kLanes = 4;
constexpr std::size_t kBlock = 64;
using Lanes = std::array<double, kLanes>;

double Fold(const Lanes& lanes) {
  return (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
}

/// The highest and the lowest of every fourth of some heights that can be divided so, from the four first ones on.
TEXTURON_MULTIVERSION
void FindExtremesOfFour(std::span<const double> heights, Lanes& highest, Lanes& lowest) {
  FourDoubles high, low;
  LoadFour(highest.data(), high);
  low = high;
  for (std::size_t i = 0; i < heights.size(); i += kLanes) {
    FourDoubles z;
    LoadFour(&heights[i], z);
    TakeLarger(high, z);
    TakeSmaller(low, z);
  }
  StoreFour(highest.data(), high);
  StoreFour(lowest.data(), low);
}

/// Sums over whole lanes; what is left is not looked at.
TEXTURON_MULTIVERSION
void AddPowers(std::span<const double> heights, HeightMoments& sums) {
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
}

}  // namespace

HeightExtremes FindExtremes(std::span<const double> heights) {
  if (heights.empty()) return {};
  Lanes highest;
  highest.fill(heights[0]);
  Lanes lowest = highest;
  const std::size_t inLanes = heights.size() / kLanes * kLanes;
  if (inLanes > 0) FindExtremesOfFour(heights.first(inLanes), highest, lowest);
  for (std::size_t i = inLanes; i < heights.size(); ++i) {
    highest[0] = std::max(highest[0], heights[i]);
    lowest[0] = std::min(lowest[0], heights[i]);
  }
  return {*std::max_element(highest.begin(), highest.end()), *std::min_element(lowest.begin(), lowest.end())};
}

HeightMoments ComputeMoments(std::span<const double> heights) {
  HeightMoments sums;
  AddPowers(heights, sums);
  for (std::size_t i = heights.size() / kLanes * kLanes; i < heights.size(); ++i) {
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
