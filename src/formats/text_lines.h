// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// Walks through a text line by line. A line ends at LF, and every CR before it belongs to its end; in a text without
/// any LF it ends at CR. The last line may lack its end.
class LineCursor {
public:
  explicit LineCursor(std::string_view text);

  /// The next line without its end; empty when there is none.
  std::optional<std::string_view> Next();
  /// Number of the line that Next gave last, from 1.
  std::size_t LineNumber() const { return lineNumber_; }
  /// What follows the line that Next gave last.
  std::string_view Rest() const { return rest_; }

private:
  std::string_view rest_;
  char lineEnd_;
  std::size_t lineNumber_ = 0;
};

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

/// Micrometres in one unit of length: m, mm, um, nm, pm, Angstrom, in, in any case, the micro sign as Windows-1252,
/// UTF-8 or DOS code page byte; empty for what is no such unit.
std::optional<double> MicrometresPerUnit(std::string_view unit);

/// "line 12: text".
std::string AtLine(std::size_t line, std::string_view text);

/// A text of a binary header: `length` bytes from `at` on, up to a zero byte, without blanks at its ends.
std::string_view FixedField(std::string_view bytes, std::size_t at, std::size_t length);

}  // namespace texturon
