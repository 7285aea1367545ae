// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/ini_file.h"

namespace texturon {

/// The keys of a test plan, of all its sections whatever their names. Of a key that several sections have, the first
/// counts, unless the reader prefers a section. Remembers what nobody read, and what was not wholly a number.
class PlanKeys {
public:
  static constexpr std::size_t kAnySection = static_cast<std::size_t>(-1);

  /// A name of a `Parameters` list and the section where it stands.
  struct ListedName {
    std::string_view name;
    std::size_t section = kAnySection;
  };

  /// `plan` outlives the keys.
  explicit PlanKeys(const IniFile& plan);

  bool hasSections() const { return hasSections_; }

  /// The names of all `Parameters` lists, in the order of the file; one that an earlier list has is left out.
  std::vector<ListedName> ParameterNames();

  std::optional<std::string_view> Text(std::string_view key, std::size_t section = kAnySection);
  bool Has(std::string_view key, std::size_t section = kAnySection) { return Text(key, section).has_value(); }
  /// -1 without the key; a text counts as far as its digits go.
  double Real(std::string_view key, std::size_t section = kAnySection);
  std::int32_t Integer(std::string_view key, std::size_t section = kAnySection);

  /// Remembers how a key was read that does not say what it ought to, once: "Ra_Max=0,8 is read as 0".
  void RemarkReadAs(std::string_view key, std::string_view readAs, std::size_t section = kAnySection);
  /// The remarks since the last call.
  std::vector<std::string> TakeRemarks();
  /// Of each key that nobody has read so far, in the order of the file:
  /// "Parameter in [Waviness], line 7, has no effect".
  std::vector<std::string> UnreadKeys() const;

private:
  struct Key {
    std::string_view name;
    std::string_view value;
    std::string_view sectionName;
    std::size_t section = kAnySection;  ///< its number; kAnySection: before the first one
    std::size_t line = 0;
    bool isRead = false;
    bool isRemarkedOn = false;
  };

  Key* Find(std::string_view key, std::size_t section);
  std::string UnreadText(const Key& key) const;

  bool hasSections_ = false;
  std::vector<Key> keys_;                                             // in the order of the file
  std::unordered_map<std::string, std::vector<std::size_t>> byName_;  // those in a section
  std::vector<std::string> remarks_;
};

}  // namespace texturon
