// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace texturon {

// What a batch writes beside its rows, and how a later run knows it again.

/// A line of the failures file: path, tab, reason (Windows-1252), in UTF-8. A tab, a line break or a backslash in a
/// path is an escape (\t, \n, \r, \\), but where backslashes part the names of a path none of the others can be in it.
std::string FailureLine(const std::filesystem::path& file, std::string_view reason);

/// Whether a file is not there, empty or, by its first lines, a failures file, a summary of a batch or a file for
/// statistics programs.
bool IsFailuresFile(const std::filesystem::path& path);
bool IsSummaryFile(const std::filesystem::path& path);
bool IsQdasFile(const std::filesystem::path& path);

/// The file beside a parameter file that tells where its rows come from, what it begins with, and whether one is there
/// or none.
std::filesystem::path ProvenanceFileOf(const std::filesystem::path& parameterFile);
inline constexpr std::string_view kProvenanceStart = "{\"program\": {";
bool IsProvenanceFile(const std::filesystem::path& path);

}  // namespace texturon
