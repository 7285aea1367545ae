// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string_view>

namespace texturon {

/// The file of the same name with another ending, which belongs to `path`: as `extension` is written, else in lower or
/// upper case, because names come from systems that know no difference. Where there is none, as it is written.
std::filesystem::path CompanionPath(const std::filesystem::path& path, std::string_view extension);

}  // namespace texturon
