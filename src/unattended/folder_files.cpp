// SPDX-License-Identifier: Apache-2.0

#include "unattended/folder_files.h"

#include <algorithm>
#include <system_error>

#include "base/text.h"
#include "formats/extension_table.h"
#include "platform/platform.h"
#include "unattended/output_list.h"

namespace texturon {
namespace {

bool IsReadable(const std::filesystem::path& path) {
  const std::string extension = TextFromPath(path.extension());
  const auto table = ExtensionTable();
  return std::any_of(table.begin(), table.end(), [&extension](const ExtensionEntry& entry) {
    return EqualIgnoringCase(entry.extension, extension);
  });
}

}  // namespace

bool MatchesMask(std::string_view name, std::string_view mask) {
  if (mask == "*.*") return true;
  std::size_t at = 0;
  std::size_t inMask = 0;
  std::size_t star = std::string_view::npos;
  std::size_t afterStar = 0;
  while (at < name.size()) {
    if (inMask < mask.size() && mask[inMask] == '*') {
      star = ++inMask;
      afterStar = at;
    } else if (inMask < mask.size() && (mask[inMask] == '?' || LowerAscii(mask[inMask]) == LowerAscii(name[at]))) {
      ++inMask;
      ++at;
    } else if (star != std::string_view::npos) {
      inMask = star;
      at = ++afterStar;
    } else {
      return false;
    }
  }
  return mask.substr(inMask).find_first_not_of('*') == std::string_view::npos;
}

FolderFiles ListFolder(const std::filesystem::path& folder, std::string_view mask) {
  FolderFiles result;
  std::error_code error;
  std::filesystem::directory_iterator entries(folder, error);
  while (!error && entries != std::filesystem::directory_iterator()) {
    const std::string name = TextFromPath(entries->path().filename());
    std::error_code gone;
    const bool isFile = entries->is_regular_file(gone) && !gone;
    if (isFile && !name.starts_with('.') && MatchesMask(name, mask)) result.files.push_back(entries->path());
    entries.increment(error);
  }
  if (error) result.reason = "cannot be read as a folder (" + error.message() + ")";
  std::sort(result.files.begin(), result.files.end(),
            [](const auto& a, const auto& b) { return a.filename().native() < b.filename().native(); });
  return result;
}

FolderFiles FilesToAnalyse(const std::filesystem::path& folder, std::string_view mask,
                           std::span<const std::filesystem::path> outputs) {
  FolderFiles result = ListFolder(folder, mask.empty() ? "*" : mask);
  const OutputList written(folder);
  std::erase_if(result.files, [&](const std::filesystem::path& path) {
    const bool isOurs = std::any_of(outputs.begin(), outputs.end(), [&path](const std::filesystem::path& output) {
      std::error_code error;
      return !output.empty() && std::filesystem::equivalent(path, output, error);
    });
    return isOurs || (mask.empty() && !IsReadable(path)) || written.Holds(path);
  });
  return result;
}

}  // namespace texturon
