// SPDX-License-Identifier: Apache-2.0

#include "base/ini_file.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace texturon {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kLineEnd = "\r\n";

bool IsLineEnd(char c) {
  return c == '\r' || c == '\n';
}

bool IsQuoted(std::string_view value) {
  return value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.front() == value.back();
}

std::string_view WithoutQuotes(std::string_view value) {
  return IsQuoted(value) ? value.substr(1, value.size() - 2) : value;
}

// The text after the '=' that reads back as `value`.
std::string WrittenValue(std::string_view value) {
  std::string written(value);
  std::replace_if(written.begin(), written.end(), IsLineEnd, ' ');
  if (TrimBlanks(written).size() != written.size() || IsQuoted(written)) written = '"' + written + '"';
  return written;
}

std::uint32_t HashOfKey(std::size_t section, std::string_view key) {
  std::uint64_t hash = 14695981039346656037ULL ^ section;  // FNV-1a
  for (const char c : key) hash = (hash ^ static_cast<unsigned char>(LowerAscii(c))) * 1099511628211ULL;
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

}  // namespace

IniFile::IniFile(std::string bytes) : pool_(std::move(bytes)), sections_(1), slots_(16) {
  std::size_t number = 1;
  const std::size_t size = pool_.size();
  std::size_t begin = 0;
  if (pool_.starts_with(kByteOrderMark)) {
    begin = kByteOrderMark.size();
    sections_[0].lines.push_back({0, static_cast<std::uint32_t>(begin)});
  }
  while (begin < size) {
    std::size_t end = begin;
    while (end < size && !IsLineEnd(pool_[end])) ++end;
    const std::size_t contentLength = end - begin;
    if (end < size) end += pool_.compare(end, 2, kLineEnd) == 0 ? 2 : 1;
    ParseLine(begin, contentLength, end - begin, number++);
    begin = end;
  }
}

void IniFile::ParseLine(std::size_t begin, std::size_t contentLength, std::size_t length, std::size_t number) {
  const std::string_view content = std::string_view(pool_).substr(begin, contentLength);
  const std::string_view trimmed = TrimBlanks(content);
  const auto offsetOf = [&](std::string_view part) { return static_cast<std::size_t>(part.data() - content.data()); };
  if (trimmed.empty()) {
    Section& section = sections_.back();
    if (section.blankLength == 0) section.blankBegin = begin;
    section.blankLength += length;
    return;
  }
  Line line{begin, static_cast<std::uint32_t>(length)};
  line.number = static_cast<std::uint32_t>(number);
  const std::size_t bracket = trimmed.find(']');
  const std::size_t equals = trimmed.find('=');
  if (trimmed.front() == '[' && bracket != std::string_view::npos) {
    const std::string_view name = TrimBlanks(trimmed.substr(1, bracket - 1));
    StartSection(name.empty() ? begin : begin + offsetOf(name), name.size(), number);
  } else if (trimmed.front() != ';' && trimmed.front() != '[' && equals != std::string_view::npos && equals > 0) {
    const std::string_view key = TrimBlanks(trimmed.substr(0, equals));
    const std::string_view afterSign = trimmed.substr(equals + 1);
    const std::string_view value = TrimBlanks(afterSign);
    line.keyAt = static_cast<std::uint32_t>(offsetOf(key));
    line.keyLength = static_cast<std::uint32_t>(key.size());
    line.valueAt = static_cast<std::uint32_t>(offsetOf(value.empty() ? afterSign : value));
    line.valueLength = static_cast<std::uint32_t>(value.size());
  } else if (trimmed.front() != ';') {
    strayLines_.push_back(number);
  }
  AddLine(sections_.back(), line);
}

void IniFile::StartSection(std::size_t nameAt, std::size_t nameLength, std::size_t number) {
  Section section;
  section.nameAt = nameAt;
  section.nameLength = nameLength;
  section.number = number;
  section.shadowed = !sectionsByName_.emplace(LowerAscii(section.NameIn(pool_)), sections_.size()).second;
  sections_.push_back(std::move(section));
}

// Blank lines that did not close the section after all become lines of it.
void IniFile::AddLine(Section& section, const Line& line) {
  if (section.blankLength != 0 && line.number != 0) {
    section.lines.push_back({section.blankBegin, static_cast<std::uint32_t>(section.blankLength)});
    section.blankLength = 0;
  }
  section.lines.push_back(line);
  const auto index = static_cast<std::size_t>(&section - sections_.data());
  if (line.keyLength != 0 && index != 0 && !section.shadowed) IndexKey(index, section.lines.size() - 1);
}

std::optional<std::size_t> IniFile::FindSection(std::string_view name) const {
  const auto found = sectionsByName_.find(LowerAscii(name));
  if (found == sectionsByName_.end()) return std::nullopt;
  return found->second;
}

std::string_view IniFile::KeyOf(const Line& line) const {
  return std::string_view(pool_).substr(line.begin + line.keyAt, line.keyLength);
}

std::string_view IniFile::ValueOf(const Line& line) const {
  return WithoutQuotes(std::string_view(pool_).substr(line.begin + line.valueAt, line.valueLength));
}

