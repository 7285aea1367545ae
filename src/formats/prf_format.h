// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "formats/profile_reader.h"
#include "formats/profile_writer.h"

namespace texturon {

// Taylor Hobson profile files in their text form: records of axes, of stylus radius and spacing, and of integer
// heights.

/// Reads ".PRF" text. The spacing is that of the SPACING line, in whose absence the scale of the X axis; heights are
/// stored counts times the scale and unit of the Z axis. Of a record with more points than fit, every k-th is taken
/// with the smallest k that fits, and the spacing is k times as wide. The binary form is recognised and refused.
ReadResult ReadPrfProfile(const ReaderInput& input, ImportedProfile& profile);

/// The bytes of a ".prf" file. Heights keep 1e-5 um; the name keeps six characters of the identification, blanks and
/// full stops as underscores.
std::string PrfProfileText(const ProfileToWrite& profile);
FileOutcome WritePrfProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts);

}  // namespace texturon
