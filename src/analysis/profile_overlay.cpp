// SPDX-License-Identifier: Apache-2.0

#include "analysis/profile_overlay.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/units.h"
#include "signal/correlation.h"

namespace texturon {
namespace {

constexpr double kSlack = 1e-9;  // of a step: places that are the same but for rounding

/// Height at X, which lies within the profile but for rounding.
double HeightAt(const OverlaidProfile& profile, double x) {
  const auto last = static_cast<double>(profile.heightsUM.size() - 1);
  const double place = std::clamp((x - profile.startUM) / profile.spacingUM, 0.0, last);
  const double nearest = std::round(place);
  if (std::abs(place - nearest) <= kSlack) return profile.heightsUM[static_cast<std::size_t>(nearest)];
  const auto i = static_cast<std::size_t>(place);
  const double weight = place - std::floor(place);
  return profile.heightsUM[i] + weight * (profile.heightsUM[i + 1] - profile.heightsUM[i]);
}

/// Points of the first profile's grid that lie in all of them.
struct CommonGrid {
  double startUM = 0.0;
  double spacingUM = 0.0;
  std::size_t count = 0;

  double At(std::size_t i) const { return startUM + static_cast<double>(i) * spacingUM; }
};

std::optional<CommonGrid> GridOf(std::span<const OverlaidProfile> profiles) {
  if (profiles.empty()) return std::nullopt;
  const OverlaidProfile& grid = profiles.front();
  double from = grid.startUM;
  double to = INFINITY;
  for (const OverlaidProfile& profile : profiles) {
    if (profile.heightsUM.empty()) return std::nullopt;
    from = std::max(from, profile.startUM);
    to = std::min(to, profile.EndUM());
  }
  const double first = std::ceil((from - grid.startUM) / grid.spacingUM - kSlack);
  const double last = std::floor((to - grid.startUM) / grid.spacingUM + kSlack);
  if (!(last - first >= 1.0)) return std::nullopt;
  return CommonGrid{grid.startUM + first * grid.spacingUM, grid.spacingUM, static_cast<std::size_t>(last - first) + 1};
}

/// The profile in another spacing, from its first point on.
std::vector<double> InSpacing(const OverlaidProfile& profile, double spacingUM) {
  if (profile.spacingUM == spacingUM) return {profile.heightsUM.begin(), profile.heightsUM.end()};
  const double lengthUM = static_cast<double>(profile.heightsUM.size() - 1) * profile.spacingUM;
  std::vector<double> heights(static_cast<std::size_t>(WholePartsOfLength(lengthUM, spacingUM)) + 1);
  const OverlaidProfile fromZero{profile.heightsUM, profile.spacingUM, 0.0};
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = HeightAt(fromZero, static_cast<double>(i) * spacingUM);
  return heights;
}

}  // namespace

void AlignByStart(std::span<OverlaidProfile> profiles) {
  for (OverlaidProfile& profile : profiles) profile.startUM = 0.0;
}

void AlignByCursor(std::span<OverlaidProfile> profiles, std::span<const double> cursorsUM) {
  for (std::size_t k = 0; k < profiles.size(); ++k) profiles[k].startUM = cursorsUM.front() - cursorsUM[k];
}

std::vector<double> AlignByCorrelation(std::span<OverlaidProfile> profiles) {
  AlignByStart(profiles);
  std::vector<double> coefficients(profiles.size(), 0.0);
  if (profiles.empty()) return coefficients;
  coefficients.front() = 1.0;
  const OverlaidProfile& first = profiles.front();
  for (std::size_t k = 1; k < profiles.size(); ++k) {
    if (profiles[k].heightsUM.empty()) continue;
    const std::vector<double> other = InSpacing(profiles[k], first.spacingUM);
    const auto best = FindBestLag(first.heightsUM, other, std::min(first.heightsUM.size(), other.size()) / 2);
    if (!best) continue;
    profiles[k].startUM = static_cast<double>(best->lag) * first.spacingUM;
    coefficients[k] = best->correlation;
  }
  return coefficients;
}

std::optional<ProfileBand> BandOf(std::span<const OverlaidProfile> profiles) {
  const auto grid = GridOf(profiles);
  if (!grid) return std::nullopt;
  ProfileBand band{.mean = {grid->startUM, grid->spacingUM, std::vector<double>(grid->count)},
                   .lowestUM = std::vector<double>(grid->count, INFINITY),
                   .highestUM = std::vector<double>(grid->count, -INFINITY)};
  for (const OverlaidProfile& profile : profiles) {
    for (std::size_t i = 0; i < grid->count; ++i) {
      const double height = HeightAt(profile, grid->At(i));
      band.mean.heightsUM[i] += height;
      band.lowestUM[i] = std::min(band.lowestUM[i], height);
      band.highestUM[i] = std::max(band.highestUM[i], height);
    }
  }
  for (double& height : band.mean.heightsUM) height /= static_cast<double>(profiles.size());
  return band;
}

std::optional<OverlaidCurve> DifferenceOf(const OverlaidProfile& first, const OverlaidProfile& second) {
  const auto grid = GridOf(std::array{first, second});
  if (!grid) return std::nullopt;
  OverlaidCurve difference{grid->startUM, grid->spacingUM, std::vector<double>(grid->count)};
  for (std::size_t i = 0; i < grid->count; ++i) {
    difference.heightsUM[i] = HeightAt(first, grid->At(i)) - HeightAt(second, grid->At(i));
  }
  return difference;
}

}  // namespace texturon
