// SPDX-License-Identifier: Apache-2.0

#include "formats/column_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr double kInvalid = std::numeric_limits<double>::quiet_NaN();
constexpr double kInvalidMark = -25'400.0;
constexpr std::size_t kMostColumns = 32;
constexpr std::size_t kMostHeading = 100;  // lines above a table that names itself by nothing but its numbers

/// How a table's rows are taken apart.
struct Manner {
  char separator = ' ';
  bool decimalComma = false;
  std::size_t columns = 0;
};

/// The fields of a row; separators at its end end nothing more.
void SplitRow(std::string_view line, char separator, std::vector<std::string_view>& fields) {
  fields.clear();
  const bool isBlank = separator == ' ';
  constexpr std::string_view kBlanks = " \t";
  while (fields.size() <= kMostColumns) {
    if (isBlank) line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    if (isBlank && line.empty()) break;
    const std::size_t end = isBlank ? line.find_first_of(kBlanks) : line.find(separator);
    fields.push_back(TrimBlanks(line.substr(0, end)));
    if (end == std::string_view::npos) break;
    line.remove_prefix(end + 1);
  }
  while (!fields.empty() && fields.back().empty()) fields.pop_back();
}

std::optional<double> Value(std::string_view field, bool decimalComma) {
  if (const auto number = NumberField(field, decimalComma)) return number;
  for (const std::string_view mark : {"nan", "bad", "***", "---"}) {
    if (EqualIgnoringCase(field, mark)) return kInvalid;
  }
  return std::nullopt;
}

/// Takes a line as a row of numbers under the first separator that makes one of it. Without `commaSeparates` a comma is
/// a decimal sign and nothing else.
std::optional<Manner> MannerOf(std::string_view line, bool commaSeparates) {
  std::vector<std::string_view> fields;
  for (const char separator : {';', '\t', ',', ' '}) {
    if (separator != ' ' && line.find(separator) == std::string_view::npos) continue;
    if (separator == ',' && !commaSeparates) continue;
    SplitRow(line, separator, fields);
    if (fields.empty() || fields.size() > kMostColumns) continue;
    const bool decimalComma = separator != ',';
    const bool numbers = std::all_of(fields.begin(), fields.end(), [decimalComma](std::string_view f) {
      return NumberField(f, decimalComma).has_value();
    });
    if (numbers) return Manner{separator, decimalComma, fields.size()};
  }
  return std::nullopt;
}

/// The unit in a heading's cell: "[mm]", "x (um)", "Lateral um", "mm".
std::optional<double> UnitOf(std::string_view cell) {
  cell = TrimBlanks(cell);
  while (cell.size() > 1 && cell.front() == '"') cell = TrimBlanks(cell.substr(1, cell.size() - 2));
  const std::size_t open = cell.find_last_of("([");
  if (open != std::string_view::npos) {
    return MicrometresPerUnit(TrimBlanks(cell.substr(open + 1, cell.find_first_of(")]", open) - open - 1)));
  }
  return MicrometresPerUnit(cell.substr(cell.find_last_of(" \t/") + 1));
}

/// Whether a heading's cell is a unit and nothing else: mm, [mm], "mm".
bool IsUnit(std::string_view cell) {
  const std::size_t first = cell.find_first_not_of(" \t\"([");
  if (first == std::string_view::npos) return false;
  return MicrometresPerUnit(cell.substr(first, cell.find_last_not_of(" \t\")]") - first + 1)).has_value();
}

struct Table {
  bool commaSeparates = true;
  Manner manner;
  std::vector<std::string> names;              ///< of the columns, as far as the heading tells
  std::vector<std::optional<double>> unitsUM;  ///< likewise
  bool hasUnitLine = false;                    ///< a line of the heading is units and nothing else
  std::vector<std::vector<double>> columns;
  std::array<double, 2> lastDigit = {};  ///< of the first two columns
  std::size_t line = 0;
};

