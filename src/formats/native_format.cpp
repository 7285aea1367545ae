// SPDX-License-Identifier: Apache-2.0

#include "formats/native_format.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "base/charset.h"
#include "base/date_text.h"
#include "base/number_text.h"
#include "base/text.h"
#include "formats/companion_file.h"
#include "formats/reader_questions.h"
#include "formats/text_cursor.h"
#include "formats/text_lines.h"
#include "platform/platform.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::size_t kTextLimit = 254;     // characters of identification and date
constexpr std::size_t kLineLimit = 36'000;  // characters of a table's line
constexpr std::size_t kRowsThatAgree = 10;  // rows of a table that must have the same number of fields

struct Header {
  std::string identification;
  std::string date;
  double spacingUM = 0.0;
  std::int32_t count = 0;
};

/// The text after a keyword: one character skipped, the rest of the line without its last character. In a line longer
/// than the limit that character belongs to the text; it is lost all the same.
std::string KeywordText(TextCursor& cursor) {
  cursor.SkipOne();
  std::string text = cursor.RestOfLine(kTextLimit);
  if (!text.empty()) text.pop_back();
  return text;
}

/// Reads the keyword header; a refusal, or nothing when all is well.
std::optional<ReadResult> ReadHeader(const ReaderInput& input, TextCursor& cursor, Header& header) {
  const auto expect = [&cursor](std::string_view keyword) { return EqualIgnoringCase(cursor.Token(), keyword); };
  if (!expect("LUMETRACE_DATA")) return RefuseAtLine(input, cursor.Line(), "Invalid file format.");
  if (!expect("1.0")) return RefuseAtLine(input, cursor.Line(), "Invalid file revision.");
  if (!expect("IDENTIFICATION:")) return RefuseAtLine(input, cursor.Line(), "Invalid 'IDENTIFICATION:' designator.");
  header.identification = KeywordText(cursor);
  if (!expect("DATE:")) return RefuseAtLine(input, cursor.Line(), "Invalid 'DATE:' designator.");
  header.date = KeywordText(cursor);
  if (!expect("SPACING_UM:")) return RefuseAtLine(input, cursor.Line(), "Invalid 'SPACING_UM:' designator.");
  header.spacingUM = cursor.Number().value_or(0.0);
  if (!expect("NUMBER_OF_POINTS:"))
    return RefuseAtLine(input, cursor.Line(), "Invalid 'NUMBER_OF_POINTS:' designator.");
  header.count = cursor.Integer().value_or(0);
  if (header.count < 1 || header.count > kPointCapacity)
    return RefuseAtLine(input, cursor.Line(), "Invalid number of points.");
  return std::nullopt;
}

void TakeHeader(Header&& header, ImportedProfile& profile) {
  profile.identification = std::move(header.identification);
  profile.date = std::move(header.date);
  profile.spacingUM = header.spacingUM;
  profile.spacingSource = "header line SPACING_UM";
}

/// Takes the first line, with its line feed, off a table's text; a line that is too long goes on as the next.
std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = text.substr(0, kLineLimit).find('\n');
  const std::string_view line = text.substr(0, end == std::string_view::npos ? kLineLimit : end + 1);
  text.remove_prefix(line.size());
  return line;
}

/// Whether the table has at least `rows` lines.
bool HasRows(std::string_view table, std::size_t rows) {
  while (rows > 0 && !table.empty()) {
    TakeLine(table);
    --rows;
  }
  return rows == 0;
}

/// Fields between tabs; runs of tabs and tabs at the ends separate nothing. A line break behind a last tab is a field.
std::vector<std::string_view> SplitAtTabs(std::string_view line) {
  std::vector<std::string_view> fields;
  while (true) {
    const std::size_t start = line.find_first_not_of('\t');
    if (start == std::string_view::npos) return fields;
    line.remove_prefix(start);
    const std::size_t length = std::min(line.find('\t'), line.size());
    fields.push_back(line.substr(0, length));
    line.remove_prefix(length);
  }
}

}  // namespace

