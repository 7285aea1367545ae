// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <vector>

namespace texturon {

// Several profiles over each other, on one common axis X in um.

/// A profile with its place there.
struct OverlaidProfile {
  std::span<const double> heightsUM;  ///< they must outlive this
  double spacingUM = 0.0;             ///< above 0
  double startUM = 0.0;               ///< X of the first point

  double EndUM() const { return startUM + static_cast<double>(heightsUM.size() - 1) * spacingUM; }
};

/// All first points at 0.
void AlignByStart(std::span<OverlaidProfile> profiles);

/// The places `cursorsUM`, one a profile, counted from its own first point, over each other; the first profile starts
/// at 0.
void AlignByCursor(std::span<OverlaidProfile> profiles, std::span<const double> cursorsUM);

/// Each profile where it correlates best with the first, which starts at 0, over at least half of the shorter of the
/// two; moved by whole points of the first, in whose spacing the others are interpolated for it. One that correlates
/// nowhere (flat, or shorter than four points) starts at 0. Returns the coefficients, 0 for these, 1 for the first.
std::vector<double> AlignByCorrelation(std::span<OverlaidProfile> profiles);

/// Heights on even steps of X.
struct OverlaidCurve {
  double startUM = 0.0;
  double spacingUM = 0.0;
  std::vector<double> heightsUM;
};

/// Of the stretch that all profiles have, in the spacing of the first, heights between points by straight lines.
struct ProfileBand {
  OverlaidCurve mean;
  std::vector<double> lowestUM;  ///< the band of extremes, at the places of the mean
  std::vector<double> highestUM;
};
/// Empty without profiles and where the stretch has fewer than two points.
std::optional<ProfileBand> BandOf(std::span<const OverlaidProfile> profiles);

/// First minus second over the stretch that both have, in the spacing of the first. Empty as above.
std::optional<OverlaidCurve> DifferenceOf(const OverlaidProfile& first, const OverlaidProfile& second);

}  // namespace texturon
