// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// Reads a Digital Surf binary profile, ".PRO": a header of 512 bytes, comment and private zone, then integers of 16 or
/// 32 bits as they are or packed in streams. Of several objects one is chosen. Objects that are no profile, and
/// profiles whose axes are no length, are recognised and refused by their name.
ReadResult ReadDigitalSurfProfile(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
