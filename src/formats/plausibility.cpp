// SPDX-License-Identifier: Apache-2.0

#include "formats/plausibility.h"

#include <array>
#include <cmath>

#include "base/elementary.h"
#include "base/number_text.h"

namespace texturon {

std::vector<std::string> ImplausibleSigns(const ImportedProfile& profile) {
  constexpr double kMostRangeUM = 10'000.0;
  const std::vector<double>& z = profile.heightsUM;
  std::vector<std::string> signs;
  if (z.size() < 2) return signs;
  // Several sums at once: one alone would wait for each addition.
  constexpr std::size_t kLanes = 4;
  std::array<double, kLanes> paths = {};
  double low = z[0];
  double high = z[0];
  for (std::size_t i = 1; i < z.size(); ++i) {
    low = z[i] < low ? z[i] : low;
    high = z[i] > high ? z[i] : high;
    paths[i % kLanes] += std::abs(z[i] - z[i - 1]);
  }
  const double path = paths[0] + paths[1] + paths[2] + paths[3];
  const double range = high - low;
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
