// SPDX-License-Identifier: Apache-2.0

#include "formats/table_heading.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/text_lines.h"

namespace texturon {
namespace {

using Cells = std::vector<std::string_view>;

constexpr std::size_t kMostLinesAbove = 2000;

struct QuantityWord {
  std::string_view word;
  Quantity quantity;
};

// English and German, as instruments print them; a misspelling of a public data base among them.
constexpr QuantityWord kWords[] = {
    {"position", Quantity::kPosition}, {"positions", Quantity::kPosition}, {"pos", Quantity::kPosition},
    {"distance", Quantity::kPosition}, {"dist", Quantity::kPosition},      {"lateral", Quantity::kPosition},
    {"length", Quantity::kPosition},   {"abscissa", Quantity::kPosition},  {"coordinate", Quantity::kPosition},
    {"travel", Quantity::kPosition},   {"location", Quantity::kPosition},  {"weg", Quantity::kPosition},
    {"strecke", Quantity::kPosition},  {"abstand", Quantity::kPosition},   {"abszisse", Quantity::kPosition},
    {"xaxis", Quantity::kPosition},    {"height", Quantity::kHeight},      {"heights", Quantity::kHeight},
    {"heigth", Quantity::kHeight},     {"depth", Quantity::kHeight},       {"profile", Quantity::kHeight},
    {"profil", Quantity::kHeight},     {"altitude", Quantity::kHeight},    {"elevation", Quantity::kHeight},
    {"raw", Quantity::kHeight},        {"rawlevel", Quantity::kHeight},    {"amplitude", Quantity::kHeight},
    {"roughness", Quantity::kHeight},  {"waviness", Quantity::kHeight},    {"primary", Quantity::kHeight},
    {"deviation", Quantity::kHeight},  {"h\xF6he", Quantity::kHeight},     {"hoehe", Quantity::kHeight},
    {"tiefe", Quantity::kHeight},      {"zaxis", Quantity::kHeight},       {"ordinate", Quantity::kHeight},
    {"topography", Quantity::kHeight}, {"index", Quantity::kIndex},        {"idx", Quantity::kIndex},
    {"counter", Quantity::kIndex},     {"count", Quantity::kIndex},        {"number", Quantity::kIndex},
    {"point", Quantity::kIndex},       {"points", Quantity::kIndex},       {"row", Quantity::kIndex},
    {"sample", Quantity::kIndex},      {"no", Quantity::kIndex},           {"nr", Quantity::kIndex},
    {"slope", Quantity::kOther},       {"slopes", Quantity::kOther},       {"angle", Quantity::kOther},
    {"intensity", Quantity::kOther},   {"voltage", Quantity::kOther},      {"time", Quantity::kOther},
    {"zeit", Quantity::kOther},        {"valid", Quantity::kOther},        {"flag", Quantity::kOther},
    {"quality", Quantity::kOther},     {"force", Quantity::kOther},        {"steigung", Quantity::kOther},
    {"curvature", Quantity::kOther},   {"encoder", Quantity::kOther},      {"temperature", Quantity::kOther},
};

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0xC0;
}

std::string_view Unquoted(std::string_view cell) {
  cell = TrimBlanks(cell);
  if (cell.size() > 1 && cell.front() == '"' && cell.back() == '"') cell = cell.substr(1, cell.size() - 2);
  return TrimBlanks(cell);
}

/// Quantity of a word of one letter, a number behind it aside: "x", "Z1".
Quantity QuantityOfLetter(std::string_view word) {
  if (word.size() != 1) return Quantity::kUnknown;
  switch (LowerAscii(word[0])) {
    case 'x':
      return Quantity::kPosition;
    case 'y':
      return Quantity::kAcross;
    case 'z':
      return Quantity::kHeight;
    case 'n':
    case 'i':
      return Quantity::kIndex;
    default:
      return Quantity::kUnknown;
  }
}

/// A number at the start of a cell: "0.8 mm", "3".
bool IsValue(std::string_view cell) {
  return ParseDouble(cell).found() && !IsLetter(cell[cell.find_first_not_of("+- \t")]);
}

/// Lines without the signs that mark them as comments.
std::string_view WithoutCommentSign(std::string_view line) {
  line = TrimBlanks(line);
  for (const std::string_view sign : {"#", "%", "//", "!"}) {
    while (line.starts_with(sign)) line.remove_prefix(sign.size());
  }
  return line;
}

/// Cells that end with a bracket each: "Position along trace (mm)  Profile height (um)".
Cells CellsByBrackets(std::string_view line) {
  Cells cells;
  while (!line.empty()) {
    const std::size_t close = line.find_first_of(")]");
    if (close == std::string_view::npos) break;
    cells.push_back(TrimBlanks(line.substr(0, close + 1)));
    line.remove_prefix(close + 1);
    while (!line.empty() &&
           (line.front() == ' ' || line.front() == '\t' || line.front() == ',' || line.front() == ';')) {
      line.remove_prefix(1);
    }
  }
  if (!TrimBlanks(line).empty()) cells.push_back(TrimBlanks(line));
  return cells;
}

/// Cells between two or more blanks.
Cells CellsByGaps(std::string_view line) {
  Cells cells;
  line = TrimBlanks(line);
  while (!line.empty()) {
    const std::size_t end = std::min(line.find("  "), line.find('\t'));
    cells.push_back(TrimBlanks(line.substr(0, end)));
    line = end >= line.size() ? std::string_view{} : TrimBlanks(line.substr(end));
  }
  return cells;
}

/// Takes the line apart as a heading of `columns`; empty where it does not have as many cells.
Cells HeadingCells(std::string_view line, const NumberRows& rows) {
  const std::size_t columns = rows.columns.size();
  Cells cells;
  const auto fits = [&cells, columns, &rows] { return cells.size() == columns || cells.size() == rows.rawColumns; };
  if (columns == 1 && rows.rawColumns == 1) return {TrimBlanks(line)};
  const std::string_view plain = WithoutCommentSign(line);
  for (const std::string_view text : {line, plain}) {
    SplitCells(text, rows.separator, cells);
    if (fits()) return cells;
  }
  if (rows.separator != ' ' && rows.separator != '\t') return {};
  for (Cells (*const split)(std::string_view) : {CellsByGaps, CellsByBrackets}) {
    cells = split(plain);
    if (fits()) return cells;
  }
  for (const char separator : {';', ','}) {
    SplitCells(plain, separator, cells);
    if (fits()) return cells;
  }
  return {};
}

struct HeadingLine {
  std::vector<ColumnHeading> columns;
  bool isUnits = false;  ///< units and nothing else
  bool hasUnits = false;
};

bool NamesSomething(const UnitStatement& unit, const ColumnHeading& column) {
  return unit.kind != UnitStatement::Kind::kNone || unit.hasBrackets || column.quantity != Quantity::kUnknown;
}

/// What a line says of the columns; nothing where it is no heading. `isNext`: it stands right above the rows, or above
/// their line of units.
std::optional<HeadingLine> ReadHeadingLine(std::string_view line, const NumberRows& rows, bool isNext) {
  const Cells cells = HeadingCells(line, rows);
  if (cells.empty()) return std::nullopt;
  HeadingLine heading;
  heading.columns.resize(rows.columns.size());
  std::size_t filled = 0, units = 0, named = 0, bracketed = 0, unitsAlone = 0, lengths = 0, digits = 0;
  bool inBrackets = false;
  for (std::size_t i = 0; i < cells.size() && i < heading.columns.size(); ++i) {
    const std::string_view cell = Unquoted(cells[i]);
    if (cell.empty() || cell == "-") continue;
    if (IsValue(cell) || cell.ends_with(':') || cell.find('=') != std::string_view::npos) return std::nullopt;
    ColumnHeading& column = heading.columns[i];
    const UnitStatement unit = UnitOfCell(cell);
    column.name = cell;
    column.unitKind = unit.kind;
    column.unitUM = unit.micrometres;
    column.unit = unit.text;
    const bool isFlag = cell == "[1/0]" || cell == "[-]";
    if (!unit.isAlone && !isFlag) column.quantity = QuantityOf(cell);
    ++filled;
    const bool isIndex = column.quantity == Quantity::kIndex;
    unitsAlone += unit.isAlone || isFlag ? 1 : 0;
    units += unit.kind != UnitStatement::Kind::kNone ? 1 : 0;
    lengths += unit.kind == UnitStatement::Kind::kLength ? 1 : 0;
    named += column.quantity != Quantity::kUnknown && !isIndex ? 1 : 0;
    bracketed += NamesSomething(unit, column) ? 1 : 0;
    inBrackets = inBrackets || unit.hasBrackets;
    digits += cell.find_first_of("0123456789") != std::string_view::npos ? 1 : 0;
    if (isIndex) ++unitsAlone;
  }
  heading.hasUnits = units > 0;
  if (filled == 0) return std::nullopt;
  heading.isUnits = unitsAlone == filled && units > 0;
  if (heading.isUnits) return heading;
  if (rows.columns.size() == 1) {
    const bool isName = (units > 0 || named > 0) && (digits == 0 || inBrackets);
    return isNext && isName ? std::optional(std::move(heading)) : std::nullopt;
  }
  // A unit by itself beside a name is a key with its value.
  const bool isPair = unitsAlone > 0 && filled == 2;
  if (isPair) return std::nullopt;
  if (bracketed == filled && (units > 0 || named > 0) && filled > 1) return heading;
  if (isNext && lengths > 0 && digits == 0 && filled > 1) return heading;
  return std::nullopt;
}

/// Lines above a place, from the last upwards.
class LinesAbove {
public:
  LinesAbove(std::string_view above, std::size_t lineBelow) : rest_(above), number_(lineBelow) {
    lineEnd_ = above.find('\n') == std::string_view::npos ? '\r' : '\n';
  }
  std::optional<std::string_view> Next() {
    if (rest_.empty() || ++taken_ > kMostLinesAbove) return std::nullopt;
    rest_.remove_suffix(1);  // the line's end
    const std::size_t end = rest_.rfind(lineEnd_);
    const std::string_view line = end == std::string_view::npos ? rest_ : rest_.substr(end + 1);
    rest_ = rest_.substr(0, end == std::string_view::npos ? 0 : end + 1);
    --number_;
    return TrimBlanks(line).empty() ? TrimBlanks(line) : line.substr(0, line.find_last_not_of('\r') + 1);
  }
  std::size_t Number() const { return number_; }

private:
  std::string_view rest_;
  char lineEnd_;
  std::size_t number_;
  std::size_t taken_ = 0;
};

/// Lines "# Width: 12 um" and "# Height: 5 um" of an image.
bool SpeaksOfArea(std::string_view above, std::size_t lineBelow) {
  bool hasWidth = false;
  bool hasHeight = false;
  LinesAbove lines(above, lineBelow);
  while (const auto line = lines.Next()) {
    if (!line->starts_with('#')) continue;
    const std::string_view text = WithoutCommentSign(*line);
    const std::string_view key = TrimBlanks(text);
    const auto begins = [key](std::string_view word) {
      return StartsWithIgnoringCase(key, word) && key.size() > word.size() &&
             key.find_first_of(":=") != std::string_view::npos;
    };
    hasWidth = hasWidth || begins("width") || begins("breite") || begins("x-pixels");
    hasHeight = hasHeight || begins("height") || begins("h\xF6he") || begins("hoehe") || begins("y-pixels");
  }
  return hasWidth && hasHeight;
}

/// Takes from the one line what the other leaves open.
void Join(TableHeading& heading, const HeadingLine& names, const HeadingLine& units) {
  for (std::size_t i = 0; i < heading.columns.size(); ++i) {
    heading.columns[i] = names.columns[i];
    const ColumnHeading& unit = units.columns[i];
    if (unit.unitKind == UnitStatement::Kind::kNone) continue;
    heading.columns[i].unitKind = unit.unitKind;
    heading.columns[i].unitUM = unit.unitUM;
    heading.columns[i].unit = unit.unit;
  }
}

}  // namespace

