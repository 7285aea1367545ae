// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <compare>
#include <cstdint>
#include <filesystem>
#include <optional>

namespace texturon {

/// What tells one file from another, whatever links and spellings lead to it.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::filesystem::path below;  ///< of what is not there yet: its name from the folder on that device and number tell

  friend auto operator<=>(const FileIdentity&, const FileIdentity&) = default;
};

/// The identity of the file or folder that a path leads to; of one that is not there yet, that of the nearest folder
/// above it and the names from there on (without regard to case where the system has none). Nothing for what keeps no
/// bytes (a device, a pipe) and for a path whose folders cannot be looked into.
std::optional<FileIdentity> IdentityOf(const std::filesystem::path& path);

/// What a chain of symbolic links ends at, which need not exist; any other path as it is.
std::filesystem::path FollowLinks(std::filesystem::path path);

}  // namespace texturon
