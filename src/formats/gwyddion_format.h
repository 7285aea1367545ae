// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// Profiles of a Gwyddion file, ".GWY": curves of its graphs and images of one line, in the units that stand with them.
/// Of several one is chosen; a file of areal images alone is refused.
ReadResult ReadGwyddionProfile(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
