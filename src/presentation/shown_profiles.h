// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "analysis/document.h"
#include "record/profile.h"
#include "settings/settings.h"

namespace texturon {

/// Which curves are shown over each other: the profiles by ProfileKind, and the form that was removed.
using ShownProfiles = std::array<bool, 8>;
inline constexpr std::size_t kShownForm = 7;

/// What the display settings ask for. A number that stands for nothing shows what the default shows.
ShownProfiles ShownProfilesOf(const DisplaySettings& display);
void SetShownProfiles(DisplaySettings& display, const ShownProfiles& shown);

/// The profile whose heights the cursors read: the finest of those shown.
ProfileKind ReadKind(const ShownProfiles& shown);

/// The profile on which steep slopes are marked: the primary, which has the slopes of the surface itself, and where it
/// is not shown the one that the cursors read. Nothing where no profile is shown.
std::optional<ProfileKind> SteepKind(const ShownProfiles& shown);

/// "Primary Profile above 40.0 deg: 3.2 %".
std::string SteepCaption(ProfileKind kind, double degrees, double percent);

/// The form that was removed, where it lies in the measured record: over the samples that it was fitted to, at the
/// measured spacing whatever the residual's is. An empty range before an analysis.
Profile RemovedForm(const Document& document);

/// Whether less than the record is computed over.
bool IsOverStretch(const Document& document);

/// Whether the record beside such a stretch is drawn: where profiles are shown that it joins. Waviness and roughness
/// end with the stretch, and raw data goes on by itself.
bool HasHeightsBeside(const ShownProfiles& shown);

/// What was measured beside the stretch that was computed over, in um above the removed form, which goes on there as
/// steep as it ends: a height for every point of the record, NaN within the stretch. Empty where nothing lies beside.
std::vector<double> HeightsBeside(const Document& document);

}  // namespace texturon
