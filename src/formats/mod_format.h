// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// Reads Taylor Hobson form data, ".MOD" text: as many positions as record 2 says in NUMBER_MOD_POINTS, then as many
/// heights. Uneven positions are resampled to their mean step. The identification is made as for ".PRF".
ReadResult ReadModProfile(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
