// SPDX-License-Identifier: Apache-2.0

#include "formats/companion_file.h"

#include <string>
#include <system_error>

#include "base/text.h"

namespace texturon {

std::filesystem::path CompanionPath(const std::filesystem::path& path, std::string_view extension) {
  std::string upper(extension);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - ('a' - 'A'));
  }
  std::filesystem::path asWritten = std::filesystem::path(path).replace_extension(extension);
  for (const std::string& spelling : {std::string(extension), LowerAscii(extension), upper}) {
    std::error_code error;
    std::filesystem::path candidate = path;
    if (std::filesystem::exists(candidate.replace_extension(spelling), error)) return candidate;
  }
  return asWritten;
}

}  // namespace texturon
