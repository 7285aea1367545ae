// SPDX-License-Identifier: Apache-2.0

#include "platform/file_identity.h"

#include <system_error>

#include "base/text.h"
#include "platform/platform.h"
#include "platform/system_calls.h"

namespace texturon {
namespace {

constexpr int kMostLinks = 40;

/// Names that lead to one file of a folder, as one.
std::filesystem::path Folded(const std::filesystem::path& names) {
#ifdef _WIN32
  return PathFromSystemText(LowerAscii(SystemTextFromPath(names)));
#else
  return names;
#endif
}

}  // namespace

std::filesystem::path FollowLinks(std::filesystem::path path) {
  std::error_code error;
  for (int i = 0; i < kMostLinks && std::filesystem::is_symlink(path, error); ++i) {
    const std::filesystem::path target = std::filesystem::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / target;
  }
  return path;
}

std::optional<FileIdentity> IdentityOf(const std::filesystem::path& path) {
  std::error_code error;
  const std::filesystem::path whole = std::filesystem::absolute(FollowLinks(path), error);
  if (error || path.empty()) return std::nullopt;
  // From the whole path up: what is there, and the names below it.
  std::filesystem::path below;
  for (std::filesystem::path there = whole;; there = there.parent_path()) {
    FileStatus status;
    if (ReadStatusAt(there, LastLink::kFollowed, status)) {
      if (!status.isDirectory && !(status.isRegular && below.empty())) return std::nullopt;
      if (status.device == 0 && status.number == 0) return std::nullopt;
      return FileIdentity{status.device, status.number, Folded(below.lexically_normal())};
    }
    if (!there.has_relative_path()) return std::nullopt;
    below = below.empty() ? there.filename() : there.filename() / below;
  }
}

}  // namespace texturon