/// Decimals of the first number of a row; 0 where it has an exponent.
std::size_t FirstDecimals(std::string_view line, char separator) {
  std::size_t i = 0;
  while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
  std::size_t decimals = 0;
  bool isBehindPoint = false;
  for (; i < line.size(); ++i) {
    const char c = line[i];
    if (c == separator || c == ' ' || c == '\t') break;
    if (c == 'e' || c == 'E') return 0;
    decimals += isBehindPoint ? 1 : 0;
    isBehindPoint = isBehindPoint || c == '.' || c == ',';
  }
  return decimals;
}

/// What follows the first field of a row.
std::string_view BehindFirst(std::string_view line, char separator) {
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  const std::size_t end = separator == ' ' ? line.find_first_of(" \t") : line.find(separator);
  return end == std::string_view::npos ? std::string_view{} : line.substr(end + 1);
}

void TakeHeading(const std::vector<std::string_view>& heading, Table& table) {
  table.names.resize(table.manner.columns);
  table.unitsUM.resize(table.manner.columns);
  std::vector<std::string_view> cells;
  for (const std::string_view line : heading) {
    for (const char separator : {table.manner.separator, '\t', ';', ',', ' '}) {
      SplitRow(line, separator, cells);
      if (cells.size() == table.manner.columns) break;
    }
    if (cells.size() > table.manner.columns) continue;
    table.hasUnitLine =
        table.hasUnitLine || (cells.size() == table.manner.columns && std::all_of(cells.begin(), cells.end(), IsUnit));
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (table.names[i].empty()) table.names[i] = LowerAscii(cells[i]);
      if (const auto unit = UnitOf(cells[i])) table.unitsUM[i] = unit;
    }
  }
}

using Row = std::array<double, kMostColumns>;

/// Reads a row of plain numbers without taking it apart first; false where it is not one, or not so plain.
bool ReadPlainRow(std::string_view line, const Manner& manner, Row& row) {
  const auto skipBlanks = [&line, &manner] {
    std::size_t i = 0;
    while (i < line.size() && (line[i] == ' ' || (line[i] == '\t' && manner.separator != '\t'))) ++i;
    line.remove_prefix(i);
    return i > 0;
  };
  for (std::size_t i = 0; i < manner.columns; ++i) {
    skipBlanks();
    const ParsedDouble number = ParseDouble(line);
    if (!number.usable()) return false;
    row[i] = number.value;
    line.remove_prefix(number.length);
    const bool hadBlanks = skipBlanks();
    if (i + 1 == manner.columns) break;
    if (manner.separator == ' ') {
      if (!hadBlanks) return false;
    } else {
      if (!line.starts_with(manner.separator)) return false;
      line.remove_prefix(1);
    }
  }
  return line.empty();
}

/// The same for any row: a decimal comma, marks of invalid points, separators at the end.
bool ReadAnyRow(std::string_view line, const Manner& manner, std::vector<std::string_view>& fields, Row& row) {
  SplitRow(line, manner.separator, fields);
  if (fields.size() != manner.columns) return false;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const auto value = Value(fields[i], manner.decimalComma);
    if (!value) return false;
    row[i] = *value;
  }
  return true;
}

/// Makes room for as many rows as the lines that are left can hold.
void ReserveRows(std::string_view rest, Table& table) {
  const auto ends = std::count(rest.begin(), rest.end(), rest.find('\n') == std::string_view::npos ? '\r' : '\n');
  const std::size_t rows = std::min({static_cast<std::size_t>(ends) + 2, rest.size() / (2 * table.columns.size()) + 2,
                                     static_cast<std::size_t>(kPointCapacity)});
  for (std::vector<double>& column : table.columns) column.reserve(rows);
}

