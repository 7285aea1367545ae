// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_writer.h"

namespace texturon {

/// The text of a softgauge (ISO 5436-2), ".SMD": an incremental profile in um, all digits. It is ASCII: other letters
/// of the identification become underscores.
std::string SoftgaugeText(const ProfileToWrite& profile);

FileOutcome WriteSoftgauge(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts);

}  // namespace texturon
