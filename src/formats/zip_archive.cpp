// SPDX-License-Identifier: Apache-2.0

#include "formats/zip_archive.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/inflate.h"
#include "formats/little_endian.h"

namespace texturon {
namespace {

constexpr std::string_view kLocalMark("PK\x03\x04", 4);
constexpr std::string_view kDirectoryMark("PK\x01\x02", 4);
constexpr std::string_view kEndMark("PK\x05\x06", 4);

// The end record: its size without the comment, and places in it.
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kEndCount = 10;
constexpr std::size_t kEndDirectory = 16;
constexpr std::size_t kMostComment = 65'535;

// A record of the directory.
constexpr std::size_t kRecordSize = 46;
constexpr std::size_t kFlags = 8;
constexpr std::size_t kMethod = 10;
constexpr std::size_t kCrc = 16;
constexpr std::size_t kPackedSize = 20;
constexpr std::size_t kSize = 24;
constexpr std::size_t kNameLength = 28;
constexpr std::size_t kExtraLength = 30;
constexpr std::size_t kCommentLength = 32;
constexpr std::size_t kLocalHeader = 42;

// The header before an entry's bytes, with name and extra field behind it.
constexpr std::size_t kLocalSize = 30;
constexpr std::size_t kLocalNameLength = 26;
constexpr std::size_t kLocalExtraLength = 28;

constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;
constexpr std::uint16_t kEncryptedFlag = 1;

void Append16(std::string& out, std::size_t value) {
  AppendLittleEndian(out, static_cast<std::uint16_t>(value));
}

void Append32(std::string& out, std::size_t value) {
  AppendLittleEndian(out, static_cast<std::uint32_t>(value));
}

/// What local header and record of the directory have in common: version, flags, method, time, sum, sizes, name.
void AppendCommon(std::string& out, const ZipPart& part) {
  constexpr std::size_t kVersion = 20;
  constexpr std::size_t kFirstDay = 0x21;  // 1 January 1980: no time at all
  Append16(out, kVersion);
  Append16(out, 0);
  Append16(out, kStored);
  Append16(out, 0);
  Append16(out, kFirstDay);
  Append32(out, Crc32Of(part.bytes));
  Append32(out, part.bytes.size());
  Append32(out, part.bytes.size());
  Append16(out, part.name.size());
  Append16(out, 0);
}

}  // namespace

bool IsZip(std::string_view bytes) {
  return bytes.starts_with(kLocalMark);
}

ZipArchive::ZipArchive(std::string_view bytes) {
  ReadDirectory(bytes);
  if (!reason_.empty()) entries_.clear();
}

void ZipArchive::ReadDirectory(std::string_view bytes) {
  const std::size_t from = bytes.size() - std::min(bytes.size(), kEndSize + kMostComment);
  const std::size_t found = bytes.substr(from).rfind(kEndMark);
  if (found == std::string_view::npos || bytes.size() - from - found < kEndSize) {
    reason_ = "the directory of the ZIP container is missing; the file is cut short or damaged";
    return;
  }
  const std::size_t end = from + found;
  const std::size_t count = LittleEndian<std::uint16_t>(bytes, end + kEndCount);
  std::size_t at = LittleEndian<std::uint32_t>(bytes, end + kEndDirectory);
  constexpr std::string_view kDamaged = "the directory of the ZIP container is damaged";
  for (std::size_t i = 0; i < count; ++i) {
    if (at > end || end - at < kRecordSize || bytes.substr(at, 4) != kDirectoryMark) {
      reason_ = kDamaged;
      return;
    }
    const std::size_t nameLength = LittleEndian<std::uint16_t>(bytes, at + kNameLength);
    const std::size_t behind = nameLength + LittleEndian<std::uint16_t>(bytes, at + kExtraLength) +
                               LittleEndian<std::uint16_t>(bytes, at + kCommentLength);
    if (end - at - kRecordSize < behind || !Add(bytes, at, nameLength)) {
      reason_ = kDamaged;
      return;
    }
    at += kRecordSize + behind;
  }
}

bool ZipArchive::Add(std::string_view bytes, std::size_t at, std::size_t nameLength) {
  const std::size_t local = LittleEndian<std::uint32_t>(bytes, at + kLocalHeader);
  if (local > bytes.size() || bytes.size() - local < kLocalSize || bytes.substr(local, 4) != kLocalMark) return false;
  const std::size_t start = local + kLocalSize + LittleEndian<std::uint16_t>(bytes, local + kLocalNameLength) +
                            LittleEndian<std::uint16_t>(bytes, local + kLocalExtraLength);
  const std::size_t packed = LittleEndian<std::uint32_t>(bytes, at + kPackedSize);
  if (start > bytes.size() || bytes.size() - start < packed) return false;
  entries_.push_back({bytes.substr(at + kRecordSize, nameLength), bytes.substr(start, packed),
                      LittleEndian<std::uint32_t>(bytes, at + kSize), LittleEndian<std::uint32_t>(bytes, at + kCrc),
                      LittleEndian<std::uint16_t>(bytes, at + kMethod),
                      (LittleEndian<std::uint16_t>(bytes, at + kFlags) & kEncryptedFlag) != 0});
  return true;
}

const ZipArchive::Entry* ZipArchive::Find(std::string_view name) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [name](const Entry& entry) { return EqualIgnoringCase(entry.name, name); });
  return found != entries_.end() ? &*found : nullptr;
}

