// SPDX-License-Identifier: Apache-2.0

#include "unattended/watch_journal.h"

#include <charconv>

#include "base/number_text.h"

namespace texturon {
namespace {

constexpr std::string_view kFirstLine = "texturon watch 2";

template <typename Integer>
bool TakeInteger(std::string_view& text, Integer& value) {
  const auto line = TakeLine(text);
  if (!line) return false;
  const auto [end, error] = std::from_chars(line->data(), line->data() + line->size(), value);
  return error == std::errc() && end == line->data() + line->size();
}

/// A text of any bytes: its length on a line, then itself and a line end.
std::string Counted(std::string_view text) {
  return IntegerText(static_cast<std::int64_t>(text.size())) + "\n" + std::string(text) + "\n";
}

bool TakeCounted(std::string_view& text, std::string& value) {
  std::size_t length = 0;
  if (!TakeInteger(text, length) || text.size() <= length || text[length] != '\n') return false;
  value = text.substr(0, length);
  text.remove_prefix(length + 1);
  return true;
}

/// The row alone: the last line of what was to be added.
std::string_view LastLine(std::string_view text) {
  const std::size_t before = text.substr(0, text.size() - 1).rfind('\n');
  return before == std::string_view::npos ? text : text.substr(before + 1);
}

}  // namespace

std::uint64_t ContentHash(std::string_view bytes) {
  std::uint64_t hash = 14695981039346656037ULL;  // FNV-1a
  for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
  return hash;
}

std::string WatchEntryText(const WatchEntry& entry) {
  return std::string(kFirstLine) + "\n" + Counted(entry.file) +
         IntegerText(static_cast<std::int64_t>(entry.stamp.size)) + "\n" + IntegerText(entry.stamp.time) + "\n" +
         IntegerText(static_cast<std::int64_t>(entry.contentHash)) + "\n" + Counted(entry.holdFile) +
         Counted(entry.parameterFile) + IntegerText(static_cast<std::int64_t>(entry.rowAt)) + "\n" +
         Counted(entry.rowText) + Counted(entry.header);
}

std::optional<WatchEntry> ParseWatchEntry(std::string_view text) {
  WatchEntry entry;
  std::int64_t hash = 0;
  if (TakeLine(text) != kFirstLine) return std::nullopt;
  const bool isWhole = TakeCounted(text, entry.file) && TakeInteger(text, entry.stamp.size) &&
                       TakeInteger(text, entry.stamp.time) && TakeInteger(text, hash) &&
                       TakeCounted(text, entry.holdFile) && TakeCounted(text, entry.parameterFile) &&
                       TakeInteger(text, entry.rowAt) && TakeCounted(text, entry.rowText) &&
                       TakeCounted(text, entry.header) && text.empty();
  if (!isWhole) return std::nullopt;
  entry.contentHash = static_cast<std::uint64_t>(hash);
  return entry;
}

FileOutcome EnsureRow(const WatchEntry& entry, AppendFile& file) {
  if (entry.rowText.empty()) return {};
  FileOutcome outcome;
  if (file.size() > entry.rowAt) {
    const auto behind = static_cast<std::size_t>(file.size() - entry.rowAt);
    const std::string tail = file.Read(entry.rowAt, behind);
    if (tail.size() != behind) return {"cannot be read"};
    const bool isThere = tail.find(LastLine(entry.rowText)) != std::string::npos;
    if (isThere) return file.Flush();
    if (std::string_view(entry.rowText).starts_with(tail)) outcome = file.CutTo(entry.rowAt);
  }
  if (!outcome.ok()) return outcome;
  std::string text;
  if (file.size() == entry.rowAt) {
    text = entry.rowText;
  } else {
    if (file.size() == 0) text = entry.header;
    if (file.endsInsideLine()) text = "\r\n";
    text += LastLine(entry.rowText);
  }
  outcome = file.Append(text);
  return outcome.ok() ? file.Flush() : outcome;
}

}  // namespace texturon
