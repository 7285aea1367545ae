// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace texturon {

/// The file of the same name with another ending, which belongs to `path`: as `extension` is written, else in lower or
/// upper case, because names come from systems that know no difference. Where there is none, as it is written.
std::filesystem::path CompanionPath(const std::filesystem::path& path, std::string_view extension);

/// The second file that the readers of this file's extension take heights or texts from; nothing where there is none.
std::optional<std::filesystem::path> CompanionOf(const std::filesystem::path& path);

}  // namespace texturon
