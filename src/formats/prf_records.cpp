// SPDX-License-Identifier: Apache-2.0

#include "formats/prf_records.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/unit_words.h"

namespace texturon {
namespace {

constexpr std::size_t kLineLimit = 127;
constexpr std::size_t kNameLength = 6;
constexpr double kMostPoints = 2147483647.0;

/// "name_number" from a name line: six characters, then a number of which the whole part counts.
std::string NameAndNumber(std::string_view line) {
  const std::string_view number = line.size() > kNameLength ? line.substr(kNameLength) : std::string_view{};
  const ParsedDouble parsed = ParseDouble(number);
  const double whole = parsed.usable() ? std::trunc(parsed.value) : 0.0;
  return std::string(line.substr(0, kNameLength)) + "_" +
         IntegerText(std::abs(whole) <= kMostPoints ? static_cast<std::int64_t>(whole) : 0);
}

std::string ReadAxis(const std::vector<std::string_view>& fields, PrfAxis& axis) {
  if (fields.size() < 2) return "Error in File";
  const char type = fields[1].size() == 1 ? UpperAscii(fields[1][0]) : '\0';
  if (type == '\0' || std::string_view("ARIM").find(type) == std::string_view::npos) {
    return "Error: Invalid Data Type";
  }
  if (fields.size() < 5) return "Error in File";
  const auto count = NumberField(fields[2]);
  const auto unitUM = MicrometresPerUnit(fields[3]);
  const auto scale = NumberField(fields[4]);
  if (!count || *count < 1.0 || *count > kMostPoints || !unitUM || !scale) return "Error in File";
  axis = {type, std::trunc(*count), *unitUM, *scale, true};
  return {};
}

}  // namespace

std::string PrfName(std::string_view identification, char fill) {
  std::string name = OnOneLine(identification.substr(0, kNameLength));
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == ' ' || c == '.'; }, '_');
  if (fill != '\0') name.resize(kNameLength, fill);
  return name;
}

std::vector<std::string_view> PrfFields(std::string_view line) {
  return SplitAtAny(line, " ,\t\r\n");
}

bool IsEndOfRecord(std::string_view line) {
  return EqualIgnoringCase(TrimBlanks(line), "EOR");
}

std::string ReadPrfFirstRecord(LineCursor& lines, std::string_view kind, PrfFirstRecord& record) {
  constexpr std::int32_t kQuotedNames = 3;  // the newest version; it puts names in quotes
  auto line = lines.Next();
  if (!line) return "Error in File";
  const auto firstFields = PrfFields(line->substr(0, kLineLimit));
  if (firstFields.empty() || ParseInt32(firstFields[0]).value != 1) return "ASCII File Not Found";
  const ParsedInt32 version = firstFields.size() > 1 ? ParseInt32(firstFields[1]) : ParsedInt32{};
  if (!version.found() || version.value > kQuotedNames) return "Invalid Version";

  line = lines.Next();
  if (!line) return "Error in File";
  const std::string_view name = line->substr(0, kLineLimit);
  if (version.value == kQuotedNames) {
    const auto fields = PrfFields(name);
    if (fields.empty()) return "Error in File";
    record.identification = fields[0].size() > 2 ? fields[0].substr(1, fields[0].size() - 2) : std::string_view{};
  } else {
    record.identification = NameAndNumber(name);
    const std::size_t end = name.find_last_not_of(" \t") + 1;
    if (end < kind.size() || !EqualIgnoringCase(name.substr(end - kind.size(), kind.size()), kind)) {
      return "Not a true " + std::string(kind) + " File";
    }
  }

  while (true) {
    line = lines.Next();
    if (!line) return "Error in File";
    if (IsEndOfRecord(*line)) break;
    const auto fields = PrfFields(line->substr(0, kLineLimit));
    if (fields.empty()) continue;
    const bool isX = EqualIgnoringCase(fields[0], "CX");
    if (!isX && !EqualIgnoringCase(fields[0], "CZ")) continue;
    std::string problem = ReadAxis(fields, isX ? record.x : record.z);
    if (!problem.empty()) return problem;
  }
  if (!record.z.stated) return "Z-Axis Info not found!!!";
  if (!record.x.stated) record.x = {'M', record.z.count, 1000.0, 1.0, false};
  return {};
}

ReadResult RefusePrf(const ReaderInput& input, std::size_t line, std::initializer_list<std::string_view> messages,
                     std::string_view detail) {
  for (const std::string_view message : messages) input.prompts.ShowMessage(message);
  return ReadResult::Refused(AtLine(line, detail.empty() ? *messages.begin() : detail));
}

}  // namespace texturon
