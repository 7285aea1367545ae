#pragma once

#include <cstddef>
#include <string>

#include "formats/profile_reader.h"

namespace texturon {

/// Asks for the point spacing, preset with the caller's or else with `presetUM`, and puts it into the profile with a
/// warning that it is not the file's. False: cancelled, or no number above 0.
bool AskSpacing(const ReaderInput& input, double presetUM, ImportedProfile& profile);

/// Asks which of `columns` columns of heights to take, unless there is only one; from 1.
std::size_t AskHeightColumn(const ReaderInput& input, std::size_t columns);

/// Shows `message` and refuses with it, naming the line.
ReadResult RefuseAtLine(const ReaderInput& input, std::size_t line, std::string_view message);

/// Warns where the file says another number of points than it holds.
void WarnOfCount(double stated, ImportedProfile& profile);

}  // namespace texturon
