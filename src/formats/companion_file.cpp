// SPDX-License-Identifier: Apache-2.0

#include "formats/companion_file.h"

#include <string>
#include <system_error>

#include "base/text.h"
#include "platform/platform.h"

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

std::optional<std::filesystem::path> CompanionOf(const std::filesystem::path& path) {
  constexpr struct {
    std::string_view extension;
    std::string_view companion;
  } kCompanions[] = {{".LMTH", ".LMTd"}, {".TX1", ".tx3"}, {".TX2", ".tx3"}};
  const std::string extension = TextFromPath(path.extension());
  for (const auto& row : kCompanions) {
    if (EqualIgnoringCase(extension, row.extension)) return CompanionPath(path, row.companion);
  }
  return std::nullopt;
}

}  // namespace texturon
