// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string>
#include <string_view>

#include "record/profile.h"

namespace texturon {

/// Where the figures of an export come from. Texts are Windows-1252 and stand in quotes as they are.
struct ExportSource {
  std::string_view file;
  std::string_view identification;
};

/// The lines `"File:", "..."` and `"Identification:", "..."` and an empty line, with which every export begins.
std::string ExportHead(const ExportSource& source);

/// `text` in quotes on a line of its own; its line breaks become blanks.
std::string QuotedLine(std::string_view text);

/// "Short Cutoff = 0.0025 mm", which stands on the settings line of what comes from the primary profile.
std::string ShortCutoffText(double cutoffMM);

/// What an export of a profile says of the analysis behind it.
struct ProfileExportTexts {
  std::string_view description;  ///< form, filter and cutoffs in one line
  std::string_view formCaption;
  std::string_view filterText;
  double shortCutoffMM = 0.0;
  double ballRadiusMM = 0.0;  ///< of the closing or opening
};

/// A profile over its range as comma-separated text with CR LF line ends: head, title, the settings lines of its kind,
/// number of points, titles, units and a row a point with X in mm from the record's first sample and height in um, both
/// with six decimals.
std::string ProfileExport(const Profile& profile, const ExportSource& source, const ProfileExportTexts& texts);

}  // namespace texturon
