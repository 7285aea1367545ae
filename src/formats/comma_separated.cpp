// SPDX-License-Identifier: Apache-2.0

#include "formats/comma_separated.h"

#include <cmath>
#include <optional>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "formats/column_text.h"
#include "formats/instrument_results.h"
#include "formats/native_format.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "formats/unit_words.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

/// The first two cells of a row; the first may stand in quotes.
struct TwoCells {
  std::string_view first;
  std::string_view second;
};

TwoCells SplitTwoCells(std::string_view line) {
  std::size_t end = line.find(',');
  std::string_view first = line.substr(0, end);
  if (line.starts_with('"')) {
    const std::size_t quote = line.find('"', 1);
    first = line.substr(1, quote == std::string_view::npos ? quote : quote - 1);
    end = line.find(',', quote);
  }
  if (end == std::string_view::npos) return {TrimBlanks(first), {}};
  const std::string_view rest = line.substr(end + 1);
  return {TrimBlanks(first), TrimBlanks(rest.substr(0, rest.find(',')))};
}

/// What follows a key that begins a cell; empty where another does.
std::string_view Behind(std::string_view cell, std::string_view key) {
  return StartsWithIgnoringCase(cell, key) ? TrimBlanks(cell.substr(key.size())) : std::string_view{};
}

/// Whether the rows are those of the roughness tester: a quoted comment beside a number of points, date and time below.
bool IsTesterExport(std::string_view text) {
  constexpr std::size_t kRows = 12;
  if (!text.starts_with('"')) return false;
  LineCursor lines(text);
  bool hasDate = false;
  bool hasTime = false;
  while (const auto line = lines.Next()) {
    const TwoCells cells = SplitTwoCells(*line);
    const auto number = NumberField(cells.second);
    if (!number && !cells.second.empty()) return false;
    const double count = number.value_or(0.0);
    if (lines.LineNumber() == 1 && (count < 1.0 || count != std::trunc(count))) return false;
    hasDate = hasDate || StartsWithIgnoringCase(cells.first, "DATE");
    hasTime = hasTime || StartsWithIgnoringCase(cells.first, "TIME");
    if (lines.LineNumber() == kRows) break;
  }
  return hasDate && hasTime;
}

ReadResult ReadTesterExport(const ReaderInput& input, ImportedProfile& profile) {
  LineCursor lines(input.bytes);
  const TwoCells head = SplitTwoCells(lines.NextFilled().value_or(std::string_view{}));
  const double count = NumberField(head.second).value_or(0.0);
  std::string_view date;
  std::string_view time;
  while (const auto line = lines.Next()) {
    if (TrimBlanks(*line).empty()) continue;
    const TwoCells cells = SplitTwoCells(*line);
    if (date.empty()) date = Behind(cells.first, "DATE");
    if (time.empty()) time = Behind(cells.first, "TIME");
    if (cells.first == "R" || cells.first == "W") {
      profile.warnings.push_back("the heights are those of the " + std::string(cells.first) + " profile");
    }
    AddInstrumentValue(profile, cells.first);
    if (cells.second.empty()) continue;  // results may go on below the heights
    const auto height = NumberField(cells.second);
    if (!height) return RefuseAtLine(input, lines.LineNumber(), "Not a height.");
    if (profile.heightsUM.size() == static_cast<std::size_t>(kPointCapacity)) {
      return RefuseAtLine(input, lines.LineNumber(), "There are more than 750 000 points.");
    }
    profile.heightsUM.push_back(*height);
  }
  if (profile.heightsUM.empty()) return RefuseAtLine(input, lines.LineNumber(), "Unexpected end of file.");
  WarnOfCount(count, profile);
  profile.identification = head.first;
  profile.date = time.empty() ? std::string(date) : std::string(date) + " - " + std::string(time);
  if (!AskSpacing(input, 1.0, profile)) return ReadResult::Refused("no point spacing was given");
  return ReadResult::Read();
}