Quantity QuantityOf(std::string_view name) {
  if (ContainsIgnoringCase(name, "dz/dx") || ContainsIgnoringCase(name, "dy/dx")) return Quantity::kOther;
  Quantity last = Quantity::kUnknown;
  bool isFirst = true;
  for (std::size_t at = 0; at < name.size();) {
    if (name[at] == '(' || name[at] == '[') break;
    std::size_t end = at;
    while (end < name.size() && IsLetter(name[end])) ++end;
    if (end == at) {
      ++at;
      continue;
    }
    const std::string_view word = name.substr(at, end - at);
    const Quantity letter = QuantityOfLetter(word);
    if (letter != Quantity::kUnknown && isFirst) return letter;
    isFirst = false;
    const auto* const found = std::find_if(std::begin(kWords), std::end(kWords), [word](const QuantityWord& entry) {
      return EqualIgnoringCase(entry.word, word);
    });
    if (found != std::end(kWords)) {
      if (found->quantity == Quantity::kOther) return Quantity::kOther;
      last = found->quantity;
    }
    at = end;
  }
  return last;
}

TableHeading FindTableHeading(std::string_view text, const NumberRows& rows) {
  TableHeading heading;
  heading.columns.resize(rows.columns.size());
  const std::string_view above = text.substr(0, rows.begin);
  heading.isOfArea = SpeaksOfArea(above, rows.firstLine);
  LinesAbove lines(above, rows.firstLine);
  bool isNext = true;
  std::optional<HeadingLine> units;
  std::optional<HeadingLine> names;
  while (const auto line = lines.Next()) {
    if (line->empty()) continue;
    auto found = ReadHeadingLine(*line, rows, isNext);
    // Only the neighbour of a first line found can belong to it.
    if ((units || names) && !found) break;
    const bool wasNext = isNext;
    isNext = false;
    if (!found) {
      if (rows.columns.size() == 1) break;
      continue;
    }
    if (found->isUnits && !units && (!names || !names->hasUnits)) {
      units = std::move(found);
      heading.unitLine = lines.Number();
      isNext = wasNext || !names;
      if (names) break;
    } else if (!found->isUnits && !names) {
      names = std::move(found);
      heading.line = lines.Number();
      if (units || names->hasUnits) break;
    } else {
      break;
    }
  }
  if (!names && !units) return heading;
  const HeadingLine none{.columns = std::vector<ColumnHeading>(rows.columns.size())};
  Join(heading, names ? *names : *units, units ? *units : none);
  return heading;
}

}  // namespace texturon