/// Reads heading and rows; what was wrong, or nothing. A last row that is cut off is left out.
std::string ReadTable(std::string_view text, std::size_t mostHeading, Table& table) {
  LineCursor lines(text);
  std::vector<std::string_view> heading;
  std::vector<std::string_view> fields;
  Row row{};
  std::size_t rows = 0;
  std::array<std::size_t, 2> decimals = {};
  while (const auto line = lines.Next()) {
    if (TrimBlanks(*line).empty()) continue;
    if (table.manner.columns == 0) {
      const auto manner = MannerOf(*line, table.commaSeparates);
      if (!manner) {
        heading.push_back(*line);
        if (heading.size() > mostHeading) return AtLine(lines.LineNumber(), "no row of numbers");
        continue;
      }
      table.manner = *manner;
      table.columns.resize(manner->columns);
      ReserveRows(lines.Rest(), table);
      TakeHeading(heading, table);
    }
    const bool isRow = ReadPlainRow(*line, table.manner, row) || ReadAnyRow(*line, table.manner, fields, row);
    if (!isRow && TrimBlanks(lines.Rest()).empty()) break;
    if (!isRow) return AtLine(lines.LineNumber(), "no row of as many numbers as above");
    if (rows == static_cast<std::size_t>(kPointCapacity)) return "the table has more than 750 000 rows";
    for (std::size_t i = 0; i < table.manner.columns; ++i) table.columns[i].push_back(row[i]);
    const char separator = table.manner.separator;
    decimals[0] = std::max(decimals[0], FirstDecimals(*line, separator));
    // The second column holds the positions where the first counts the points.
    if (table.manner.columns > 2)
      decimals[1] = std::max(decimals[1], FirstDecimals(BehindFirst(*line, separator), separator));
    ++rows;
  }
  table.line = lines.LineNumber();
  for (std::size_t i = 0; i < decimals.size(); ++i) {
    if (decimals[i] > 0) table.lastDigit[i] = std::pow(10.0, -static_cast<double>(decimals[i]));
  }
  return rows < 3 ? AtLine(lines.LineNumber(), "the file ends with fewer than three rows of numbers") : "";
}

bool CountsUp(const std::vector<double>& column) {
  if (column.front() != 0.0 && column.front() != 1.0) return false;
  for (std::size_t i = 1; i < column.size(); ++i) {
    if (column[i] - column[i - 1] != 1.0) return false;
  }
  return true;
}

void DropFirstColumn(Table& table) {
  table.columns.erase(table.columns.begin());
  table.names.erase(table.names.begin());
  table.unitsUM.erase(table.unitsUM.begin());
  table.lastDigit[0] = table.lastDigit[1];
}

/// Units of positions and heights: the heading's, else the likely ones with a warning.
void SettleUnits(const Table& table, std::size_t column, double& xUnit, double& zUnit, ImportedProfile& profile) {
  const std::vector<double>& x = table.columns[0];
  const double step = std::abs(x.back() - x.front()) / static_cast<double>(x.size() - 1);
  const double likely = step < 1e-6 ? 1e6 : step < 0.02 ? 1e3 : 1.0;
  xUnit = table.unitsUM[0].value_or(likely);
  zUnit = table.unitsUM[column].value_or(!table.unitsUM[0] && likely == 1e6 ? 1e6 : 1.0);
  profile.spacingSource = "column of positions";
  if (table.unitsUM[0] && table.unitsUM[column]) return;
  const auto nameOf = [](double unit) { return unit == 1e6 ? "m" : unit == 1e3 ? "mm" : unit == 1e-3 ? "nm" : "um"; };
  profile.warnings.push_back(std::string("units are not stated; positions are taken as ") + nameOf(xUnit) +
                             ", heights as " + nameOf(zUnit));
}

ReadResult Unusable(std::string reason) {
  return ReadResult::NotRecognised(std::move(reason));
}

/// Makes a profile of a table of heights alone.
ReadResult FinishWithoutPositions(const ReaderInput& input, Table& table, std::size_t column,
                                  ImportedProfile& profile) {
  const double unitUM = table.unitsUM[column].value_or(1.0);
  profile.heightsUM = std::move(table.columns[column]);
  for (double& z : profile.heightsUM) z = z == kInvalidMark ? kInvalid : z * unitUM;
  FillInvalid(profile.heightsUM, profile.warnings);
  if (profile.heightsUM.empty()) return Unusable("there are no valid heights");
  if (!AskSpacing(input, 1.0, profile)) return ReadResult::Refused("no point spacing was given");
  return ReadResult::Read();
}

