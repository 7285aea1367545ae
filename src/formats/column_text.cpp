// SPDX-License-Identifier: Apache-2.0

#include "formats/column_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "base/elementary.h"
#include "base/number_text.h"
#include "base/text.h"
#include "formats/content_kinds.h"
#include "formats/even_spacing.h"
#include "formats/number_rows.h"
#include "formats/reader_questions.h"
#include "formats/table_columns.h"
#include "formats/table_heading.h"
#include "formats/text_lines.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr double kInvalid = std::numeric_limits<double>::quiet_NaN();
constexpr std::string_view kValidityHeading = "X;Y;valid";
constexpr double kInvalidMarkUM = -25'400.0;

/// How far a table was understood before it was given up: what is told of a chain is what came nearest.
constexpr int kNoRows = 1;
constexpr int kRows = 2;

ReadResult Unusable(std::string reason, int nearness = kRows) {
  return ReadResult::NotRecognised(std::move(reason), nearness);
}

std::string Number(std::size_t number) {
  return IntegerText(static_cast<std::int64_t>(number));
}

/// "column 2 (Z)", with its unit where it has one.
std::string ColumnText(const TableHeading& heading, std::size_t column) {
  const ColumnHeading& named = heading.columns[column];
  return "column " + Number(column + 1) + (named.name.empty() ? "" : " " + Quoted(OnOneLine(named.name)));
}

std::string_view NameOfUnit(double unitUM) {
  return unitUM == 1e6 ? "m" : unitUM == 1e3 ? "mm" : unitUM == 1e-3 ? "nm" : "um";
}

/// A text taken apart, and what came of it.
struct Table {
  std::string_view text;
  NumberRows rows;
  TableHeading heading;
  TableColumns chosen;
};

Table TakeTable(std::string_view text, bool commaSeparates = true) {
  const std::string_view layout = KnownLayoutOf(text);
  if (!layout.empty()) {
    Table table{.text = text};
    table.rows.wrong = "it begins as files with the extension " + std::string(layout) + " do";
    return table;
  }
  Table table{.text = text, .rows = FindNumberRows(text, commaSeparates)};
  if (!table.rows.wrong.empty()) return table;
  table.heading = FindTableHeading(text, table.rows);
  table.chosen = ChooseTableColumns(table.rows, table.heading);
  return table;
}

struct Unit {
  double micrometres = 1.0;
  bool isStated = false;
};

Unit UnitOf(const ColumnHeading& column, double likely) {
  return column.HasLength() ? Unit{column.unitUM, true} : Unit{likely, false};
}

/// A refusal where a column is in a unit that is no length; empty: it may be read.
std::string NoLength(const Table& table, std::size_t column) {
  const ColumnHeading& named = table.heading.columns[column];
  if (named.unitKind != UnitStatement::Kind::kOther) return {};
  return AtLine(std::max(table.heading.line, table.heading.unitLine),
                ColumnText(table.heading, column) + " is in " + Quoted(named.unit) + ", which is no unit of length");
}

/// Says where the units come from, as far as the file does not state them.
void WarnOfUnits(const Unit& x, const Unit& z, ImportedProfile& profile) {
  if (x.isStated && z.isStated) return;
  std::string text = "units are not stated; positions are taken as " + std::string(NameOfUnit(x.micrometres)) +
                     ", heights as " + std::string(NameOfUnit(z.micrometres));
  if (x.isStated)
    text = "the unit of the heights is not stated; they are taken as " + std::string(NameOfUnit(z.micrometres));
  if (z.isStated)
    text = "the unit of the positions is not stated; they are taken as " + std::string(NameOfUnit(x.micrometres));
  profile.warnings.push_back(std::move(text));
}

