// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// Reads a vector of heights from a MATLAB file of version 5, ".MAT": the one called z or profile, else the only one,
/// else one that is chosen. A vector x of as many numbers gives the positions, a number dx the spacing; without either
/// it is asked for. Units are not stated: a warning says what is taken. The container of version 7.3 is refused.
ReadResult ReadMatlabProfile(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
