// SPDX-License-Identifier: Apache-2.0

#include "formats/number_rows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "base/elementary.h"
#include "base/number_text.h"
#include "base/text.h"
#include "formats/text_lines.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kFewestRows = 3;
constexpr std::string_view kBlanks = " \t";

/// How rows are taken apart.
struct Manner {
  char separator = ' ';
  bool decimalComma = false;
  std::size_t columns = 0;
  std::size_t rawColumns = 0;
  bool hasRemarks = false;  ///< words behind the numbers
};

/// Marks that instruments and spreadsheets leave where there is no value.
bool IsMark(std::string_view cell) {
  constexpr std::string_view kMarks[] = {"nan",  "-nan",    "bad",     "***",      "---",       "-",
                                         "inf",  "+inf",    "-inf",    "infinity", "-infinity", "#n/a",
                                         "n/a",  "na",      "#nv",     "#div/0!",  "#value!",   "#num!",
                                         "null", "1.#qnan", "-1.#ind", "1.#inf",   "-1.#inf",   "1.#ind"};
  return std::any_of(std::begin(kMarks), std::end(kMarks),
                     [cell](std::string_view mark) { return EqualIgnoringCase(cell, mark); });
}

/// A number with the exponent letter of Fortran.
std::optional<double> WithLetterD(std::string_view cell, bool decimalComma) {
  const std::size_t letter = cell.find_first_of("dD");
  if (letter == std::string_view::npos || letter == 0 || cell.size() > 40) return std::nullopt;
  std::string plain(cell);
  plain[letter] = 'e';
  return NumberField(plain, decimalComma);
}

std::optional<double> CellValue(std::string_view cell, bool decimalComma) {
  const bool isQuoted = cell.size() > 1 && cell.front() == '"' && cell.back() == '"';
  if (isQuoted) cell = TrimBlanks(cell.substr(1, cell.size() - 2));
  if (cell.empty()) return kNone;
  if (const auto number = NumberField(cell, decimalComma || isQuoted)) return number;
  if (IsMark(cell)) return kNone;
  return WithLetterD(cell, decimalComma || isQuoted);
}

/// The line with blanks and minus signs as ASCII has them.
std::string_view InAscii(std::string_view line, std::string& storage) {
  const auto isOdd = [](char c) { return c == '\xA0' || c == '\x96'; };
  if (std::none_of(line.begin(), line.end(), isOdd)) return line;
  storage.assign(line);
  std::replace(storage.begin(), storage.end(), '\xA0', ' ');
  std::replace(storage.begin(), storage.end(), '\x96', '-');
  return storage;
}

class RowFinder {
public:
  RowFinder(std::string_view text, bool commaSeparates) : text_(text), lines_(text), commaSeparates_(commaSeparates) {}

  NumberRows Find() {
    while (const auto line = lines_.Next()) {
      if (line->empty() || TrimBlanks(*line).empty()) {
        sawBlank_ = true;
        continue;
      }
      ++filled_;
      const bool isRow = manner_.columns > 0 && (ReadPlainRow(*line) || ReadAnyRow(*line));
      if (isRow && IsEmptyRow()) continue;
      if (isRow && !(sawBlank_ && Restarts())) {
        if (!TakeRow(*line)) break;
      } else if (!StartsWithLastRow(*line)) {
        EndRun();
        Start(*line, lines_.LineNumber());
      }
      sawBlank_ = false;
    }
    EndRun();
    if (best_.wrong.empty() && best_.Count() < kFewestRows) best_.wrong = TooFew();
    return std::move(best_);
  }

private:
  /// What is kept of a run that is over.
  struct Summary {
    char separator = ' ';
    std::size_t columns = 0, rows = 0, lastFilled = 0, firstLine = 0;
    double first = 0.0, last = 0.0;
  };

  std::string TooFew() const {
    if (best_.Count() == 0) return "no line is a row of numbers";
    return AtLine(best_.firstLine, "there are fewer than three rows of numbers with as many cells each");
  }

