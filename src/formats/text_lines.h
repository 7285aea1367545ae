// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// Walks through a text line by line. A line ends at LF, and every CR before it belongs to its end; in a text without
/// any LF it ends at CR. The last line may lack its end. A byte 1A or NUL ends the text, unless the layout has NULs of
/// its own.
class LineCursor {
public:
  enum class Nul { kEndsText, kIsOfLayout };
  explicit LineCursor(std::string_view text, Nul nul = Nul::kEndsText);

  /// The next line without its end; empty when there is none.
  std::optional<std::string_view> Next();
  /// The next line that is not blank.
  std::optional<std::string_view> NextFilled();
  /// Number of the line that Next gave last, from 1.
  std::size_t LineNumber() const { return lineNumber_; }
  /// What follows the line that Next gave last.
  std::string_view Rest() const { return rest_; }

private:
  std::string_view rest_;
  char lineEnd_;
  std::size_t lineNumber_ = 0;
};

/// What comes before the first byte NUL or 1A, with which a text may end.
std::string_view TextBeforeEnd(std::string_view bytes);

/// The text without the empty lines at its beginning.
std::string_view WithoutBlankLines(std::string_view text);

/// Most fields that a line is split into; what follows them is left out, so that no line takes more memory than it is
/// worth.
inline constexpr std::size_t kMostFields = 64;

/// Fields between any of `separators`; a run of them is one, those at the ends separate nothing.
std::vector<std::string_view> SplitAtAny(std::string_view line, std::string_view separators);

/// Fields between single separators; empty fields stay.
std::vector<std::string_view> SplitAtEach(std::string_view line, char separator);

/// A whole field, blanks around it aside, as a finite number. With `decimalComma` a comma behind a digit stands for the
/// point.
std::optional<double> NumberField(std::string_view field, bool decimalComma = false);

/// "line 12: text".
std::string AtLine(std::size_t line, std::string_view text);

/// A text of a binary header: `length` bytes from `at` on, up to a zero byte, without blanks at its ends.
std::string_view FixedField(std::string_view bytes, std::size_t at, std::size_t length);

}  // namespace texturon
