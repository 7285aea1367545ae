// SPDX-License-Identifier: Apache-2.0

#include "parameters/void_convexity.h"

#include <algorithm>

#include "base/units.h"
#include "signal/envelope/morphological_envelope.h"

namespace texturon {
namespace {

constexpr double kCentimetresPerMicrometre = 0.0001;
constexpr double kSquareMillimetresPerSquareMicrometre = 1e-6;

/// Either envelope, made on first request.
template <typename Envelope, typename Make>
const Samples& EnvelopeOf(const RowInput& row, const Make& make, double radiusMM) {
  const ParameterProfile& profile = row.profile;
  const auto compute = [&] {
    Envelope result;
    result.envelopeUM.resize(profile.Heights().size());
    const double radiusUM = radiusMM * kMicrometresPerMillimetre;
    if (!make(profile.Heights(), result.envelopeUM, profile.SpacingUM(), radiusUM)) result.envelopeUM.clear();
    return result;
  };
  return profile.Cached<Envelope>(compute).envelopeUM;
}

/// Null without an envelope.
const VoidWalk* VoidsOf(const RowInput& row) {
  const auto& closing = EnvelopeOf<ClosingOfProfile>(row, ClosingEnvelope, row.settings.ClosingRadiusForWvoid);
  if (closing.empty()) return nullptr;
  const ParameterProfile& profile = row.profile;
  return &profile.Cached<VoidWalk>([&] { return WalkVoids(profile.Heights(), closing, profile.SpacingUM()); });
}

const BumpWalk* BumpsOf(const RowInput& row) {
  const auto& opening = EnvelopeOf<OpeningOfProfile>(row, OpeningEnvelope, row.settings.OpeningRadiusForWcvx);
  if (opening.empty()) return nullptr;
  const ParameterProfile& profile = row.profile;
  return &profile.Cached<BumpWalk>([&] { return WalkBumps(profile.Heights(), opening); });
}

NoValue NoEnvelope(const RowInput& row) {
  return row.profile.Heights().empty() ? NoValue{Why::kFewPoints, {1.0}} : NoValue{Why::kMemoryFull};
}

/// A sum over the complete voids divided by all starts.
RowResult MeanOverStarts(const RowInput& row, double VoidWalk::*sum) {
  const VoidWalk* voids = VoidsOf(row);
  if (voids == nullptr) return NoEnvelope(row);
  if (voids->starts == 0) return NoValue{Why::kNoVoid};
  return voids->*sum / static_cast<double>(voids->starts);
}

}  // namespace

VoidWalk WalkVoids(std::span<const double> z, std::span<const double> e, double spacingUM) {
  VoidWalk walk;
  if (z.empty()) return walk;
  walk.deepestGap = e[0] - z[0];
  double sum = walk.deepestGap;
  std::size_t start = 0;
  double depth = 0.0;  // of the void that is open, and its sum of gaps
  double gaps = 0.0;
  for (std::size_t i = 1; i < z.size(); ++i) {
    const double gap = e[i] - z[i];
    sum += gap;
    if (gap > walk.deepestGap) {
      walk.deepestGap = gap;
      walk.deepestAt = i;
    }
    if (z[i - 1] == e[i - 1] && z[i] < e[i]) {
      start = i - 1;
      ++walk.starts;
      depth = gap;
      gaps = gap;
    } else if (z[i] < e[i]) {
      depth = std::max(depth, gap);
      gaps += gap;
    } else if (z[i - 1] < e[i - 1] && start >= 1 && i - start >= 3) {
      const double length = static_cast<double>(i - start + 1) * spacingUM;
      const auto ends = static_cast<double>(start + i);
      walk.sumOfDepths += depth;
      walk.sumOfLengths += length;
      walk.sumOfAspects += depth / length;
      walk.sumOfAreas += gaps / (ends + 1.0) * ends * spacingUM;
    }
  }
  walk.meanGap = sum / static_cast<double>(z.size());
  return walk;
}

BumpWalk WalkBumps(std::span<const double> z, std::span<const double> e) {
  BumpWalk walk;
  if (z.empty()) return walk;
  walk.highest = z[0] - e[0];
  bool isOpen = false;
  std::size_t start = 0;
  double height = 0.0;
  for (std::size_t i = 1; i < z.size(); ++i) {
    const double gap = z[i] - e[i];
    if (gap > walk.highest) {
      walk.highest = gap;
      walk.highestAt = i;
    }
    if (z[i - 1] == e[i - 1] && z[i] > e[i]) {
      isOpen = true;
      start = i - 1;
      height = gap;
    } else if (z[i] > e[i]) {
      height = std::max(height, gap);
    } else if (z[i - 1] > e[i - 1] && isOpen && i - start > 2) {
      walk.sumOfHeights += height;
      ++walk.complete;
    }
  }
  return walk;
}

RowResult MeanVoidGap(const RowInput& row) {
  const VoidWalk* voids = VoidsOf(row);
  if (voids == nullptr) return NoEnvelope(row);
  return voids->meanGap;
}

RowResult DeepestVoid(const RowInput& row) {
  const VoidWalk* voids = VoidsOf(row);
  if (voids == nullptr) return NoEnvelope(row);
  return voids->deepestGap;
}

RowResult DeepestVoidPlace(const RowInput& row) {
  const VoidWalk* voids = VoidsOf(row);
  if (voids == nullptr) return NoEnvelope(row);
  return static_cast<double>(voids->deepestAt) * row.profile.SpacingUM() * kMillimetresPerMicrometre;
}

RowResult VoidsPerLength(const RowInput& row) {
  const VoidWalk* voids = VoidsOf(row);
  if (voids == nullptr) return NoEnvelope(row);
  const auto points = static_cast<double>(row.profile.Heights().size());
  return static_cast<double>(voids->starts) / (points * row.profile.SpacingUM() * kCentimetresPerMicrometre);
}

RowResult MeanVoidAspect(const RowInput& row) {
  return MeanOverStarts(row, &VoidWalk::sumOfAspects);
}

RowResult MeanVoidLength(const RowInput& row) {
  const auto lengthUM = MeanOverStarts(row, &VoidWalk::sumOfLengths);
  if (!lengthUM) return lengthUM;
  return *lengthUM * kMillimetresPerMicrometre;
}

RowResult MeanVoidDepth(const RowInput& row) {
  return MeanOverStarts(row, &VoidWalk::sumOfDepths);
}

RowResult MeanVoidArea(const RowInput& row) {
  const auto areaUM2 = MeanOverStarts(row, &VoidWalk::sumOfAreas);
  if (!areaUM2) return areaUM2;
  return *areaUM2 * kSquareMillimetresPerSquareMicrometre;
}

RowResult HighestBump(const RowInput& row) {
  const BumpWalk* bumps = BumpsOf(row);
  if (bumps == nullptr) return NoEnvelope(row);
  return bumps->highest;
}

RowResult MeanBumpHeight(const RowInput& row) {
  const BumpWalk* bumps = BumpsOf(row);
  if (bumps == nullptr) return NoEnvelope(row);
  if (bumps->complete == 0) return NoValue{Why::kNoBump};
  return bumps->sumOfHeights / static_cast<double>(bumps->complete);
}

RowResult HighestBumpPlace(const RowInput& row) {
  const BumpWalk* bumps = BumpsOf(row);
  if (bumps == nullptr) return NoEnvelope(row);
  return static_cast<double>(bumps->highestAt) * row.profile.SpacingUM() * kMillimetresPerMicrometre;
}

}  // namespace texturon
