// SPDX-License-Identifier: Apache-2.0

#include "formats/sdf_format.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/reader_questions.h"
#include "formats/sdf_grid.h"
#include "formats/text_cursor.h"
#include "formats/text_lines.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::size_t kLineLimit = 1023;
constexpr double kMetre = 1e-6;  // the Z scale of numbers that are micrometres

/// The value of a header line: what follows "=", without one what follows the first blank.
struct HeaderValue {
  std::string_view text;
  bool hasEquals = false;
};

HeaderValue NextValue(LineCursor& lines) {
  const std::string_view line = lines.Next().value_or(std::string_view{}).substr(0, kLineLimit);
  const std::size_t equals = line.find('=');
  if (equals != std::string_view::npos) return {line.substr(equals + 1), true};
  const std::size_t blank = line.find_first_of(" \t");
  return {blank == std::string_view::npos ? std::string_view{} : line.substr(blank), false};
}

double NumberOf(const HeaderValue& value) {
  const ParsedDouble number = ParseDouble(value.text);
  return number.usable() ? number.value : 0.0;
}

/// A length in metres as micrometres. Without "=" the factor 1000 is applied once only, as it always was.
double LengthUM(const HeaderValue& value) {
  const double length = NumberOf(value) * 1000.0;
  return value.hasEquals ? length * 1000.0 : length;
}

SdfHeader ReadHeader(LineCursor& lines) {
  SdfHeader header;
  lines.Next();
  header.identification = TrimBlanks(NextValue(lines).text);
  NextValue(lines);
  header.date = TrimBlanks(NextValue(lines).text);
  header.points = ParseInt32(NextValue(lines).text).value;
  header.profiles = ParseInt32(NextValue(lines).text).value;
  header.spacingUM = LengthUM(NextValue(lines));
  header.rowSpacingUM = LengthUM(NextValue(lines));
  header.zScale = NumberOf(NextValue(lines));
  NextValue(lines);
  NextValue(lines);
  header.dataType = ParseInt32(NextValue(lines).text).value;
  NextValue(lines);
  return header;
}

void Warn(const SdfHeader& header, std::int64_t wanted, bool hasMore, ImportedProfile& profile) {
  const auto there = static_cast<std::int64_t>(profile.heightsUM.size());
  if (there < wanted) {
    profile.warnings.push_back("the header says " + IntegerText(wanted) + " points, the data hold " +
                               IntegerText(there));
  }
  if (header.points > kPointCapacity) profile.warnings.emplace_back("only the first 750 000 points are taken");
  if (hasMore && header.points <= kPointCapacity)
    profile.warnings.emplace_back("there are more heights than the header says");
  if (header.dataType == 7 && std::abs(header.zScale - kMetre) > 1e-6 * kMetre) {
    profile.warnings.push_back("heights are taken as um as they stand; the Z scale of " + ShortestText(header.zScale) +
                               " m is not applied");
  }
}

}  // namespace

ReadResult ReadSdfProfile(const ReaderInput& input, ImportedProfile& profile) {
  if (input.bytes.starts_with('b')) return ReadSdfBinary(input, profile);
  LineCursor lines(input.bytes);
  const SdfHeader header = ReadHeader(lines);
  if (header.profiles > 1) return ReadSdfGrid(input, header, lines.Rest(), profile);
  const std::size_t line = lines.LineNumber();
  if (header.dataType != 5 && header.dataType != 7)
    return RefuseAtLine(input, line, "SDF Error: Integer data required.");
  if (header.points < 1) return RefuseAtLine(input, line, "SDF Error: Invalid number of points.");
  const double divisor = header.dataType == 5 ? header.zScale : 1.0;
  if (divisor == 0.0) return RefuseAtLine(input, line, "SDF Error: Invalid Z scale.");

  TextCursor cursor(lines.Rest());
  cursor.Token();
  const std::int64_t wanted = std::min<std::int64_t>(header.points, kPointCapacity);
  profile.heightsUM.reserve(std::min(static_cast<std::size_t>(wanted), (cursor.Remaining() + 1) / 2));
  while (static_cast<std::int64_t>(profile.heightsUM.size()) < wanted) {
    auto value = cursor.Number();
    if (!value) {
      const std::string_view token = cursor.Token();
      if (!EqualIgnoringCase(token, "BAD") && !EqualIgnoringCase(token, "nan")) break;
      value = std::numeric_limits<double>::quiet_NaN();
    }
    profile.heightsUM.push_back(*value / divisor);
  }
  if (profile.heightsUM.empty()) return RefuseAtLine(input, line + 1, "SDF Error: no heights.");
  Warn(header, wanted, cursor.Number().has_value(), profile);
  FillInvalid(profile.heightsUM, profile.warnings);
  if (profile.heightsUM.empty()) return RefuseAtLine(input, line + 1, "SDF Error: no valid heights.");
  profile.identification = header.identification;
  profile.date = header.date;
  profile.spacingUM = header.spacingUM;
  profile.spacingSource = "header line 7 (Xscale)";
  return ReadResult::Read();
}

std::string SdfProfileText(const ProfileToWrite& profile) {
  constexpr std::size_t kNameLength = 10;
  const std::tm& time = profile.savedAt;
  const std::string date = IntegerText(time.tm_mday, 2, '0') + IntegerText(time.tm_mon + 1, 2, '0') +
                           IntegerText(time.tm_year + 1900, 4, '0') + IntegerText(time.tm_hour, 2, '0') +
                           IntegerText(time.tm_min, 2, '0');
  std::string text;
  text.reserve(400 + profile.heightsUM.size() * 12);
  text += "aNIST-1.0\r\nManufacID   = " + OnOneLine(profile.identification.substr(0, kNameLength)) +
          "\r\nCreateDate  = " + date + "\r\nModDate     = " + date + "\r\nNumPoints   = ";
  AppendInteger(text, static_cast<std::int64_t>(profile.heightsUM.size()));
  text += "\r\nNumProfiles = 1\r\nXscale      = ";
  AppendScientific(text, profile.spacingUM * 1e-6, 6);
  text +=
      "\r\nYscale      = 1.000000\r\nZscale      = 1.000000e-006\r\nZresolution = -1\r\nCompression = 0\r\n"
      "DataType    = 7\r\nCheckType   = 0\r\n*\r\n";
  for (const double height : profile.heightsUM) {
    AppendFixed(text, height, 6);
    text += "\r\n";
  }
  return text;
}

FileOutcome WriteSdfProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts) {
  return WriteProfileText(path, ".sdf", profile, 0.0, SdfProfileText, prompts);
}

}  // namespace texturon
