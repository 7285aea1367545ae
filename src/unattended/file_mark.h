// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace texturon {

// How files are known again, and the lines of the lists that are kept of them.

/// Size and time of a file: while they stand still, nobody writes it.
struct FileStamp {
  std::uintmax_t size = 0;
  std::int64_t time = 0;  ///< ticks of the file system's clock

  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// Nothing for what is no regular file.
std::optional<FileStamp> StampOf(const std::filesystem::path& path);

/// Tells a content from another. Eight bytes a step: a batch takes it of every file.
std::uint64_t ContentMark(std::string_view bytes);
/// Of a regular file; nothing for one that cannot be read.
std::optional<std::uint64_t> ContentMarkOf(const std::filesystem::path& path);

/// A name of any bytes as a field of a line: a line end and a backslash become \n and \\.
std::string EscapedName(std::string_view name);
std::string UnescapedName(std::string_view field);

/// The next line of a list, without its end; nothing when no whole one is left.
std::optional<std::string_view> TakeLine(std::string_view& text);

/// Takes a whole number and the tab behind it off the start of a line. False: there is none.
bool TakeNumber(std::string_view& line, std::int64_t& value);

}  // namespace texturon