/// A length such as "12.5 um", or in a key that ends in its unit: ("Length (um)", "12.5").
std::optional<double> LengthUM(const TwoCells& cells) {
  // "2.5 um", or with a name of its own before it: "Radius: 2.5 um"
  const std::string_view value = cells.second.substr(cells.second.rfind(':') + 1);
  const auto fields = SplitAtAny(value, " \t");
  if (fields.empty()) return std::nullopt;
  const auto number = NumberField(fields[0]);
  const std::size_t open = cells.first.rfind('(');
  const std::string_view unit = fields.size() > 1                ? fields[1]
                                : open != std::string_view::npos ? cells.first.substr(open + 1)
                                                                 : std::string_view("um");
  const auto unitUM = MicrometresPerUnit(unit.substr(0, unit.find(')')));
  if (!number || !unitUM) return std::nullopt;
  return *number * *unitUM;
}

/// A line of the analytical results: name, value and unit, the unit behind the value, in a cell of its own or in
/// brackets behind the name.
void TakeAnalyticalResult(std::string_view line, ImportedProfile& profile) {
  const auto cells = SplitAtEach(line, ',');
  if (cells.size() < 2) return;
  std::string_view name = TrimBlanks(cells[0]);
  const auto fields = SplitAtAny(cells[1], " \t");
  const auto number = fields.empty() ? std::nullopt : NumberField(fields[0]);
  std::string_view unit = fields.size() > 1 ? fields[1] : std::string_view{};
  if (unit.empty() && cells.size() > 2) unit = TrimBlanks(cells[2]);
  if (const std::size_t open = name.rfind(" ("); unit.empty() && open != name.npos && name.ends_with(')')) {
    unit = name.substr(open + 2, name.size() - open - 3);
    name = name.substr(0, open);
  }
  if (number) AddInstrumentValue(profile, name, *number, unit);
}

/// Takes tip radius, trace length and results from the lines above "Scan Data". Positions are rounded to 0.1 um: where
/// the length agrees with them, whether it counts the points or the steps, it gives the better spacing.
void TakeScanParameters(std::string_view text, ImportedProfile& profile) {
  constexpr std::size_t kMostLines = 100;
  LineCursor lines(text);
  const auto steps = static_cast<double>(profile.heightsUM.size() - 1);
  bool isResults = false;
  while (const auto line = lines.Next()) {
    if (line->starts_with("Scan Data") || lines.LineNumber() > kMostLines) return;
    isResults = isResults || line->starts_with("Analytical Results");
    if (isResults) {
      TakeAnalyticalResult(*line, profile);
      continue;
    }
    const TwoCells cells = SplitTwoCells(*line);
    const auto length = LengthUM(cells);
    if (!length || *length <= 0.0) continue;
    const bool isRadius =
        StartsWithIgnoringCase(cells.first, "Stylus radius") ||
        (StartsWithIgnoringCase(cells.first, "Stylus") && ContainsIgnoringCase(cells.second, "radius"));
    if (isRadius) {
      profile.tipRadiusMM = *length * kMillimetresPerMicrometre;
    } else if (StartsWithIgnoringCase(cells.first, "Length") && steps > 0.0) {
      // The length counts the points with one writer, the steps with another; the last position tells.
      constexpr double kRoundingUM = 0.11;
      const double lastUM = profile.spacingUM * steps;
      for (const double parts : {steps + 1.0, steps}) {
        if (std::abs(*length / parts * steps - lastUM) > kRoundingUM) continue;
        profile.spacingUM = *length / parts;
        profile.spacingSource = "scan parameter Length";
        break;
      }
    }
  }
}

}  // namespace

ReadResult ReadCommaSeparated(const ReaderInput& input, ImportedProfile& profile) {
  const std::string_view text = WithoutBlankLines(input.bytes);
  if (StartsWithIgnoringCase(text, "Lumetrace_Data")) return ReadNativeProfile(input, profile);
  if (IsTesterExport(text)) return ReadTesterExport(input, profile);
  ReadResult result = ReadGenericText(input, profile);
  const bool isRead = result.status == ReadResult::Status::kRead;
  if (isRead && StartsWithIgnoringCase(text, "Scan Parameters")) TakeScanParameters(text, profile);
  return result;
}

}  // namespace texturon
