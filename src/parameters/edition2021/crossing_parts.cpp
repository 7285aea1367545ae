// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/crossing_parts.h"

#include <algorithm>
#include <cmath>

namespace texturon {
namespace {

bool CrossesBefore(std::span<const double> z, std::size_t i) {
  return (z[i - 1] <= 0.0 && z[i] > 0.0) || (z[i - 1] >= 0.0 && z[i] < 0.0);
}

/// A hill or dale with all that joined it.
struct JoinedPart {
  bool isHill = false;
  bool startsAtCrossing = false;
  double start = 0.0;    ///< place of the crossing, in points
  double extreme = 0.0;  ///< height of the most extreme point of its own side
};

std::vector<JoinedPart> JoinParts(std::span<const double> z, const PartThresholds& thresholds) {
  std::vector<JoinedPart> joined;
  for (const CrossingPart& part : FindCrossingParts(z)) {
    const double height = z[part.extreme];
    const bool isHill = height > 0.0;
    const bool isSignificant = height != 0.0 && (isHill ? height >= thresholds.peak : -height >= thresholds.pit);
    if (!isSignificant) continue;
    if (!joined.empty() && joined.back().isHill == isHill) {
      double& extreme = joined.back().extreme;
      extreme = isHill ? std::max(extreme, height) : std::min(extreme, height);
      continue;
    }
    JoinedPart begun{.isHill = isHill, .startsAtCrossing = part.first > 0, .extreme = height};
    if (begun.startsAtCrossing) {
      const double before = z[part.first - 1];
      begun.start = static_cast<double>(part.first - 1) + before / (before - z[part.first]);
    }
    joined.push_back(begun);
  }
  return joined;
}

void AppendElements(std::span<const double> z, const PartThresholds& thresholds,
                    std::vector<CrossingElement>& elements) {
  const std::vector<JoinedPart> parts = JoinParts(z, thresholds);
  // The last part ends with the record, not at a crossing.
  for (std::size_t i = 0; i + 2 < parts.size(); ++i) {
    if (!parts[i].isHill || !parts[i].startsAtCrossing) continue;
    elements.push_back({parts[i + 2].start - parts[i].start, parts[i].extreme - parts[i + 1].extreme});
  }
}

}  // namespace

std::vector<CrossingPart> FindCrossingParts(std::span<const double> z) {
  std::vector<CrossingPart> parts;
  for (std::size_t i = 0; i < z.size(); ++i) {
    if (i == 0 || CrossesBefore(z, i)) parts.push_back({i, i, i});
    CrossingPart& part = parts.back();
    part.last = i;
    if (std::abs(z[i]) > std::abs(z[part.extreme])) part.extreme = i;
  }
  return parts;
}

std::optional<SectionHeights> MeanSectionHeights(std::span<const double> z, std::span<const CrossingPart> parts,
                                                 std::size_t sections) {
  if (sections < 1 || z.size() < sections) return std::nullopt;
  const std::size_t pointsEach = z.size() / sections;
  std::vector<double> peaks(sections);
  std::vector<double> pits(sections);
  for (const CrossingPart& part : parts) {
    const std::size_t section = part.extreme / pointsEach;
    if (section >= sections) continue;
    const double height = z[part.extreme];
    peaks[section] = std::max(peaks[section], height);
    pits[section] = std::max(pits[section], -height);
  }
  SectionHeights means;
  for (std::size_t section = 0; section < sections; ++section) {
    means.peak += peaks[section];
    means.pit += pits[section];
  }
  means.peak /= static_cast<double>(sections);
  means.pit /= static_cast<double>(sections);
  return means;
}

std::vector<CrossingElement> FindCrossingElements(std::span<const double> z, const PartThresholds& thresholds) {
  std::vector<CrossingElement> elements;
  AppendElements(z, thresholds, elements);
  const std::vector<double> mirrored(z.rbegin(), z.rend());
  AppendElements(mirrored, thresholds, elements);
  return elements;
}

}  // namespace texturon
