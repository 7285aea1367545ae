// SPDX-License-Identifier: Apache-2.0

#include "formats/instrument_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "formats/companion_file.h"
#include "formats/even_spacing.h"
#include "formats/instrument_results.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "formats/unit_words.h"
#include "platform/platform.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr auto kCapacity = static_cast<std::size_t>(kPointCapacity);

/// Appends a height; false when there is no room.
bool Append(double heightUM, ImportedProfile& profile) {
  if (profile.heightsUM.size() == kCapacity) return false;
  profile.heightsUM.push_back(heightUM);
  return true;
}

constexpr std::string_view kOnlyFirst = "the file holds several profiles; the first is read";
constexpr std::string_view kDataSection = "CalcData";
constexpr std::string_view kTooMany = "There are more than 750 000 points.";

/// The value of "key=value".
std::optional<std::string_view> ValueOf(std::string_view line, std::string_view key) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || !EqualIgnoringCase(TrimBlanks(line.substr(0, equals)), key))
    return std::nullopt;
  return TrimBlanks(line.substr(equals + 1));
}

bool HeaderHolds(const ReaderInput& input, std::string_view text) {
  constexpr std::size_t kHeaderSize = 65'536;
  return input.bytes.substr(0, kHeaderSize).find(text) != std::string_view::npos;
}

/// Whether a line opens a section, "[PROFILE_VALUES]"; a value may begin with a bracket as well.
bool IsSection(std::string_view text) {
  return text.size() > 2 && text.front() == '[' && text.back() == ']' &&
         text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789", 1) == text.size() - 1;
}

/// What the sections of a MarSurf text say besides the heights.
struct SectionEntries {
  std::string_view name;
  std::string_view object;
  std::string_view number;
  double count = 0.0;
  double firstXUM = 0.0;
  double lastXUM = 0.0;
};

void TakeEntry(std::string_view text, SectionEntries& entries, ImportedProfile& profile) {
  if (const auto value = ValueOf(text, "NAME")) entries.name = *value;
  if (const auto value = ValueOf(text, "OBJECT")) entries.object = *value;
  if (const auto value = ValueOf(text, "NUMBER")) entries.number = *value;
  if (const auto value = ValueOf(text, "DateTime")) profile.date = *value;
  if (const auto value = ValueOf(text, "NO_TOT_POINTS")) entries.count = NumberField(*value).value_or(0.0);
  if (const auto value = ValueOf(text, "PB_RADIUS")) profile.tipRadiusMM = NumberField(*value, true).value_or(-1.0);
  if (const auto value = ValueOf(text, "INTERVAL_LIN")) {
    profile.spacingUM = NumberField(*value, true).value_or(0.0) * kMicrometresPerMillimetre;
  }
}

/// The spacing of INTERVAL_LIN, compared with the positions; theirs where it is not stated.
void SettleSpacing(const SectionEntries& entries, std::size_t points, ImportedProfile& profile) {
  const double mean = (entries.lastXUM - entries.firstXUM) / static_cast<double>(points - 1);
  profile.spacingSource = "INTERVAL_LIN";
  if (points < 2 || !(mean > 0.0)) return;
  if (profile.spacingUM <= 0.0) {
    profile.spacingUM = mean;
    profile.spacingSource = "positions of the points";
  } else if (std::abs(mean - profile.spacingUM) > 1e-3 * profile.spacingUM) {
    profile.warnings.push_back("INTERVAL_LIN says " + ShortestText(profile.spacingUM) + " um, the positions " +
                               ShortestText(mean) + " um; INTERVAL_LIN is taken");
  }
}

