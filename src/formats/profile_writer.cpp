// SPDX-License-Identifier: Apache-2.0

#include "formats/profile_writer.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/number_text.h"

namespace texturon {

FileOutcome WriteProfileText(std::filesystem::path& path, std::string_view extension, const ProfileToWrite& profile,
                             double spacingStepUM, std::string (*format)(const ProfileToWrite&), Prompts& prompts) {
  path.replace_extension(extension);
  FileOutcome outcome;
  if (profile.heightsUM.empty()) {
    outcome.reason = "is not written: the profile has no points";
  } else if (!std::isfinite(profile.spacingUM) || profile.spacingUM <= spacingStepUM / 2.0) {
    outcome.reason =
        "is not written: the format would hold the point spacing of " + ShortestText(profile.spacingUM) + " um as 0";
  }
  if (!outcome.ok()) {
    prompts.ShowMessage("The file " + outcome.reason + ".");
    return outcome;
  }
  outcome = ReplaceFile(path, format(profile), profile.flush);
  if (!outcome.ok()) prompts.ShowMessage("Could not write file.");
  return outcome;
}

}  // namespace texturon