  /// Takes a line as a row under the first separator that makes numbers of all its cells.
  std::optional<Manner> MannerOf(std::string_view line) {
    std::optional<Manner> withRemarks;
    for (const char separator : {';', '\t', ',', ' '}) {
      if (separator != ' ' && line.find(separator) == std::string_view::npos) continue;
      if (separator == ',' && !commaSeparates_) continue;
      const std::size_t all = SplitCells(line, separator, cells_);
      if (cells_.empty() || cells_.size() > kMostColumns) continue;
      const bool decimalComma = separator != ',';
      std::size_t numbers = 0;
      std::size_t columns = 0;
      for (; columns < cells_.size(); ++columns) {
        const auto value = CellValue(cells_[columns], decimalComma);
        if (!value) break;
        numbers += std::isnan(*value) ? 0 : 1;
      }
      const bool onlyNumbers = columns == cells_.size();
      // Words may stand behind two or more numbers.
      if (!onlyNumbers && separator != ' ' && columns > 1 && numbers == columns && !withRemarks) {
        withRemarks = Manner{separator, decimalComma, columns, all, true};
      }
      const std::size_t empty =
          static_cast<std::size_t>(std::count_if(cells_.begin(), cells_.end(), [](auto cell) { return cell.empty(); }));
      if (onlyNumbers && numbers >= (empty > 0 ? 2 : 1)) return Manner{separator, decimalComma, cells_.size(), all};
    }
    return withRemarks;
  }

  /// A row "0,1" may have gone to numbers one below the other and belong to what follows, "0.5,3".
  bool StartsWithLastRow(std::string_view line) {
    if (manner_.columns != 1 || !commaSeparates_ || lastRow_.find(',') == std::string_view::npos) return false;
    const auto manner = MannerOf(line);
    if (!manner || manner->separator != ',') return false;
    const std::string_view former = lastRow_;
    const std::size_t number = run_.lastLine;
    EndRun();
    Start(former, number);
    if (manner_.columns == 0 || !ReadAnyRow(line)) {
      EndRun();
      Start(line, lines_.LineNumber());
      return true;
    }
    TakeRow(line);
    return true;
  }

  void Start(std::string_view line, std::size_t number) {
    const auto manner = MannerOf(InAscii(line, ascii_));
    if (!manner) return;
    manner_ = *manner;
    row_.resize(manner_.columns);
    run_.mayBeDecimals = manner_.separator == ',' && manner_.columns == 2;
    if (!ReadAnyRow(line)) {
      manner_ = {};
      return;
    }
    run_ = {.separator = manner_.separator,
            .decimalComma = manner_.decimalComma,
            .columns = std::move(run_.columns),
            .rawColumns = manner_.rawColumns,
            .begin = static_cast<std::size_t>(line.data() - text_.data()),
            .firstLine = number,
            .mayBeDecimals = run_.mayBeDecimals};
    run_.columns.resize(manner_.columns);
    for (std::vector<double>& column : run_.columns) column.clear();
    firstFilled_ = filled_;
    runBytes_ = 0;
    CompareWithFormer();
    TakeRow(line, number);
  }

  /// Notes that the run goes on behind a line that is no row, or behind several where there are positions.
  void CompareWithFormer() {
    constexpr std::size_t kMostBetween = 50;
    const std::size_t between = firstFilled_ - former_.lastFilled - 1;
    if (former_.rows == 0 || former_.separator != run_.separator || former_.columns != run_.columns.size() ||
        between == 0 || between > (former_.columns > 1 && former_.rows > 2 ? kMostBetween : 1)) {
      return;
    }
    bool goesOn = former_.rows >= 10;
    if (former_.columns > 1) {
      const double step =
          (former_.last - former_.first) / static_cast<double>(std::max<std::size_t>(former_.rows - 1, 1));
      const double gap = row_[0] - former_.last;
      const double most = (static_cast<double>(between) + 2.0) * std::abs(step);
      goesOn = former_.rows > 1 && gap * step > 0.0 && std::abs(gap) <= most;
    }
    if (!goesOn) return;
    brokenAt_ = formerBreak_;
    if (best_.Count() > 0 && best_.firstLine >= former_.firstLine) bestBrokenAt_ = formerBreak_;
  }

  bool TakeRow(std::string_view line) { return TakeRow(line, lines_.LineNumber()); }

  bool TakeRow(std::string_view line, std::size_t number) {
    const std::size_t rows = run_.Count();
    if (rows == static_cast<std::size_t>(kPointCapacity)) {
      tooMany_ = true;
      return false;
    }
    constexpr std::size_t kSettled = 16;
    runBytes_ += line.size() + 1;
    lastRow_ = line;
    if (rows == kSettled) Reserve();
    const std::size_t expected = rows == 0 ? run_.firstLine : run_.lastLine + 1;
    if (number != expected) {
      run_.jumps.emplace_back(static_cast<std::uint32_t>(rows), static_cast<std::uint32_t>(number));
    }
    run_.lastLine = number;
    lastFilled_ = filled_;
    for (std::size_t i = 0; i < manner_.columns; ++i) run_.columns[i].push_back(row_[i]);
    return true;
  }

