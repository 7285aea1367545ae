// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// The entries of a ZIP container, by its central directory, whose sizes hold where local headers state none. Names
/// stand as the file gives them, "/" between folders. Works on the caller's bytes.
class ZipArchive {
public:
  struct Entry {
    std::string_view name;
    std::string_view packed;
    std::size_t size = 0;  ///< unpacked, as stated
    std::uint32_t crc = 0;
    std::uint16_t method = 0;
    bool isEncrypted = false;
  };
  /// What an entry holds, or why not.
  struct Content {
    std::string bytes;
    std::string reason;
    bool ok() const { return reason.empty(); }
  };

  /// Reads the directory. Where it is damaged there are no entries and `reason` says so.
  explicit ZipArchive(std::string_view bytes);

  const std::string& reason() const { return reason_; }
  std::span<const Entry> entries() const { return entries_; }
  /// The entry of that name, letters of either case; null: there is none.
  const Entry* Find(std::string_view name) const;
  /// The first entry whose name without its folders is that one.
  const Entry* FindInAnyFolder(std::string_view name) const;

  /// Unpacks an entry that is stored or deflated and not above `mostBytes`, which is looked at before anything is
  /// unpacked, and checks its sum.
  static Content Unpack(const Entry& entry, std::size_t mostBytes);

private:
  void ReadDirectory(std::string_view bytes);
  bool Add(std::string_view bytes, std::size_t at, std::size_t nameLength);

  std::vector<Entry> entries_;
  std::string reason_;
};

/// Whether bytes begin as a ZIP container.
bool IsZip(std::string_view bytes);

struct ZipPart {
  std::string_view name;
  std::string_view bytes;
};

/// A ZIP container of stored entries. Its entries bear no time: the same parts give the same bytes.
std::string ZipOf(std::span<const ZipPart> parts);

}  // namespace texturon