ReadResult ReadProfileSections(const ReaderInput& input, ImportedProfile& profile) {
  LineCursor lines(input.bytes);
  bool inValues = false;
  SectionEntries entries;
  while (const auto line = lines.Next()) {
    const std::string_view text = TrimBlanks(*line);
    if (IsSection(text)) inValues = text == "[PROFILE_VALUES]";
    if (inValues && IsSection(text) && !profile.heightsUM.empty()) {
      profile.warnings.emplace_back(kOnlyFirst);
      break;
    }
    if (!inValues) {
      TakeEntry(text, entries, profile);
      continue;
    }
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos || !NumberField(text.substr(0, equals))) continue;
    const auto fields = SplitAtAny(text.substr(equals + 1), " \t;");
    const auto x = fields.size() >= 3 ? NumberField(fields[0], true) : std::nullopt;
    const auto z = fields.size() >= 3 ? NumberField(fields[2], true) : std::nullopt;
    if (!z) return RefuseAtLine(input, lines.LineNumber(), "Not a row of coordinates.");
    const bool isLocked = fields.size() > 4 && NumberField(fields[4]).value_or(1.0) != 0.0;
    const double height = isLocked ? std::numeric_limits<double>::quiet_NaN() : *z * kMicrometresPerMillimetre;
    entries.lastXUM = x.value_or(0.0) * kMicrometresPerMillimetre;
    if (profile.heightsUM.empty()) entries.firstXUM = entries.lastXUM;
    if (!Append(height, profile)) return RefuseAtLine(input, lines.LineNumber(), kTooMany);
  }
  if (profile.heightsUM.empty()) return RefuseAtLine(input, lines.LineNumber(), "There are no profile values.");
  if (entries.count > 0.0) WarnOfCount(entries.count, profile);
  SettleSpacing(entries, profile.heightsUM.size(), profile);
  FillInvalid(profile.heightsUM, profile.warnings);
  if (profile.heightsUM.empty()) return RefuseAtLine(input, lines.LineNumber(), "There are no valid profile values.");
  profile.identification = entries.name;
  if (entries.name.empty() && !entries.object.empty()) {
    profile.identification = std::string(entries.object) + " " + std::string(entries.number);
  }
  return ReadResult::Read();
}

/// Whether a text has the shape of `pattern`, in which 0 stands for any digit.
bool HasShape(std::string_view text, std::string_view pattern) {
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                    [](char c, char p) { return p == '0' ? c >= '0' && c <= '9' : c == p; });
}

/// Takes date, time and results of the condition sheet beside a TX file. Its labels are in any language, so the values
/// tell; names of parameters are the same in all.
void TakeConditionSheet(std::string_view text, ImportedProfile& profile) {
  std::string_view date;
  std::string_view time;
  LineCursor lines(text);
  while (const auto line = lines.Next()) {
    const std::size_t tab = line->find('\t');
    const std::string_view value = TrimBlanks(line->substr(tab + 1));
    if (tab != std::string_view::npos) AddInstrumentPair(profile, TrimBlanks(line->substr(0, tab)), value);
    if (date.empty() && HasShape(value, "00.00.0000")) date = value;
    if (time.empty() && HasShape(value, "00:00:00")) time = value;
  }
  profile.date = time.empty() ? std::string(date) : std::string(date) + " - " + std::string(time);
}

}  // namespace

ReadResult ReadTxText(const ReaderInput& input, ImportedProfile& profile) {
  LineCursor lines(input.bytes);
  const auto length = NumberField(lines.NextFilled().value_or(std::string_view{}), true);
  const auto count = NumberField(lines.Next().value_or(std::string_view{}));
  if (!length || !count || *length <= 0.0 || *count < 2.0 || *count != std::trunc(*count)) {
    return ReadResult::NotRecognised("lines 1 and 2 are not a length and a number of points");
  }
  if (*count > kPointCapacity) return RefuseAtLine(input, 2, kTooMany);
  bool hasMore = false;
  while (const auto line = lines.Next()) {
    if (TrimBlanks(*line).empty()) continue;
    const auto height = NumberField(*line, true);
    if (!height) return RefuseAtLine(input, lines.LineNumber(), "Not a number.");
    hasMore = static_cast<double>(profile.heightsUM.size()) >= *count;
    if (hasMore) break;
    profile.heightsUM.push_back(*height);
  }
  if (profile.heightsUM.empty()) return RefuseAtLine(input, lines.LineNumber(), "Unexpected end of file.");
  if (hasMore) profile.warnings.emplace_back("there are more heights than line 2 says");
  WarnOfCount(*count, profile);
  if (!AskSpacing(input, *length * kMicrometresPerMillimetre / (*count - 1.0), profile,
                  "Proposed is the length on line 1 over the steps between its points.")) {
    return ReadResult::Refused("no point spacing was given");
  }
  if (profile.spacingSource == "assumed") profile.spacingSource = "assumed from the nominal length on line 1";
  const std::filesystem::path sheetPath = CompanionPath(input.path, ".tx3");
  const FileBytes sheet = ReadRegularFile(sheetPath);
  if (sheet.ok()) profile.companion = sheetPath;
  TakeConditionSheet(sheet.bytes, profile);
  return ReadResult::Read();
}

