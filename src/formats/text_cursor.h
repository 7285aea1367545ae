// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// Walks through a text token by token as C stream input does. CR LF counts as one character, a line feed; so does CR
/// in a text without any LF. A byte 1A or NUL ends the text.
class TextCursor {
public:
  explicit TextCursor(std::string_view text);

  bool AtEnd() const { return position_ >= text_.size(); }
  std::size_t Remaining() const { return text_.size() - position_; }
  /// Number of the line at the position, from 1.
  std::size_t Line() const;

  /// Next run of characters that are not white space; empty at the end.
  std::string_view Token();
  /// Skips exactly one character.
  void SkipOne();
  /// Rest of the line, at most `limit` characters of it, with the line feed where it was reached.
  std::string RestOfLine(std::size_t limit);
  /// Next number; empty, with the position before it, where there is none. A non-finite number is none.
  std::optional<double> Number();
  /// Appends the numbers that come, up to the first that Number would not give or until there are `most` values. Most
  /// of the time in less than half the time of so many calls of Number.
  void AppendNumbers(std::vector<double>& values, std::size_t most);
  std::optional<std::int32_t> Integer();
  void SkipWhiteSpace();
  /// Skips the next character if it is `c`; whether it was.
  bool SkipIf(char c);

private:
  std::string_view text_;
  char lineEnd_;
  std::size_t position_ = 0;
};

}  // namespace texturon
