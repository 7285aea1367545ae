// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"
#include "formats/profile_writer.h"

namespace texturon {

/// Line profiles of a surface exchange file (ISO 25178-72), ".X3P": a ZIP container of a description and the numbers,
/// binary or as a list. Of several profiles one is chosen; unmeasured points are interpolated. Digests that do not
/// agree are a warning. Areal measurements and point clouds are refused.
ReadResult ReadExchangeProfile(const ReaderInput& input, ImportedProfile& profile);

/// The description alone, taken out of its container, with the files that it names beside it.
ReadResult ReadExchangeDescription(const ReaderInput& input, ImportedProfile& profile);

/// The container of a line profile: heights as doubles, in metres.
std::string ExchangeProfileBytes(const ProfileToWrite& profile);
FileOutcome WriteExchangeProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts);

}  // namespace texturon