/// The decision, for people.
void Describe(const Table& table, std::size_t zColumn, ImportedProfile& profile) {
  const NumberRows& rows = table.rows;
  const TableHeading& heading = table.heading;
  const std::string_view between = rows.separator == ' '    ? "blanks"
                                   : rows.separator == '\t' ? "tabs"
                                   : rows.separator == ','  ? "commas"
                                                            : "semicolons";
  std::vector<std::string>& decisions = profile.decisions;
  decisions.push_back("rows: lines " + Number(rows.firstLine) + " to " + Number(rows.lastLine) + ", " +
                      Number(rows.columns.size()) +
                      (rows.columns.size() == 1 ? " column" : " columns between " + std::string(between)));
  std::string where = "heading: none";
  if (heading.line > 0) where = "heading: line " + Number(heading.line);
  if (heading.unitLine > 0)
    where += std::string(heading.line > 0 ? "," : "") + " units on line " + Number(heading.unitLine);
  decisions.push_back(std::move(where));
  const auto describe = [&](std::string_view what, std::size_t column) {
    const ColumnHeading& named = heading.columns[column];
    decisions.push_back(std::string(what) + ": " + ColumnText(heading, column) +
                        (named.HasLength() ? ", in " + named.unit + " as stated" : ", unit assumed"));
  };
  if (table.chosen.x) describe("positions", *table.chosen.x);
  describe("heights", zColumn);
  if (rows.otherRows >= 3 && 2 * rows.otherRows >= rows.Count()) {
    profile.warnings.push_back("the file holds several tables; the longest, lines " + Number(rows.firstLine) + " to " +
                               Number(rows.lastLine) + ", is read");
  }
}

/// -25400 stands for an invalid point in micrometres alone.
void ScaleHeights(const Unit& unit, std::vector<double>& heights) {
  for (double& z : heights) z = unit.micrometres == 1.0 && z == kInvalidMarkUM ? kInvalid : z * unit.micrometres;
}

/// Whether the first of the heights is above 0 and further from the second than any other from the one before it.
bool StandsOff(const std::vector<double>& heights) {
  double longest = 0.0;
  for (std::size_t i = 2; i < heights.size(); ++i) longest = std::max(longest, std::abs(heights[i] - heights[i - 1]));
  return heights.size() > 3 && heights[0] > 0.0 && std::abs(heights[1] - heights[0]) > 3.0 * longest;
}

/// Makes a profile of a table of heights alone.
ReadResult FinishWithoutPositions(const ReaderInput& input, Table& table, std::size_t column,
                                  ImportedProfile& profile) {
  const Unit unit = UnitOf(table.heading.columns[column], 1.0);
  Describe(table, column, profile);
  profile.heightsUM = std::move(table.rows.columns[column]);
  ScaleHeights(unit, profile.heightsUM);
  FillInvalid(profile.heightsUM, profile.warnings);
  if (profile.heightsUM.empty()) return Unusable("there are no valid heights");
  if (table.rows.columns.size() == 1 && table.heading.line == 0 && StandsOff(profile.heightsUM)) {
    profile.warnings.push_back("the first height stands off the others; it may be a point spacing");
  }
  if (!AskSpacing(input, 1.0, profile)) return ReadResult::Refused("no point spacing was given");
  return ReadResult::Read();
}

/// Heights of slopes: the sum of trapezia between the valid points, in the unit of the positions. Where a slope is not
/// valid the height is not.
std::vector<double> IntegralOf(const std::vector<double>& x, const std::vector<double>& slope, double radiansPerUnit) {
  std::vector<double> heights(x.size(), kInvalid);
  double height = 0.0;
  std::optional<std::size_t> last;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!std::isfinite(slope[i]) || !std::isfinite(x[i])) continue;
    const auto gradient = [&](std::size_t at) { return Tan(slope[at] * radiansPerUnit); };
    if (last) height += 0.5 * (gradient(*last) + gradient(i)) * (x[i] - x[*last]);
    heights[i] = height;
    last = i;
  }
  return heights;
}

