#pragma once

#include <span>
#include <string_view>

#include "formats/profile_reader.h"
#include "formats/profile_writer.h"

namespace texturon {

/// One reader: its name for people, and what it takes.
struct ProfileReader {
  std::string_view name;
  std::string_view takes;
  ReadFunction read;
};

/// The chain of readers behind a file name extension, tried in order.
struct ExtensionEntry {
  std::string_view extension;  ///< with its dot; compared without regard to case
  std::span<const ProfileReader* const> chain;
};

/// Every extension that is read, in the order of comparison.
std::span<const ExtensionEntry> ExtensionTable();

/// A format that is written, chosen by the extension of the file's name.
struct WriterEntry {
  std::string_view extension;
  std::string_view name;
  WriteFunction write;
};

/// Every format that is written; the first is the native one.
std::span<const WriterEntry> WriterTable();

/// The writer that a file's name asks for; the native one for any extension that is not in the table.
const WriterEntry& WriterFor(const std::filesystem::path& path);

}  // namespace texturon
