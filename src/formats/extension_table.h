// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "formats/profile_reader.h"
#include "formats/profile_writer.h"

namespace texturon {

/// What a file must or must not hold besides the marker texts, and the message box where it does not comply.
struct Condition {
  std::string_view text;
  bool mustBeThere = true;
  std::string_view message;
};

/// A file of the same name and another ending that holds the heights, and the message box where it is missing: "%s"
/// stands for the name without its ending.
struct Companion {
  std::string_view extension;
  std::string_view message;
};

/// One reader: its name for people, what it takes, and how it reads. Without a routine the layout is not known: files
/// are recognised by their marker texts (separated by "|", none for a layout without any) and refused.
struct ProfileReader {
  std::string_view name;
  std::string_view takes;
  ReadFunction read = nullptr;
  std::string_view markers;
  std::array<Condition, 2> conditions;
  Companion companion;
};

/// The chain of readers behind a file name extension, tried in order.
struct ExtensionEntry {
  std::string_view extension;  ///< with its dot; compared without regard to case
  std::span<const ProfileReader> chain;
  std::span<const ProfileReader> chosenChain;  ///< where the caller chose a profile; none: the same chain
  bool ignoresResult = false;                  ///< loads what a refusal left, if its spacing is above 0
  bool isTakenWhole =
      false;  ///< files of any number of lines: a reader thins or cuts what is too much, or counts bytes
};

/// Every extension that is read, in the order of comparison: the first that equals a file's decides.
std::span<const ExtensionEntry> ExtensionTable();

/// A format that is written, chosen by the extension of the file's name.
struct WriterEntry {
  std::string_view extension;
  std::string_view name;
  WriteFunction write;
  std::string_view dialogName;  ///< in the list of a save dialog; empty: to be typed
};

/// Every format that is written; the first is the native one.
std::span<const WriterEntry> WriterTable();

/// The writer that a file's name asks for; the native one for any extension that is not in the table.
const WriterEntry& WriterFor(const std::filesystem::path& path);

}  // namespace texturon