  /// Makes room for as many rows as the rest can hold, were they as long as those so far.
  void Reserve() {
    constexpr std::size_t kSettled = 16;
    const std::size_t likely = kSettled + lines_.Rest().size() / std::max<std::size_t>(runBytes_ / kSettled, 1) + 16;
    const std::size_t possible = kSettled + lines_.Rest().size() / (2 * manner_.columns) + 2;
    const std::size_t rows = std::min({likely + likely / 64, possible, static_cast<std::size_t>(kPointCapacity)});
    for (std::vector<double>& column : run_.columns) column.reserve(rows);
  }

  void EndRun() {
    if (manner_.columns == 0) return;
    manner_ = {};
    const std::size_t rows = run_.Count();
    if (tooMany_) run_.wrong = "the table has more than 750 000 rows";
    // A single row before a break is a count, a date or a row that lost a cell.
    if (brokenAt_ != 0) {
      // One table so far, with lines in it that are no rows.
      former_.rows += rows;
      former_.lastFilled = lastFilled_;
      former_.last = run_.columns[0].back();
    } else if (rows > 1 || former_.lastFilled + 1 < lastFilled_) {
      former_ = {run_.separator,          run_.columns.size(),   rows, lastFilled_, run_.firstLine,
                 run_.columns[0].front(), run_.columns[0].back()};
      formerBreak_ = lines_.LineNumber();
    }
    if (rows > best_.Count()) {
      run_.otherRows = best_.Count();
      std::swap(best_, run_);
      bestBrokenAt_ = brokenAt_;
      for (std::vector<double>& column : best_.columns) {
        if (column.capacity() > 2 * column.size() + 64) column.shrink_to_fit();
      }
      for (std::vector<double>& column : run_.columns) column = {};
    } else {
      best_.otherRows = std::max(best_.otherRows, rows);
    }
    brokenAt_ = 0;
    if (bestBrokenAt_ != 0 && best_.wrong.empty()) {
      best_.wrong = AtLine(bestBrokenAt_, "no row of as many numbers as above; rows go on behind it");
    } else if (bestBrokenAt_ == 0 && !tooMany_) {
      best_.wrong.clear();
    }
  }

  /// Reads a row of plain numbers without taking it apart first; false where it is not one, or not so plain.
  bool ReadPlainRow(std::string_view line) {
    const char separator = manner_.separator;
    const auto skipBlanks = [&line, separator] {
      std::size_t i = 0;
      while (i < line.size() && (line[i] == ' ' || (line[i] == '\t' && separator != '\t'))) ++i;
      line.remove_prefix(i);
      return i > 0;
    };
    for (std::size_t i = 0; i < manner_.columns; ++i) {
      skipBlanks();
      const ParsedDouble number = ParseDouble(line);
      if (!number.usable()) return false;
      row_[i] = number.value;
      line.remove_prefix(number.length);
      const bool hadBlanks = skipBlanks();
      if (i + 1 == manner_.columns) break;
      if (separator == ' ') {
        if (!hadBlanks) return false;
      } else {
        if (!line.starts_with(separator)) return false;
        line.remove_prefix(1);
      }
    }
    if (run_.mayBeDecimals) NoteDecimals();
    return line.empty();
  }

  /// A fraction or a sign in either column shows that the comma separates.
  void NoteDecimals() {
    run_.mayBeDecimals = row_[0] == std::trunc(row_[0]) && row_[1] == std::trunc(row_[1]) && !std::signbit(row_[1]);
  }

  /// The same for any row: decimal commas, marks, quotes, empty cells, separators at the end.
  bool ReadAnyRow(std::string_view line) {
    const std::size_t all = SplitCells(InAscii(line, ascii_), manner_.separator, cells_);
    if (all < manner_.columns) return false;
    if (manner_.hasRemarks && cells_.size() > manner_.columns) cells_.resize(manner_.columns);
    if (cells_.size() > manner_.columns) return false;
    std::fill(row_.begin(), row_.end(), kNone);
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      const auto value = CellValue(cells_[i], manner_.decimalComma);
      if (!value) return false;
      row_[i] = *value;
    }
    if (run_.mayBeDecimals) NoteDecimals();
    return true;
  }

  bool IsEmptyRow() const {
    return std::isnan(row_[0]) && std::all_of(row_.begin(), row_.end(), [](double value) { return std::isnan(value); });
  }

  /// Whether a row behind blank lines goes back to where another trace may begin.
  bool Restarts() const {
    const std::vector<double>& first = run_.columns[0];
    if (manner_.columns < 2 || first.size() < 2) return false;
    return (row_[0] - first.back()) * (first.back() - first.front()) < 0.0;
  }

  std::string_view text_;
  LineCursor lines_;
  bool commaSeparates_;
  NumberRows run_;
  NumberRows best_;
  Manner manner_;
  std::vector<double> row_;
  std::vector<std::string_view> cells_;
  std::string ascii_;
  std::string_view lastRow_;
  bool sawBlank_ = false;
  bool tooMany_ = false;
  std::size_t filled_ = 0;  ///< lines that are not blank so far
  std::size_t firstFilled_ = 0;
  std::size_t lastFilled_ = 0;
  std::size_t runBytes_ = 0;
  Summary former_;
  std::size_t formerBreak_ = 0;   ///< the line that ended the former run
  std::size_t brokenAt_ = 0;      ///< a line inside the present run and the former one
  std::size_t bestBrokenAt_ = 0;  ///< the same of the best
};

