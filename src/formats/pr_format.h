// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "formats/profile_reader.h"
#include "formats/profile_writer.h"

namespace texturon {

/// Reads PTB PR files: a name line, a line of length, resolution (points per mm) and count in its old or new wording
/// and whatever character set, then heights in um. The spacing is 1000 / resolution; the length serves only where the
/// resolution is not above 0, and a length that contradicts it is a warning.
ReadResult ReadPrProfile(const ReaderInput& input, ImportedProfile& profile);

/// The bytes of a ".pr" file, Windows-1252. The spacing keeps what two decimals of points per mm keep of it.
std::string PrProfileText(const ProfileToWrite& profile);
FileOutcome WritePrProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts);

}  // namespace texturon
