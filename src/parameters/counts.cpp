// SPDX-License-Identifier: Apache-2.0

#include "parameters/counts.h"

#include <cstddef>

namespace texturon {
namespace {

constexpr double kPerCentimetre = 10.0;  // of a count per mm

std::size_t CountHighSpots(std::span<const double> z, double level) {
  if (z.empty()) return 0;
  std::size_t count = z[0] > level ? 1 : 0;
  for (std::size_t i = 1; i < z.size(); ++i) count += static_cast<std::size_t>(z[i] >= level) & (z[i - 1] < level);
  return count;
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
  std::size_t count = z[0] < level ? 1 : 0;
  for (std::size_t i = 1; i < z.size(); ++i) count += static_cast<std::size_t>(z[i] <= level) & (z[i - 1] > level);
  return count;
}

double PeakCountBandUM(char letter, const AnalysisSettings& settings) {
  switch (letter) {
    case 'R':
      return settings.RoughnessPcLevel;
    case 'P':
      return settings.PrimaryPcLevel;
    default:
      return settings.WavinessPcLevel;
  }
}

RowResult HighSpotCount(const RowInput& row) {
  if (row.profile.Heights().empty()) return std::nullopt;
  const bool isRoughness = row.profile.Letter() == 'R';
  const double level = isRoughness ? row.settings.RoughnessHSCHeight : row.settings.PrimaryHSCHeight;
  return static_cast<double>(CountHighSpots(row.profile.Heights(), level));
}

RowResult ValleyCount(const RowInput& row) {
  if (row.profile.Heights().empty()) return std::nullopt;
  const bool isRoughness = row.profile.Letter() == 'R';
  const double level = isRoughness ? row.settings.RoughnessVCHeight : row.settings.PrimaryVCHeight;
  return static_cast<double>(CountValleys(row.profile.Heights(), level));
}

RowResult PeakCountPerLength(const RowInput& row) {
  const std::span<const double> z = row.profile.Heights();
  const std::size_t count = CountPeaksThroughBand(z, PeakCountBandUM(row.profile.Letter(), row.settings) * 0.5);
  if (count == 0) return 0.0;
  const double lengthMM = static_cast<double>(z.size() - 1) * row.profile.SpacingMM();
  return static_cast<double>(count) / lengthMM * kPerCentimetre;
}

}  // namespace texturon