/// Digits of a printed number before and behind its point, and its exponent.
struct Print {
  int whole = 0;
  int decimals = 0;
  int exponent = 0;
  bool hasExponent = false;
};

Print PrintOf(std::string_view cell) {
  Print print;
  bool isBehindPoint = false;
  for (std::size_t i = 0; i < cell.size(); ++i) {
    const char c = cell[i];
    if (c == '.' || c == ',') {
      isBehindPoint = true;
    } else if (c >= '0' && c <= '9') {
      ++(isBehindPoint ? print.decimals : print.whole);
    } else if (c == 'e' || c == 'E' || c == 'd' || c == 'D') {
      print.hasExponent = true;
      const ParsedInt32 exponent = ParseInt32(cell.substr(i + 1));
      print.exponent = std::clamp(exponent.value, -400, 400);
      break;
    }
  }
  return print;
}

}  // namespace

std::size_t SplitCells(std::string_view line, char separator, std::vector<std::string_view>& cells) {
  cells.clear();
  const bool isBlank = separator == ' ';
  while (cells.size() <= kMostColumns) {
    line.remove_prefix(
        std::min(line.find_first_not_of(separator == '\t' ? std::string_view(" ") : kBlanks), line.size()));
    if (isBlank && line.empty()) break;
    // A quoted cell may hold the separator.
    std::size_t from = 0;
    if (line.starts_with('"')) {
      const std::size_t quote = line.find('"', 1);
      if (quote != std::string_view::npos) from = quote;
    }
    const std::size_t end = isBlank ? line.find_first_of(kBlanks, from) : line.find(separator, from);
    cells.push_back(TrimBlanks(line.substr(0, end)));
    if (end == std::string_view::npos) break;
    line.remove_prefix(end + 1);
  }
  const std::size_t all = cells.size();
  while (!cells.empty() && cells.back().empty()) cells.pop_back();
  return all;
}

std::size_t NumberRows::LineOf(std::size_t row) const {
  auto jump = std::upper_bound(jumps.begin(), jumps.end(), row,
                               [](std::size_t wanted, const auto& entry) { return wanted < entry.first; });
  if (jump == jumps.begin()) return firstLine + row;
  --jump;
  return jump->second + (row - jump->first);
}

NumberRows FindNumberRows(std::string_view text, bool commaSeparates) {
  return RowFinder(text, commaSeparates).Find();
}

double LastDigitOf(std::string_view text, const NumberRows& rows, std::size_t column, double step) {
  // Printed to so many figures, numbers lose a decimal at each power of ten; a few rows alone may be round numbers.
  constexpr std::size_t kPlaces = 24;
  constexpr int kFewestOfAPlace = 10;
  std::array<int, kPlaces> decimals = {};
  std::array<int, kPlaces> count = {};
  double digit = 0.0;
  int most = 0;
  LineCursor lines(text.substr(rows.begin));
  std::vector<std::string_view> cells;
  std::string ascii;
  while (const auto line = lines.Next()) {
    if (rows.firstLine + lines.LineNumber() > rows.lastLine + 1) break;
    SplitCells(InAscii(*line, ascii), rows.separator, cells);
    if (column >= cells.size()) continue;
    const Print print = PrintOf(cells[column]);
    if (print.hasExponent) {
      if (print.decimals > 0) digit = std::max(digit, Pow(10.0, print.exponent - print.decimals));
      continue;
    }
    const auto place = static_cast<std::size_t>(std::clamp(print.whole, 0, static_cast<int>(kPlaces) - 1));
    ++count[place];
    decimals[place] = std::max(decimals[place], print.decimals);
    most = std::max(most, print.decimals);
  }
  // Whole numbers, and those with an exponent, may as well be exact.
  if (most == 0 && digit == 0.0) return step > 2.0 ? 0.5 : 0.0;
  if (most == 0) return step > 2.0 * digit ? digit : 0.0;
  digit = std::max(digit, Pow(10.0, -most));
  for (std::size_t place = 0; place < kPlaces; ++place) {
    if (count[place] >= kFewestOfAPlace) digit = std::max(digit, Pow(10.0, -decimals[place]));
  }
  return digit;
}

}  // namespace texturon