/// Makes a profile of a table of slopes over positions.
ReadResult FinishSlopes(Table& table, ImportedProfile& profile) {
  const auto& columns = table.heading.columns;
  const auto slope = std::find_if(columns.begin(), columns.end(),
                                  [](const ColumnHeading& column) { return RadiansPerUnit(column.unit).has_value(); });
  if (slope == columns.end()) return Unusable("no column is in a unit of angle");
  if (!table.chosen.x) return Unusable("slopes without positions have no heights");
  const auto column = static_cast<std::size_t>(slope - columns.begin());
  const std::size_t xColumn = *table.chosen.x;
  if (std::string wrong = NoLength(table, xColumn); !wrong.empty()) return Unusable(std::move(wrong));
  if (!columns[xColumn].HasLength()) return Unusable("the positions of the slopes have no unit");
  std::vector<double>& x = table.rows.columns[xColumn];
  const double unitUM = columns[xColumn].unitUM;
  const double step = std::abs(x.back() - x.front()) / static_cast<double>(x.size() - 1);
  for (double& position : x) position *= unitUM;
  profile.spacingSource = "column of positions";
  Describe(table, column, profile);
  profile.isIntegral = true;
  profile.warnings.push_back("the heights are the integral of " + ColumnText(table.heading, column) + ", in " +
                             Quoted(slope->unit) + ", over the positions");
  Trace trace{.xUM = x, .zUM = IntegralOf(x, table.rows.columns[column], *RadiansPerUnit(slope->unit))};
  trace.lastDigitUM = [&] { return LastDigitOf(table.text, table.rows, xColumn, step) * unitUM; };
  const EvenOutcome even = MakeEven(std::move(trace), profile);
  if (even.ok()) return ReadResult::Read();
  return Unusable(AtLine(table.rows.LineOf(even.point), "column " + Number(xColumn + 1) + ": " + even.reason));
}

ReadResult Finish(const ReaderInput& input, Table& table, ImportedProfile& profile) {
  if (!table.rows.wrong.empty())
    return Unusable(table.rows.wrong, table.rows.Count() < 3 ? (table.rows.Count() == 0 ? 0 : kNoRows) : kRows);
  if (input.options.integratesSlopes) return FinishSlopes(table, profile);
  if (!table.chosen.wrong.empty()) return Unusable(table.chosen.wrong);
  const std::vector<std::size_t>& heights = table.chosen.heights;
  std::vector<std::string> titles;
  for (const std::size_t column : heights) {
    const ColumnHeading& named = table.heading.columns[column];
    if (table.heading.line == 0) break;
    const bool tellsUnit = named.unit.empty() || named.name.find(named.unit) != std::string::npos;
    titles.push_back(named.name + (tellsUnit ? "" : " in " + named.unit));
  }
  const std::size_t zColumn = heights[AskHeightColumn(input, heights.size(), profile, titles) - 1];
  std::string wrong = NoLength(table, zColumn);
  if (!wrong.empty()) return Unusable(std::move(wrong));
  if (!table.chosen.x) return FinishWithoutPositions(input, table, zColumn, profile);
  const std::size_t xColumn = *table.chosen.x;
  wrong = NoLength(table, xColumn);
  if (!wrong.empty()) return Unusable(std::move(wrong));

  std::vector<double>& x = table.rows.columns[xColumn];
  const double step = std::abs(x.back() - x.front()) / static_cast<double>(x.size() - 1);
  const double likely = step < 1e-6 ? 1e6 : step < 0.02 ? 1e3 : 1.0;
  const Unit xUnit = UnitOf(table.heading.columns[xColumn], likely);
  const Unit zUnit = UnitOf(table.heading.columns[zColumn], !xUnit.isStated && likely == 1e6 ? 1e6 : 1.0);
  profile.spacingSource = "column of positions";
  WarnOfUnits(xUnit, zUnit, profile);
  Describe(table, zColumn, profile);
  Trace trace{.xUM = std::move(x), .zUM = std::move(table.rows.columns[zColumn])};
  for (double& position : trace.xUM) position *= xUnit.micrometres;
  ScaleHeights(zUnit, trace.zUM);
  trace.lastDigitUM = [&] { return LastDigitOf(table.text, table.rows, xColumn, step) * xUnit.micrometres; };
  const EvenOutcome even = MakeEven(std::move(trace), profile);
  if (even.ok()) return ReadResult::Read();
  return Unusable(AtLine(table.rows.LineOf(even.point), "column " + Number(xColumn + 1) + ": " + even.reason));
}

/// Whether the second cells of whole numbers begin with a 0: they are decimals, 1,05.
bool HasLeadingZero(std::string_view text, const NumberRows& rows) {
  LineCursor lines(text.substr(rows.begin));
  for (std::size_t row = 0; row < rows.Count(); ++row) {
    const std::string_view line = lines.Next().value_or(std::string_view{});
    const std::string_view second = TrimBlanks(line.substr(std::min(line.find(',') + 1, line.size())));
    if (second.size() > 1 && second[0] == '0') return true;
  }
  return false;
}

}  // namespace