std::size_t IniFile::SlotOf(std::size_t section, std::string_view key, std::uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t number = hash & mask;
  for (; !slots_[number].isFree(); number = (number + 1) & mask) {
    const Slot& slot = slots_[number];
    if (slot.hash != hash || slot.section != section) continue;
    if (EqualIgnoringCase(KeyOf(sections_[section].lines[slot.line]), key)) break;
  }
  return number;
}

const IniFile::Slot& IniFile::FindSlot(std::size_t section, std::string_view key) const {
  return slots_[SlotOf(section, key, HashOfKey(section, key))];
}

void IniFile::IndexKey(std::size_t section, std::size_t line) {
  if (2 * (keyCount_ + 1) > slots_.size()) GrowIndex();
  const std::string_view key = KeyOf(sections_[section].lines[line]);
  const std::uint32_t hash = HashOfKey(section, key);
  Slot& slot = slots_[SlotOf(section, key, hash)];
  if (!slot.isFree()) return;
  slot = {hash, static_cast<std::uint32_t>(section), static_cast<std::uint32_t>(line)};
  ++keyCount_;
}

void IniFile::GrowIndex() {
  std::vector<Slot> former(4 * slots_.size());
  former.swap(slots_);
  const std::size_t mask = slots_.size() - 1;
  for (const Slot& slot : former) {
    if (slot.isFree()) continue;
    std::size_t number = slot.hash & mask;
    while (!slots_[number].isFree()) number = (number + 1) & mask;
    slots_[number] = slot;
  }
}

std::optional<std::string_view> IniFile::Find(std::string_view section, std::string_view key) const {
  const std::optional<std::size_t> index = FindSection(section);
  if (!index) return std::nullopt;
  const Slot& slot = FindSlot(*index, key);
  if (slot.isFree()) return std::nullopt;
  return ValueOf(sections_[*index].lines[slot.line]);
}

IniFile::Line IniFile::MakeEntry(std::string_view before, std::string_view key, std::string_view between,
                                 std::string_view value, std::string_view after) {
  std::string text;
  text.reserve(before.size() + key.size() + between.size() + value.size() + after.size());
  text.append(before).append(key).append(between).append(value).append(after);
  Line line{pool_.size(), static_cast<std::uint32_t>(text.size())};
  line.keyAt = static_cast<std::uint32_t>(before.size());
  line.keyLength = static_cast<std::uint32_t>(key.size());
  line.valueAt = static_cast<std::uint32_t>(before.size() + key.size() + between.size());
  line.valueLength = static_cast<std::uint32_t>(value.size());
  pool_ += text;
  return line;
}

void IniFile::Set(std::string_view section, std::string_view key, std::string_view value) {
  const std::string written = WrittenValue(value);
  std::optional<std::size_t> index = FindSection(section);
  if (!index) {
    const Line header{pool_.size(), static_cast<std::uint32_t>(section.size() + 2 + kLineEnd.size())};
    pool_.append("[").append(section).append("]").append(kLineEnd);
    StartSection(header.begin + 1, section.size(), 0);
    sections_.back().lines.push_back(header);
    index = sections_.size() - 1;
  }
  const Slot& slot = FindSlot(*index, key);
  if (slot.isFree()) return AddLine(sections_[*index], MakeEntry("", key, "=", written, kLineEnd));

  Line& line = sections_[*index].lines[slot.line];
  const std::string_view text = std::string_view(pool_).substr(line.begin, line.length);
  if (text.substr(line.valueAt, line.valueLength) == written) return;
  const std::string_view before = text.substr(0, line.keyAt);
  const std::string_view between = text.substr(line.keyAt + line.keyLength, line.valueAt - line.keyAt - line.keyLength);
  const std::string_view after = text.substr(line.valueAt + line.valueLength);
  const std::uint32_t number = line.number;
  line = MakeEntry(before, KeyOf(line), between, written, after);
  line.number = number;
}

std::vector<IniEntry> IniFile::Entries() const {
  std::vector<IniEntry> entries;
  for (std::size_t s = 0; s < sections_.size(); ++s) {
    const Section& section = sections_[s];
    for (std::size_t i = 0; i < section.lines.size(); ++i) {
      const Line& line = section.lines[i];
      if (line.keyLength == 0) continue;
      bool shadowed = section.shadowed;
      if (s != 0 && !shadowed) shadowed = FindSlot(s, KeyOf(line)).line != i;
      entries.push_back({section.NameIn(pool_), KeyOf(line), ValueOf(line), line.number, shadowed});
    }
  }
  return entries;
}

std::vector<IniSectionHeader> IniFile::Sections() const {
  std::vector<IniSectionHeader> headers;
  for (std::size_t i = 1; i < sections_.size(); ++i) {
    headers.push_back({sections_[i].NameIn(pool_), sections_[i].number, sections_[i].shadowed});
  }
  return headers;
}

std::string IniFile::Bytes() const {
  std::string bytes;
  bytes.reserve(pool_.size());
  const auto append = [&](std::size_t begin, std::size_t length) {
    const bool isLineOpen = !bytes.empty() && !IsLineEnd(bytes.back()) && bytes != kByteOrderMark;
    if (length != 0 && isLineOpen) bytes += kLineEnd;
    bytes.append(pool_, begin, length);
  };
  for (const Section& section : sections_) {
    for (const Line& line : section.lines) append(line.begin, line.length);
    append(section.blankBegin, section.blankLength);
  }
  return bytes;
}

}  // namespace texturon
