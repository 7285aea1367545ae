// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "formats/profile_reader.h"

namespace texturon {

/// Asks for the point spacing, preset with the caller's or else with `presetUM`, and puts it into the profile, whose
/// heights are already there, with a warning that it is not the file's. Who cancels is asked for the trace length
/// instead. False: neither is a number above 0. `origin`: where `presetUM` comes from, a sentence; empty: from nowhere.
bool AskSpacing(const ReaderInput& input, double presetUM, ImportedProfile& profile, std::string_view origin = {});

/// Asks which of a table's `columns` columns to take, from 1, and notes the answer in the profile. `titles`: as many,
/// or none.
std::size_t AskColumn(const ReaderInput& input, std::size_t columns, ImportedProfile& profile,
                      std::span<const std::string> titles = {});

/// The same, unless there is only one.
std::size_t AskHeightColumn(const ReaderInput& input, std::size_t columns, ImportedProfile& profile,
                            std::span<const std::string> titles = {});

/// What stands beside a question about a file: its name.
std::string BesideQuestion(const ReaderInput& input);

/// What is said of a file whose layout is recognised, but not known well enough to be read.
std::string NotReadYet(std::string_view layout);

/// Shows `message` and refuses with it, naming the line.
ReadResult RefuseAtLine(const ReaderInput& input, std::size_t line, std::string_view message);
/// The same of the file as a whole.
ReadResult Refuse(const ReaderInput& input, std::string_view message);

/// Warns where the file says another number of points than it holds.
void WarnOfCount(double stated, ImportedProfile& profile);

}  // namespace texturon
