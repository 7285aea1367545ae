// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "formats/profile_reader.h"
#include "formats/text_lines.h"

namespace texturon {

// What the text forms of PRF (profile) and MOD (form data) files share: records of lines, each closed by a line EOR.

/// One axis line of record 1.
struct PrfAxis {
  char dataType = 0;    ///< A, R, I or M
  double count = 0.0;   ///< number of points, at least 1
  double unitUM = 0.0;  ///< micrometres in the axis's unit
  double scale = 1.0;   ///< units in a stored count
  bool stated = false;
};

struct PrfFirstRecord {
  std::string identification;
  PrfAxis x;
  PrfAxis z;
};

/// The name under which an identification is written: its first six characters, blanks and full stops as underscores;
/// shorter ones are filled up with `fill` where one is given.
std::string PrfName(std::string_view identification, char fill = '\0');

/// Fields between blanks, tabs and commas.
std::vector<std::string_view> PrfFields(std::string_view line);
bool IsEndOfRecord(std::string_view line);

/// Reads record 1. `kind` is the word with which the name line ends. Empty when all is well, otherwise the text of the
/// message box.
std::string ReadPrfFirstRecord(LineCursor& lines, std::string_view kind, PrfFirstRecord& record);

/// A refusal that shows the messages in turn; its reason names the line and repeats the first message, or `detail`.
ReadResult RefusePrf(const ReaderInput& input, std::size_t line, std::initializer_list<std::string_view> messages,
                     std::string_view detail = {});

}  // namespace texturon
