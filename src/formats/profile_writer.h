// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <ctime>
#include <filesystem>
#include <span>
#include <string_view>

#include "platform/platform.h"
#include "platform/prompts.h"

namespace texturon {

/// A measured record on its way out: what every writer takes.
struct ProfileToWrite {
  std::span<const double> heightsUM;
  double spacingUM = 0.0;
  std::string_view identification;
  std::tm savedAt{};
  FlushFile flush = FlushFile::kYes;  ///< not needed for a file that is read and removed at once
};

/// A writer gives `path` its own extension whatever it had and writes there. Shows "Could not write file." when that
/// cannot be done, and a sentence of its own for a record that the format cannot hold; a file that stood there before
/// is then unharmed.
using WriteFunction = FileOutcome (*)(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts);

/// Replaces the extension and writes the text that `format` makes of the profile. Refused beforehand: a record without
/// points, and a spacing that is not above 0 once it is rounded to the format's step `spacingStepUM` (0: none).
FileOutcome WriteProfileText(std::filesystem::path& path, std::string_view extension, const ProfileToWrite& profile,
                             double spacingStepUM, std::string (*format)(const ProfileToWrite&), Prompts& prompts);

}  // namespace texturon
