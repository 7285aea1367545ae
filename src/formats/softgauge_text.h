// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// Reads a softgauge of ISO 5436-2, ".SMD": a record of axes, an optional one of conditions, heights, and the sum of
/// all bytes. Incremental X axes give the spacing; positions of absolute ones are resampled where they are uneven. A
/// sum that does not agree is a warning.
ReadResult ReadSoftgauge(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
