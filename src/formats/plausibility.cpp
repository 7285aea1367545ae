// SPDX-License-Identifier: Apache-2.0

#include "formats/plausibility.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/elementary.h"
#include "base/four_doubles.h"
#include "base/number_text.h"

namespace texturon {
namespace {

struct Spread {
  double low = 0.0;
  double high = 0.0;
  double path = 0.0;  // sum of the steps, up and down
};

/// Four sums at once, of every fourth step: one alone would wait for each addition.
TEXTURON_MULTIVERSION
void FindSpread(const double* z, std::size_t count, Spread& spread) {
  constexpr std::size_t kLanes = 4;
  using Lanes = std::array<double, kLanes>;
  Lanes lows, highs;
  lows.fill(z[0]);
  highs.fill(z[0]);
  Lanes paths = {};
  FourDoubles low, high, path;
  LoadFour(lows.data(), low);
  LoadFour(highs.data(), high);
  LoadFour(paths.data(), path);
  std::size_t i = 1;
  for (; i + kLanes <= count; i += kLanes) {
    FourDoubles at, before;
    LoadFour(z + i, at);
    LoadFour(z + i - 1, before);
    TakeSmaller(low, at);
    TakeLarger(high, at);
    AddDistance(path, at, before);
  }
  StoreFour(lows.data(), low);
  StoreFour(highs.data(), high);
  StoreFour(paths.data(), path);
  for (std::size_t lane = 0; i < count; ++i, ++lane) {
    lows[0] = z[i] < lows[0] ? z[i] : lows[0];
    highs[0] = z[i] > highs[0] ? z[i] : highs[0];
    paths[lane] += std::abs(z[i] - z[i - 1]);
  }
  spread = {*std::min_element(lows.begin(), lows.end()), *std::max_element(highs.begin(), highs.end()),
            paths[3] + paths[0] + paths[1] + paths[2]};
}

}  // namespace

std::vector<std::string> ImplausibleSigns(const ImportedProfile& profile) {
  constexpr double kMostRangeUM = 10'000.0;
  const std::vector<double>& z = profile.heightsUM;
  std::vector<std::string> signs;
  if (z.size() < 2) return signs;
  Spread spread;
  FindSpread(z.data(), z.size(), spread);
  const double path = spread.path;
  const double range = spread.high - spread.low;
  if (range == 0.0) signs.emplace_back("all heights are the same");
  if (range > kMostRangeUM) {
    signs.push_back("the heights range over " + FixedText(range / 1000.0, 3) + " mm; their unit or scale may be wrong");
  }
  bool countsUp = true;
  for (std::size_t i = 1; countsUp && i < z.size(); ++i) countsUp = z[i] - z[i - 1] == 1.0;
  const double slope = path / (static_cast<double>(z.size() - 1) * profile.spacingUM);
  if (slope > 1.0) {
    signs.push_back("the mean slope is " + FixedText(Atan(slope) * 57.29577951308232, 1) +
                    " degrees; the spacing or the unit of the heights may be wrong");
  }
  if (countsUp && z.size() > 2) signs.emplace_back("the heights count up by 1: an index column may have been read");
  return signs;
}

}  // namespace texturon
