// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "formats/profile_reader.h"
#include "formats/profile_writer.h"

namespace texturon {

// The program's own text format: a keyword header (identification, date, spacing, count) and one height in um a line.

/// Reads ".lmt". Keywords are compared without regard to case, heights are separated by any white space. A height that
/// is no number, or not finite, ends the conversion: it and all after it are 0, and a notice says so.
ReadResult ReadNativeProfile(const ReaderInput& input, ImportedProfile& profile);

/// Reads ".LMTH": the same header without heights, which stand in the tab-separated table with the ending ".LMTd"
/// beside it, one row a point. Asks for the column.
ReadResult ReadNativeHeaderWithTable(const ReaderInput& input, ImportedProfile& profile);

/// The bytes of a ".lmt" file. Heights and spacing keep six decimals; line ends are CR LF; line breaks inside the
/// identification become blanks.
std::string NativeProfileText(const ProfileToWrite& profile);

/// Writes a ".lmt" file as WriteFunction says.
FileOutcome WriteNativeProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts);

}  // namespace texturon
