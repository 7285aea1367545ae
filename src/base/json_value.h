// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace texturon {

struct JsonMember;

/// A JSON value in memory, for texts of a few hundred kilobytes: objects keep the order of their members.
struct JsonValue {
  using Array = std::vector<JsonValue>;
  using Object = std::vector<JsonMember>;

  std::variant<std::monostate, bool, double, std::string, Array, Object> content;  ///< monostate: null

  bool IsNull() const { return std::holds_alternative<std::monostate>(content); }
  template <typename T>
  const T* As() const {
    return std::get_if<T>(&content);
  }
  /// The member of an object; null where this is none or has none of that name. The last of a name counts.
  const JsonValue* Find(std::string_view name) const;
  /// The same through several objects.
  template <typename... Names>
  const JsonValue* Find(std::string_view name, Names... deeper) const {
    const JsonValue* const value = Find(name);
    return value != nullptr ? value->Find(deeper...) : nullptr;
  }
};

struct JsonMember {
  std::string name;
  JsonValue value;
};

struct JsonRead {
  std::optional<JsonValue> value;
  std::string reason;  ///< why not, with line and column, going on where the file's name stops
};

/// Reads one JSON value (RFC 8259) in UTF-8 and what `text` holds before it; `text` is left with what follows, blanks
/// taken off. Numbers are the nearest doubles. At most kMostJsonDepth values within each other.
inline constexpr std::size_t kMostJsonDepth = 64;
JsonRead ReadJson(std::string_view& text);

}  // namespace texturon
