// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "formats/profile_reader.h"
#include "formats/profile_writer.h"

namespace texturon {

/// Reads ".SDF". The text form's header is read by line position, not by key: with one profile, numbers of data type 7
/// are heights in um as they stand, those of type 5 are divided by the Z scale; with several, and in the binary form, a
/// height is number times Z scale in metres. Data that end early give the points that are there, with a warning; points
/// marked BAD are interpolated.
ReadResult ReadSdfProfile(const ReaderInput& input, ImportedProfile& profile);

/// The bytes of a ".sdf" file: heights in um with six decimals, ten characters of the identification.
std::string SdfProfileText(const ProfileToWrite& profile);
FileOutcome WriteSdfProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts);

}  // namespace texturon
