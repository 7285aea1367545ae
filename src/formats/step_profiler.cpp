// SPDX-License-Identifier: Apache-2.0

#include "formats/step_profiler.h"

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/profile_choice.h"
#include "formats/reader_questions.h"
#include "formats/text_cursor.h"
#include "formats/text_lines.h"
#include "platform/platform.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr double kMicrometresPerAngstrom = 1e-4;
constexpr auto kCapacity = static_cast<std::size_t>(kPointCapacity);
constexpr std::string_view kTooMany = "There are more than 750 000 points.";

// Keys of the form with several traces.
constexpr std::string_view kPointsKey = "Number of Points";
constexpr std::string_view kSpacingKey = "X-Resolution";
constexpr std::string_view kBlocks[] = {"Trace", "Raw"};

/// A row of heights and where it stands.
struct TraceRow {
  std::string name;
  std::string_view heights;
  std::size_t line = 0;
};

/// "Trace<TAB>Data" or "Raw<TAB>Data": which block begins; empty: none.
std::string_view BlockOf(const std::vector<std::string_view>& fields) {
  if (fields.size() != 2 || fields[1] != "Data") return {};
  for (const std::string_view block : kBlocks) {
    if (fields[0] == block) return block;
  }
  return {};
}

ReadResult ReadTraces(const ReaderInput& input, ImportedProfile& profile) {
  constexpr std::size_t kMostTraces = 10'000;
  double points = 0.0;
  double spacing = 0.0;
  std::string_view block;
  std::vector<TraceRow> rows;
  LineCursor lines(input.bytes);
  while (const auto line = lines.Next()) {
    const auto fields = SplitAtAny(line->substr(0, 64), " \t");
    if (fields.empty()) continue;
    const auto valueOf = [&line](std::string_view key) { return NumberField(line->substr(key.size())).value_or(0.0); };
    if (line->starts_with(kPointsKey)) points = valueOf(kPointsKey);
    if (line->starts_with(kSpacingKey)) spacing = valueOf(kSpacingKey);
    const std::string_view begun = BlockOf(fields);
    if (!begun.empty()) {
      block = begun;
    } else if (!block.empty()) {
      const auto number = NumberField(fields[0]);
      if (!number || rows.size() == kMostTraces)
        return RefuseAtLine(input, lines.LineNumber(), "Not a row of heights.");
      const std::size_t behind = line->find(fields[0]) + fields[0].size();
      rows.push_back(
          {std::string(block) + " Data " + std::string(fields[0]), line->substr(behind), lines.LineNumber()});
    }
  }
  if (points < 1.0 || spacing <= 0.0) return RefuseAtLine(input, 1, "Points or X-Resolution is missing.");
  if (rows.empty()) return RefuseAtLine(input, lines.LineNumber(), "Unexpected end of file.");
  std::size_t chosen = 0;
  if (rows.size() > 1) {
    std::string reason;
    const auto name = [&rows](std::int64_t i) { return rows[static_cast<std::size_t>(i)].name; };
    const std::string title = "Input File: " + TextFromPath(input.path.filename());
    const auto index = ChooseProfile(input, static_cast<std::int64_t>(rows.size()), title, {}, name, reason);
    if (!index) return ReadResult::Refused(reason);
    chosen = static_cast<std::size_t>(*index);
  }
  const TraceRow& row = rows[chosen];
  TextCursor cursor(row.heights);
  for (cursor.SkipWhiteSpace(); !cursor.AtEnd(); cursor.SkipWhiteSpace()) {
    const auto height = cursor.Number();
    if (!height) return RefuseAtLine(input, row.line, "Not a row of heights.");
    if (profile.heightsUM.size() == kCapacity) return RefuseAtLine(input, row.line, kTooMany);
    profile.heightsUM.push_back(*height * kMicrometresPerAngstrom);
  }
  if (profile.heightsUM.empty()) return RefuseAtLine(input, row.line, "Not a row of heights.");
  WarnOfCount(points, profile);
  profile.identification += (profile.identification.empty() ? "" : " ") + row.name;
  profile.spacingUM = spacing;
  profile.spacingSource = "header line X-Resolution";
  return ReadResult::Read();
}

}  // namespace

ReadResult ReadStepProfilerText(const ReaderInput& input, ImportedProfile& profile) {
  LineCursor lines(input.bytes);
  double count = 0.0;
  std::vector<std::string> columns;
  while (columns.empty()) {
    const auto line = lines.Next();
    if (!line || lines.LineNumber() > 10) return ReadResult::NotRecognised("Data, Points and X-Resolution do not come");
    const auto fields = SplitAtAny(*line, " \t");
    if (fields.empty()) continue;
    if (profile.identification.empty() && fields[0] != "Data")
      return ReadResult::NotRecognised("line 1 does not begin with Data");
    const bool hasValue = fields.size() == 2;
    if (fields[0] == "Data") profile.identification = TrimBlanks(line->substr(4));
    if (fields[0] == "Points" && hasValue) count = NumberField(fields[1]).value_or(0.0);
    if (fields[0] == "X-Resolution" && hasValue) profile.spacingUM = NumberField(fields[1]).value_or(0.0);
    if (line->starts_with(kPointsKey)) return ReadTraces(input, profile);
    if (fields[0] == "Raw") columns.assign(fields.begin(), fields.end());
  }
  if (count < 1.0 || profile.spacingUM <= 0.0) {
    return RefuseAtLine(input, lines.LineNumber(), "Points or X-Resolution is missing.");
  }
  const std::size_t column = AskHeightColumn(input, columns.size(), profile, columns);
  while (const auto line = lines.Next()) {
    const auto fields = SplitAtAny(*line, " \t");
    if (fields.empty()) continue;
    const auto height = column < fields.size() ? NumberField(fields[column]) : std::nullopt;
    if (!height) return RefuseAtLine(input, lines.LineNumber(), "Not a row of heights.");
    if (profile.heightsUM.size() == kCapacity) return RefuseAtLine(input, lines.LineNumber(), kTooMany);
    profile.heightsUM.push_back(*height * kMicrometresPerAngstrom);
  }
  if (profile.heightsUM.empty()) return RefuseAtLine(input, lines.LineNumber(), "Unexpected end of file.");
  WarnOfCount(count, profile);
  profile.spacingSource = "header line X-Resolution";
  return ReadResult::Read();
}

}  // namespace texturon
