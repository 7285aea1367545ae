// SPDX-License-Identifier: Apache-2.0

#include "parameters/counts.h"

#include <cstddef>
#include <cstdint>

#include "base/multiversion.h"
#include "parameters/letter_settings.h"

namespace texturon {
namespace {

constexpr double kPerCentimetre = 10.0;  // of a count per mm

/// How often one of `count` heights comes up to a level or down to it from the other side.
TEXTURON_MULTIVERSION
std::int64_t CountArrivals(const double* z, std::size_t count, double level, bool fromBelow) {
  std::int64_t arrivals = 0;
  if (fromBelow) {
    for (std::size_t i = 1; i < count; ++i) {
      arrivals += static_cast<std::int64_t>(z[i] >= level) & static_cast<std::int64_t>(z[i - 1] < level);
    }
  } else {
    for (std::size_t i = 1; i < count; ++i) {
      arrivals += static_cast<std::int64_t>(z[i] <= level) & static_cast<std::int64_t>(z[i - 1] > level);
    }
  }
  return arrivals;
}

std::size_t CountHighSpots(std::span<const double> z, double level) {
  if (z.empty()) return 0;
  return (z[0] > level ? 1 : 0) + static_cast<std::size_t>(CountArrivals(z.data(), z.size(), level, true));
}

std::size_t CountPeaksThroughBand(std::span<const double> z, double half) {
  std::size_t count = 0;
  bool waitsForValley = true;
  for (std::size_t i = 1; i < z.size(); ++i) {
    if (waitsForValley) {
      if (z[i] < -half && z[i - 1] >= -half) waitsForValley = false;
    } else if (z[i] > half && z[i - 1] <= half) {
      ++count;
      waitsForValley = true;
    }
  }
  return count;
}

}  // namespace

std::size_t CountValleys(std::span<const double> z, double level) {
  if (z.empty()) return 0;
  return (z[0] < level ? 1 : 0) + static_cast<std::size_t>(CountArrivals(z.data(), z.size(), level, false));
}

RowResult HighSpotCount(const RowInput& row) {
  if (row.profile.Heights().empty()) return NoValue{Why::kFewPoints, {1.0}};
  const double level = row.settings.*SettingsOfLetter(row.profile.Letter()).highSpotLevelUM;
  return static_cast<double>(CountHighSpots(row.profile.Heights(), level));
}

RowResult ValleyCount(const RowInput& row) {
  if (row.profile.Heights().empty()) return NoValue{Why::kFewPoints, {1.0}};
  const double level = row.settings.*SettingsOfLetter(row.profile.Letter()).valleyLevelUM;
  return static_cast<double>(CountValleys(row.profile.Heights(), level));
}

RowResult PeakCountPerLength(const RowInput& row) {
  const std::span<const double> z = row.profile.Heights();
  const double bandUM = row.settings.*SettingsOfLetter(row.profile.Letter()).peakBandUM;
  const std::size_t count = CountPeaksThroughBand(z, bandUM * 0.5);
  if (count == 0) return 0.0;
  const double lengthMM = static_cast<double>(z.size() - 1) * row.profile.SpacingMM();
  return static_cast<double>(count) / lengthMM * kPerCentimetre;
}

}  // namespace texturon