const ZipArchive::Entry* ZipArchive::FindInAnyFolder(std::string_view name) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [name](const Entry& entry) {
    return EqualIgnoringCase(entry.name.substr(entry.name.rfind('/') + 1), name);
  });
  return found != entries_.end() ? &*found : nullptr;
}

ZipArchive::Content ZipArchive::Unpack(const Entry& entry, std::size_t mostBytes) {
  const std::string name = "the part " + Quoted(OnOneLine(entry.name)) + " of the container ";
  if (entry.isEncrypted) return {{}, name + "is encrypted"};
  if (entry.method != kStored && entry.method != kDeflated) {
    return {{}, name + "is packed by a method that is not read"};
  }
  const bool isBomb = entry.size > mostBytes || !CanUnpackTo(entry.packed.size(), entry.size);
  if (isBomb) {
    return {{},
            name + "would unpack to " + IntegerText(static_cast<std::int64_t>(entry.size)) +
                " bytes, more than it can rightly hold"};
  }
  std::optional<std::string> bytes;
  if (entry.method == kDeflated) {
    bytes = Inflate(entry.packed, entry.size, PackedAs::kRaw);
  } else if (entry.packed.size() == entry.size) {
    bytes = std::string(entry.packed);
  }
  if (!bytes || Crc32Of(*bytes) != entry.crc) return {{}, name + "is damaged"};
  return {std::move(*bytes), {}};
}

std::string ZipOf(std::span<const ZipPart> parts) {
  std::string out;
  std::string directory;
  for (const ZipPart& part : parts) {
    const std::size_t local = out.size();
    out += kLocalMark;
    AppendCommon(out, part);
    out += part.name;
    out += part.bytes;
    directory += kDirectoryMark;
    Append16(directory, 20);  // made by
    AppendCommon(directory, part);
    Append16(directory, 0);  // comment
    Append16(directory, 0);  // disk
    Append16(directory, 0);  // attributes
    Append32(directory, 0);
    Append32(directory, local);
    directory += part.name;
  }
  const std::size_t start = out.size();
  out += directory;
  out += kEndMark;
  Append32(out, 0);  // disks
  Append16(out, parts.size());
  Append16(out, parts.size());
  Append32(out, directory.size());
  Append32(out, start);
  Append16(out, 0);
  return out;
}

}  // namespace texturon
