// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace texturon {

/// Longest value that a reader with the usual buffer of 64 characters takes.
inline constexpr std::size_t kIniValueLength = 63;

/// A line `key=value` of an INI file. The views live as long as the file and until its next Set.
struct IniEntry {
  std::string_view section;
  std::string_view key;
  std::string_view value;
  std::size_t line = 0;   // from 1; 0 for a line that was added
  bool shadowed = false;  // an earlier line or section of the same name is the one that counts
};

struct IniSectionHeader {
  std::string_view name;
  std::size_t line = 0;
  bool shadowed = false;
};

/// An INI file as the Windows profile functions see it, over text in memory. Sections and keys match without regard to
/// case; the first section of a name counts, and in it the first line of a key (later ones are kept and never read).
/// Blanks around section names, keys and values do not belong to them, nor does one pair of like quotes around a
/// value. A line that starts with ';' is a comment; one without '=' means nothing. A line ends with CR, LF or both; a
/// UTF-8 byte order mark is passed over. Set touches only the value that it names: every other byte stays.
/// Parsing, Find and Set take linear time in the size of what they are given, whatever the file holds.
class IniFile {
public:
  IniFile() : IniFile(std::string()) {}
  explicit IniFile(std::string bytes);

  /// The value without blanks and quotes around it, at its full length; empty where the key is not there.
  std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

  /// Makes Find return `value`: replaces the value in place, or adds the key to the end of its section (before blank
  /// lines that close it), or adds the section to the end of the file. New lines end with CR LF. A value that would
  /// lose blanks or quotes on reading is put in quotes; its line breaks become blanks.
  void Set(std::string_view section, std::string_view key, std::string_view value);

  std::vector<IniEntry> Entries() const;
  std::vector<IniSectionHeader> Sections() const;
  /// Numbers of the lines that are neither blank nor comment, header or entry.
  const std::vector<std::size_t>& StrayLines() const { return strayLines_; }

  std::string Bytes() const;

private:
  // A stretch of pool_; the parts of an entry are counted from its begin.
  struct Line {
    std::size_t begin = 0;
    std::uint32_t length = 0;
    std::uint32_t keyAt = 0;
    std::uint32_t keyLength = 0;  // 0: no entry
    std::uint32_t valueAt = 0;    // with its quotes
    std::uint32_t valueLength = 0;
    std::uint32_t number = 0;
  };
  struct Section {
    std::string_view NameIn(const std::string& pool) const { return std::string_view(pool).substr(nameAt, nameLength); }

    std::size_t nameAt = 0;
    std::size_t nameLength = 0;
    std::size_t number = 0;  // line of the header
    bool shadowed = false;
    std::vector<Line> lines;     // the header first
    std::size_t blankBegin = 0;  // the blank lines that close it
    std::size_t blankLength = 0;
  };
  // A place of the key index: hash and whereabouts of a key. Section 0 has no keys that count: the slot is free.
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t section = 0;
    std::uint32_t line = 0;

    bool isFree() const { return section == 0; }
  };

  void ParseLine(std::size_t begin, std::size_t contentLength, std::size_t length, std::size_t number);
  void StartSection(std::size_t nameAt, std::size_t nameLength, std::size_t number);
  void AddLine(Section& section, const Line& line);
  std::optional<std::size_t> FindSection(std::string_view name) const;
  std::string_view KeyOf(const Line& line) const;
  std::string_view ValueOf(const Line& line) const;
  Line MakeEntry(std::string_view before, std::string_view key, std::string_view between, std::string_view value,
                 std::string_view after);

  // Number of the slot where a key is, or where it would go.
  std::size_t SlotOf(std::size_t section, std::string_view key, std::uint32_t hash) const;
  const Slot& FindSlot(std::size_t section, std::string_view key) const;
  void IndexKey(std::size_t section, std::size_t line);
  void GrowIndex();

  std::string pool_;               // the file's bytes, then the lines made since
  std::vector<Section> sections_;  // the first holds what stands before any header
  std::unordered_map<std::string, std::size_t> sectionsByName_;
  std::vector<Slot> slots_;  // open addressing; a power of two of them, at most half in use
  std::size_t keyCount_ = 0;
  std::vector<std::size_t> strayLines_;
};

}  // namespace texturon