ReadResult Finish(const ReaderInput& input, Table& table, ImportedProfile& profile) {
  const bool isIndexed = CountsUp(table.columns[0]) && !table.unitsUM[0];
  if (isIndexed && table.columns.size() > 2) DropFirstColumn(table);
  const bool hasPositions = table.columns.size() > 1 && !(isIndexed && CountsUp(table.columns[0]) && !table.unitsUM[0]);
  if (!hasPositions) return FinishWithoutPositions(input, table, table.columns.size() - 1, profile);
  const std::size_t column = AskHeightColumn(input, table.columns.size() - 1, profile);
  double xUnit = 1.0;
  double zUnit = 1.0;
  SettleUnits(table, column, xUnit, zUnit, profile);
  Trace trace{std::move(table.columns[0]), std::move(table.columns[column]), table.lastDigit[0] * xUnit};
  for (double& x : trace.xUM) x *= xUnit;
  for (double& z : trace.zUM) z = z == kInvalidMark ? kInvalid : z * zUnit;
  std::string wrong = MakeEven(std::move(trace), profile);
  return wrong.empty() ? ReadResult::Read() : Unusable(std::move(wrong));
}

}  // namespace

ReadResult ReadTwoColumnText(const ReaderInput& input, ImportedProfile& profile) {
  Table table;
  std::string wrong = ReadTable(input.bytes, 2, table);
  if (!wrong.empty()) return Unusable(std::move(wrong));
  if (table.manner.columns < 2) return Unusable("the table has one column only");
  return Finish(input, table, profile);
}

ReadResult ReadUnitPairText(const ReaderInput& input, ImportedProfile& profile) {
  Table table;
  std::string wrong = ReadTable(input.bytes, 2, table);
  if (!wrong.empty()) return Unusable(std::move(wrong));
  if (table.manner.columns != 2 || !table.hasUnitLine) return Unusable("the heading is no unit pair");
  return Finish(input, table, profile);
}

ReadResult ReadGenericText(const ReaderInput& input, ImportedProfile& profile) {
  Table table;
  std::string wrong = ReadTable(input.bytes, kMostHeading, table);
  if (!wrong.empty()) return Unusable(std::move(wrong));
  const bool mayBeDecimal = table.manner.separator == ',' && table.manner.columns == 2;
  ReadResult result = Finish(input, table, profile);
  if (result.status != ReadResult::Status::kNotRecognised || !mayBeDecimal) return result;
  // What makes no positions under a comma may be one column of heights with a decimal comma.
  Table column{.commaSeparates = false};
  if (!ReadTable(input.bytes, kMostHeading, column).empty() || column.manner.columns != 1) return result;
  profile = {};
  return Finish(input, column, profile);
}

ReadResult ReadDistanceTable(const ReaderInput& input, ImportedProfile& profile) {
  constexpr std::size_t kHeaderSize = 65'536;
  if (input.bytes.substr(0, kHeaderSize).find("Distance(um)") == std::string_view::npos) {
    return Unusable("the heading does not name \"Distance(um)\"");
  }
  return ReadGenericText(input, profile);
}

ReadResult ReadValidityTable(const ReaderInput& input, ImportedProfile& profile) {
  if (!StartsWithIgnoringCase(input.bytes, "X;Y;valid")) return Unusable("line 1 is not \"X;Y;valid\"");
  Table table;
  const std::string wrong = ReadTable(input.bytes, 2, table);
  if (!wrong.empty()) return RefuseAtLine(input, 1, wrong);
  if (table.manner.columns != 3 || !table.unitsUM[0] || !table.unitsUM[1]) {
    return RefuseAtLine(input, 2, "Units of X and Y are not understood.");
  }
  Trace trace{std::move(table.columns[0]), std::move(table.columns[1]), table.lastDigit[0] * *table.unitsUM[0]};
  for (std::size_t i = 0; i < trace.xUM.size(); ++i) {
    trace.xUM[i] *= *table.unitsUM[0];
    trace.zUM[i] = table.columns[2][i] == 0.0 ? kInvalid : trace.zUM[i] * *table.unitsUM[1];
  }
  profile.spacingSource = "column X";
  const std::string uneven = MakeEven(std::move(trace), profile);
  return uneven.empty() ? ReadResult::Read() : RefuseAtLine(input, table.line, uneven);
}

}  // namespace texturon
