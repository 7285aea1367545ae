#pragma once

#include <array>

#include "core/profile.h"
#include "core/settings.h"

namespace texturon {

/// Which profiles are shown over each other, by ProfileKind.
using ShownProfiles = std::array<bool, 7>;

/// What the display settings ask for. A number that stands for nothing shows what the default shows.
ShownProfiles ShownProfilesOf(const DisplaySettings& display);
void SetShownProfiles(DisplaySettings& display, const ShownProfiles& shown);

}  // namespace texturon
