// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// Reads the binary file of a stylus profiler, ".OPDX": named items in nested containers. Of several curves one is
/// chosen. The spacing is extent / (points - 1), heights are numbers times the curve's own scale; what the measurement
/// settings state of either is nominal. Surfaces are refused.
ReadResult ReadOpdxProfile(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
