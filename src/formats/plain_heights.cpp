// SPDX-License-Identifier: Apache-2.0

#include "formats/plain_heights.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "formats/reader_questions.h"
#include "formats/text_cursor.h"
#include "formats/text_lines.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr auto kCapacity = static_cast<std::size_t>(kPointCapacity);
constexpr std::size_t kFewest = 3;  // heights of a file that names itself by nothing but its numbers
constexpr std::string_view kTooMany = "There are more than 750 000 points.";

ReadResult AskSpacingOrRefuse(const ReaderInput& input, ImportedProfile& profile) {
  return AskSpacing(input, 1.0, profile) ? ReadResult::Read() : ReadResult::Refused("no point spacing was given");
}

/// Decimals of a printed number; -1 where it has an exponent.
int Decimals(std::string_view number) {
  if (number.find_first_of("eE") != std::string_view::npos) return -1;
  const std::size_t point = number.find_first_of(".,");
  return point == std::string_view::npos ? 0 : static_cast<int>(number.size() - point - 1);
}

/// A column of numbers: its heights and what tells whether line 1 is one of them.
struct Column {
  double first = 0.0;
  int firstDecimals = 0;
  int decimals = 0;          ///< of the second number
  bool sameDecimals = true;  ///< in all but the first
  double longestStep = 0.0;  ///< between neighbours other than the first
};

/// Whether the first number is printed otherwise than the others, or further from them than they are from each other.
bool StandsOut(const Column& column, const std::vector<double>& heights) {
  constexpr double kFar = 20.0;
  if (column.sameDecimals && column.decimals > 0 && column.firstDecimals != column.decimals) return true;
  return column.longestStep > 0.0 && std::abs(column.first - heights.front()) > kFar * column.longestStep;
}

}  // namespace

ReadResult ReadCommaList(const ReaderInput& input, ImportedProfile& profile) {
  TextCursor cursor(input.bytes);
  bool hasComma = true;
  for (cursor.SkipWhiteSpace(); !cursor.AtEnd(); cursor.SkipWhiteSpace()) {
    const auto height = cursor.Number();
    if (!height || !hasComma) return ReadResult::NotRecognised("it is not numbers with a comma behind each");
    if (profile.heightsUM.size() == kCapacity) return RefuseAtLine(input, cursor.Line(), kTooMany);
    profile.heightsUM.push_back(*height);
    hasComma = cursor.SkipIf(',');
  }
  if (profile.heightsUM.size() < kFewest) return ReadResult::NotRecognised("there are fewer than three numbers");
  profile.warnings.emplace_back("units are not stated; heights are taken as um");
  return AskSpacingOrRefuse(input, profile);
}

ReadResult ReadPlainSoftgauge(const ReaderInput& input, ImportedProfile& profile) {
  constexpr double kLeastUM = 1e-4;
  constexpr double kMostUM = 1e4;
  if (input.options.spacingUM) return ReadResult::NotRecognised("the spacing is given by the caller");
  LineCursor lines(input.bytes);
  Column column;
  const std::string_view first = TrimBlanks(lines.NextFilled().value_or(std::string_view{}));
  const auto spacing = NumberField(first, true);
  if (!spacing || *spacing < kLeastUM || *spacing > kMostUM) {
    return ReadResult::NotRecognised("line 1 is not a spacing");
  }
  column.first = *spacing;
  column.firstDecimals = Decimals(first);
  std::vector<double>& heights = profile.heightsUM;
  while (const auto line = lines.Next()) {
    const std::string_view field = TrimBlanks(*line);
    if (field.empty()) continue;
    const auto height = NumberField(field, true);
    if (!height) return ReadResult::NotRecognised(AtLine(lines.LineNumber(), "not a number"));
    if (heights.size() == kCapacity) return ReadResult::NotRecognised("there are more than 750 000 heights");
    if (heights.empty()) column.decimals = Decimals(field);
    column.sameDecimals = column.sameDecimals && Decimals(field) == column.decimals;
    if (!heights.empty()) column.longestStep = std::max(column.longestStep, std::abs(*height - heights.back()));
    heights.push_back(*height);
  }
  if (heights.size() < kFewest || !StandsOut(column, heights)) {
    return ReadResult::NotRecognised("line 1 looks like the heights that follow");
  }
  profile.spacingUM = *spacing;
  profile.spacingSource = "line 1";
  profile.warnings.emplace_back("line 1 is taken as the point spacing in um, the other lines as heights in um");
  return ReadResult::Read();
}

ReadResult ReadFourLineHeader(const ReaderInput& input, ImportedProfile& profile) {
  constexpr double kLikelyMM = 0.02;
  LineCursor lines(input.bytes);
  for (int i = 0; i < 4; ++i) lines.Next();
  TextCursor cursor(lines.Rest());
  const auto count = cursor.Number();
  const auto spacing = cursor.Number();
  if (!count || !spacing || *count < 2.0 || *count != std::trunc(*count) || *spacing <= 0.0) {
    return ReadResult::NotRecognised("four lines are not followed by a number of points and a spacing");
  }
  if (*count > kPointCapacity) return RefuseAtLine(input, 5, kTooMany);
  profile.heightsUM.reserve(std::min(static_cast<std::size_t>(*count), (cursor.Remaining() + 1) / 2));
  cursor.AppendNumbers(profile.heightsUM, static_cast<std::size_t>(*count));
  if (static_cast<double>(profile.heightsUM.size()) < *count) {
    return RefuseAtLine(input, 4 + cursor.Line(), cursor.AtEnd() ? "Unexpected end of file." : "Not a number.");
  }
  if (cursor.Number()) profile.warnings.emplace_back("there are more heights than the header says");
  const bool isMM = *spacing < kLikelyMM;
  profile.spacingUM = isMM ? *spacing * kMicrometresPerMillimetre : *spacing;
  profile.spacingSource = "header line 5 or 6";
  profile.warnings.push_back(std::string("units are not stated; the spacing is taken as ") + (isMM ? "mm" : "um") +
                             ", heights as um");
  return ReadResult::Read();
}

ReadResult ReadResolutionText(const ReaderInput& input, ImportedProfile& profile) {
  constexpr std::string_view kKey = "RES";
  std::optional<double> resolution;
  std::vector<double> run;
  std::size_t lineOfRun = 0;
  const auto endRun = [&run, &profile] {
    if (run.size() > profile.heightsUM.size()) profile.heightsUM.swap(run);
    run.clear();
  };
  LineCursor lines(input.bytes);
  while (const auto line = lines.Next()) {
    const auto fields = SplitAtAny(*line, " \t=:;,");
    if (fields.empty()) continue;
    if (!resolution && fields.size() > 1 && EqualIgnoringCase(fields[0], kKey)) resolution = NumberField(fields[1]);
    bool isRun = resolution && fields.size() < kMostFields;
    for (std::size_t i = 0; isRun && i < fields.size(); ++i) {
      const auto count = NumberField(fields[i]);
      isRun = count && *count == std::trunc(*count);
      if (!isRun) break;
      if (run.empty()) lineOfRun = lines.LineNumber();
      if (run.size() == kCapacity) return RefuseAtLine(input, lineOfRun, kTooMany);
      run.push_back(*count);
    }
    if (!isRun) endRun();
  }
  endRun();
  if (!resolution || *resolution == 0.0) return ReadResult::NotRecognised("there is no entry RES");
  if (profile.heightsUM.size() < kFewest)
    return RefuseAtLine(input, lines.LineNumber(), "There are no integer heights.");
  for (double& z : profile.heightsUM) z *= *resolution;
  return AskSpacingOrRefuse(input, profile);
}

}  // namespace texturon