ReadResult ReadNativeProfile(const ReaderInput& input, ImportedProfile& profile) {
  TextCursor cursor(input.bytes);
  Header header;
  if (auto refusal = ReadHeader(input, cursor, header)) return *refusal;
  if (!EqualIgnoringCase(cursor.Token(), "PROFILE_UM:")) {
    return RefuseAtLine(input, cursor.Line(), "Invalid 'PROFILE_UM:' designator.");
  }
  const auto count = static_cast<std::size_t>(header.count);
  // A height takes a digit and, but for the last, a separator: a count beyond that is known to be wrong beforehand.
  const bool fits = count <= (cursor.Remaining() + 1) / 2;
  if (fits) profile.heightsUM.reserve(count);
  if (fits) cursor.AppendNumbers(profile.heightsUM, count);
  if (!fits || (profile.heightsUM.size() < count && cursor.AtEnd())) {
    return RefuseAtLine(input, cursor.Line(), "Unexpected end of file.");
  }
  if (profile.heightsUM.size() < count) {
    input.prompts.Notice(AtLine(cursor.Line(), "not a number; this height and all after it are taken as 0"));
    profile.heightsUM.resize(count, 0.0);
  }
  TakeHeader(std::move(header), profile);
  return ReadResult::Read();
}

ReadResult ReadNativeHeaderWithTable(const ReaderInput& input, ImportedProfile& profile) {
  TextCursor cursor(input.bytes);
  Header header;
  if (auto refusal = ReadHeader(input, cursor, header)) return *refusal;

  profile.companion = CompanionPath(input.path, ".LMTd");
  const FileBytes table = ReadRegularFile(profile.companion, kMostLinesRead);
  if (!table.ok()) return ReadResult::Refused("the table with the ending .LMTd " + table.reason);
  std::string storage;
  const std::string_view rows = PlainText(table.bytes, storage);
  if (!HasRows(rows, kRowsThatAgree)) return ReadResult::Refused("the table has fewer than 10 rows");
  std::string_view rest = rows;
  const std::size_t columns = SplitAtTabs(TakeLine(rest)).size();
  for (std::size_t i = 2; i <= kRowsThatAgree; ++i) {
    if (SplitAtTabs(TakeLine(rest)).size() != columns) {
      return ReadResult::Refused("row " + IntegerText(static_cast<std::int64_t>(i)) +
                                 " of the table has another number of fields than row 1");
    }
  }
  if (columns == 0) return ReadResult::Refused("the table's rows are empty");
  const auto count = static_cast<std::size_t>(header.count);
  if (!HasRows(rows, count)) return ReadResult::Refused("the table has fewer rows than the header has points");

  const std::size_t column = AskColumn(input, columns, profile);
  profile.heightsUM.reserve(count);
  rest = rows;
  while (profile.heightsUM.size() < count) {
    const auto fields = SplitAtTabs(TakeLine(rest));
    const ParsedDouble height = column <= fields.size() ? ParseDouble(fields[column - 1]) : ParsedDouble{};
    profile.heightsUM.push_back(height.usable() ? height.value : 0.0);
  }
  TakeHeader(std::move(header), profile);
  return ReadResult::Read();
}

std::string NativeProfileText(const ProfileToWrite& profile) {
  // What the reader would refuse is not written.
  const std::string name = OnOneLine(profile.identification).substr(0, kTextLimit);
  std::string text;
  text.reserve(200 + name.size() + profile.heightsUM.size() * 15);
  text +=
      "Lumetrace_Data 1.0\r\nIDENTIFICATION: " + name + "\r\nDATE: " + DateText(profile.savedAt) + "\r\nSPACING_UM: ";
  AppendFixed(text, profile.spacingUM, 6);
  text += "\r\nNUMBER_OF_POINTS: ";
  AppendInteger(text, static_cast<std::int64_t>(profile.heightsUM.size()));
  text += "\r\nPROFILE_UM:\r\n";
  for (const double height : profile.heightsUM) {
    AppendFixed(text, height, 6, 12);
    text += "\r\n";
  }
  return text;
}

FileOutcome WriteNativeProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts) {
  constexpr double kSpacingStepUM = 1e-6;
  return WriteProfileText(path, ".lmt", profile, kSpacingStepUM, NativeProfileText, prompts);
}

}  // namespace texturon
