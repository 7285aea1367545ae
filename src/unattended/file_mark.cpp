// SPDX-License-Identifier: Apache-2.0

#include "unattended/file_mark.h"

#include <charconv>
#include <cstring>
#include <system_error>

#include "platform/platform.h"

namespace texturon {
std::optional<FileStamp> StampOf(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  FileStamp stamp;
  stamp.size = std::filesystem::file_size(path, error);
  if (error) return std::nullopt;
  stamp.time = static_cast<std::int64_t>(std::filesystem::last_write_time(path, error).time_since_epoch().count());
  if (error) return std::nullopt;
  return stamp;
}

std::uint64_t ContentMark(std::string_view bytes) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15ULL;
  std::uint64_t mark = kFactor ^ bytes.size();
  const auto mix = [&mark](std::uint64_t word) {
    mark = (mark ^ word) * kFactor;
    mark ^= mark >> 32;
  };
  for (; bytes.size() >= sizeof(std::uint64_t); bytes.remove_prefix(sizeof(std::uint64_t))) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data(), sizeof word);
    mix(word);
  }
  std::uint64_t rest = 0;
  for (const char c : bytes) rest = rest << 8 | static_cast<unsigned char>(c);
  mix(rest);
  return mark;
}

std::optional<std::uint64_t> ContentMarkOf(const std::filesystem::path& path) {
  const FileBytes content = ReadRegularFile(path);
  if (!content.ok()) return std::nullopt;
  return ContentMark(content.bytes);
}

std::string EscapedName(std::string_view name) {
  std::string field;
  for (const char c : name) {
    if (c == '\\' || c == '\n') field += '\\';
    field += c == '\n' ? 'n' : c;
  }
  return field;
}

std::string UnescapedName(std::string_view field) {
  std::string name;
  for (std::size_t i = 0; i < field.size(); ++i) {
    const bool isEscape = field[i] == '\\' && i + 1 < field.size();
    if (isEscape) ++i;
    name += isEscape && field[i] == 'n' ? '\n' : field[i];
  }
  return name;
}

std::optional<std::string_view> TakeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

bool TakeNumber(std::string_view& line, std::int64_t& value) {
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), value);
  const auto length = static_cast<std::size_t>(end - line.data());
  if (error != std::errc() || length >= line.size() || line[length] != '\t') return false;
  line.remove_prefix(length + 1);
  return true;
}

}  // namespace texturon