ReadResult ReadSectionText(const ReaderInput& input, ImportedProfile& profile) {
  LineCursor lines(input.bytes);
  if (!lines.NextFilled().value_or(std::string_view{}).starts_with("// Header")) {
    return ReadResult::NotRecognised("line 1 is not \"// Header\"");
  }
  std::string_view section;
  bool hasData = false;
  while (const auto line = lines.Next()) {
    if (line->starts_with("//")) {
      section = TrimBlanks(line->substr(2));
      const bool inData = section == kDataSection;
      if (inData && hasData) {
        profile.warnings.emplace_back(kOnlyFirst);
        break;
      }
      hasData = hasData || inData;
      continue;
    }
    if (TrimBlanks(*line).empty()) continue;
    const auto fields = SplitAtEach(*line, ';');
    const std::string_view value = fields.size() > 1 ? fields[1] : std::string_view{};
    if (section == "CalcResult" && fields.size() > 2) {
      // "Rmr(c)" and its kin are names too; a result that was not computed is no number.
      const auto result = NumberField(value, true);
      if (result) AddInstrumentValue(profile, TrimBlanks(fields[0]), *result, TrimBlanks(fields[2]));
    }
    if (section != kDataSection) {
      if (fields[0] == "Version") profile.identification = value;
      if (fields[0] == "Date")
        profile.date = std::string(value) + (fields.size() > 2 ? " " + std::string(fields[2]) : "");
      if (fields[0] == "Profile" && !value.starts_with('P')) input.prompts.ShowMessage("WARNING: Filtered data found!");
      if (fields[0] == "Pitch" && fields.size() > 2) {
        profile.spacingUM =
            NumberField(value, true).value_or(0.0) * MicrometresPerUnit(TrimBlanks(fields[2])).value_or(0.0);
      }
      continue;
    }
    const auto height = NumberField(fields[0], true);
    const auto unitUM = TrimBlanks(value).empty() ? std::optional(1.0) : MicrometresPerUnit(TrimBlanks(value));
    if (!height || !unitUM) return RefuseAtLine(input, lines.LineNumber(), "Not a height.");
    if (!Append(*height * *unitUM, profile)) return RefuseAtLine(input, lines.LineNumber(), kTooMany);
  }
  if (!hasData) return RefuseAtLine(input, lines.LineNumber(), "The file holds results only, no profile (CalcData).");
  if (profile.heightsUM.empty()) return RefuseAtLine(input, lines.LineNumber(), "Unexpected end of file.");
  profile.spacingSource = "condition Pitch";
  if (profile.spacingUM <= 0.0 && !AskSpacing(input, 1.0, profile))
    return ReadResult::Refused("no point spacing was given");
  return ReadResult::Read();
}

ReadResult ReadProfileHeaderText(const ReaderInput& input, ImportedProfile& profile) {
  if (!HeaderHolds(input, "[PROFILE_HEADER]")) return ReadResult::NotRecognised("there is no section [PROFILE_HEADER]");
  return ReadProfileSections(input, profile);
}

ReadResult ReadRecordText(const ReaderInput& input, ImportedProfile& profile) {
  for (const std::string_view key : {"OBJECT=", "NUMBER=", "DateTime="}) {
    if (!HeaderHolds(input, key)) return ReadResult::NotRecognised("the key " + Quoted(key) + " is missing");
  }
  if (input.bytes.find("[PROFILE_VALUES]") == std::string_view::npos) {
    return RefuseAtLine(input, 1, NotReadYet("record named by OBJECT= and NUMBER="));
  }
  return ReadProfileSections(input, profile);
}

}  // namespace texturon