ReadResult ReadTwoColumnText(const ReaderInput& input, ImportedProfile& profile) {
  Table table = TakeTable(input.bytes);
  if (table.rows.wrong.empty() && table.rows.columns.size() < 2) return Unusable("the table has one column only", 0);
  if (table.rows.mayBeDecimals && HasLeadingZero(table.text, table.rows)) {
    return Unusable("the commas are decimal signs of one column", 0);
  }
  return Finish(input, table, profile);
}

ReadResult ReadUnitPairText(const ReaderInput& input, ImportedProfile& profile) {
  // The heading tells; what follows is read only where it does.
  constexpr std::size_t kHeaderSize = 65'536;
  const NumberRows head = FindNumberRows(input.bytes.substr(0, kHeaderSize));
  if (head.Count() == 0 || head.columns.size() != 2) return Unusable("there are no two columns of numbers", 0);
  if (FindTableHeading(input.bytes, head).unitLine == 0) return Unusable("the heading is no unit pair", 0);
  Table table = TakeTable(input.bytes);
  if (table.rows.columns.size() != 2 || table.heading.unitLine == 0) return Unusable("the heading is no unit pair", 0);
  return Finish(input, table, profile);
}

ReadResult ReadGenericText(const ReaderInput& input, ImportedProfile& profile) {
  if (StartsWithIgnoringCase(TrimBlanks(input.bytes), kValidityHeading)) return ReadValidityTable(input, profile);
  Table table = TakeTable(input.bytes);
  const bool mayBeDecimals = table.rows.mayBeDecimals;
  ReadResult result = Unusable("the commas are decimal signs");
  if (!mayBeDecimals || !HasLeadingZero(table.text, table.rows)) result = Finish(input, table, profile);
  if (result.status != ReadResult::Status::kNotRecognised || !mayBeDecimals) return result;
  // What makes no positions under a comma may be one column of heights with a decimal comma.
  Table column = TakeTable(input.bytes, false);
  if (!column.rows.wrong.empty() || column.rows.columns.size() != 1) return result;
  profile = {};
  return Finish(input, column, profile);
}

ReadResult ReadDistanceTable(const ReaderInput& input, ImportedProfile& profile) {
  constexpr std::size_t kHeaderSize = 65'536;
  if (input.bytes.substr(0, kHeaderSize).find("Distance(um)") == std::string_view::npos) {
    return Unusable("the heading does not name \"Distance(um)\"", 0);
  }
  return ReadGenericText(input, profile);
}

ReadResult ReadValidityTable(const ReaderInput& input, ImportedProfile& profile) {
  if (!StartsWithIgnoringCase(TrimBlanks(input.bytes), kValidityHeading))
    return Unusable("line 1 is not \"X;Y;valid\"", 0);
  NumberRows rows = FindNumberRows(input.bytes);
  if (!rows.wrong.empty()) return RefuseAtLine(input, 1, rows.wrong);
  const TableHeading heading = FindTableHeading(input.bytes, rows);
  if (rows.columns.size() != 3 || !heading.columns[0].HasLength() || !heading.columns[1].HasLength()) {
    return RefuseAtLine(input, 2, "Units of X and Y are not understood.");
  }
  const double step = std::abs(rows.columns[0].back() - rows.columns[0].front()) / static_cast<double>(rows.Count());
  Trace trace{.xUM = std::move(rows.columns[0]), .zUM = std::move(rows.columns[1])};
  for (std::size_t i = 0; i < trace.xUM.size(); ++i) {
    trace.xUM[i] *= heading.columns[0].unitUM;
    trace.zUM[i] = rows.columns[2][i] == 0.0 ? kInvalid : trace.zUM[i] * heading.columns[1].unitUM;
  }
  trace.lastDigitUM = [&] { return LastDigitOf(input.bytes, rows, 0, step) * heading.columns[0].unitUM; };
  profile.spacingSource = "column X";
  const EvenOutcome even = MakeEven(std::move(trace), profile);
  return even.ok() ? ReadResult::Read() : RefuseAtLine(input, rows.LineOf(even.point), even.reason);
}

}  // namespace texturon
