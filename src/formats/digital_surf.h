// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// Reads a Digital Surf binary profile, ".PRO", not compressed: a header of 512 bytes, comment and private zone, then
/// integers of 16 or 32 bits. Objects that are no profile, compressed ones, and profiles whose heights are no length
/// are recognised and refused.
ReadResult ReadDigitalSurfProfile(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
