// SPDX-License-Identifier: Apache-2.0

#include "formats/softgauge_text.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/instrument_results.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "formats/unit_words.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr char kRecordEnd = '\x03';
constexpr std::string_view kSeparators("\0 \t\r\n", 5);

constexpr std::string_view kStandardName = "ISO5436";

/// What stands between the first NUL and the next; empty where fields are divided by blanks.
std::string_view NameOnFirstLine(std::string_view line) {
  const std::size_t first = line.find('\0');
  if (first == std::string_view::npos) return {};
  const std::string_view behind = line.substr(first + 1);
  return TrimBlanks(behind.substr(0, behind.find('\0')));
}

struct Axis {
  bool isAbsolute = false;
  double count = 0.0;
  double unitUM = 0.0;
  double scale = 1.0;
  double increment = 0.0;
};

/// CX or CZ: type, count, unit, scale, data type, and for an incremental axis the increment.
bool ReadAxis(const std::vector<std::string_view>& fields, Axis& axis) {
  if (fields.size() < 6) return false;
  const auto count = NumberField(fields[2]);
  const auto unitUM = MicrometresPerUnit(fields[3]);
  const auto scale = NumberField(fields[4]);
  if (!count || *count < 1.0 || *count > kPointCapacity || !unitUM || !scale) return false;
  axis = {EqualIgnoringCase(fields[1], "A"), std::trunc(*count), *unitUM, *scale,
          fields.size() > 6 ? NumberField(fields[6]).value_or(0.0) : 0.0};
  return true;
}

/// The texts between record ends, and the number of bytes to the end of the third with its line end.
struct Records {
  std::vector<std::string_view> texts;
  std::size_t summed = 0;
};

Records SplitRecords(std::string_view bytes) {
  constexpr std::size_t kMostRecords = 5;
  Records records;
  std::size_t at = 0;
  while (records.texts.size() < kMostRecords && at < bytes.size()) {
    const std::size_t end = bytes.find(kRecordEnd, at);
    records.texts.push_back(bytes.substr(at, end == std::string_view::npos ? end : end - at));
    if (end == std::string_view::npos) break;
    at = end + 1;
    while (at < bytes.size() && (bytes[at] == '\r' || bytes[at] == '\n')) ++at;
    if (records.texts.size() == 3) records.summed = at;
  }
  return records;
}

void ReadConditions(std::string_view text, ImportedProfile& profile) {
  LineCursor lines(text, LineCursor::Nul::kIsOfLayout);
  std::string date;
  std::string time;
  bool inComment = false;
  while (const auto line = lines.Next()) {
    const auto fields = SplitAtAny(*line, kSeparators);
    const bool wasInComment = inComment;
    if (line->find("/*") != std::string_view::npos) inComment = true;
    if (line->find("*/") != std::string_view::npos) inComment = false;
    if (wasInComment || fields.size() < 2) continue;
    if (fields[0] == "DATE" || fields[0] == "DATE:") date = fields[1];
    if (fields[0] == "TIME" || fields[0] == "TIME:") time = fields[1];
    if (fields[0] == "PARAMETER_VALUE" && fields.size() > 2) {
      const auto value = NumberField(fields[2]);
      if (value) AddInstrumentValue(profile, fields[1], *value, fields.size() > 3 ? fields[3] : std::string_view{});
    }
    if (fields[0] == "PROBING_SYSTEM") {
      // The tip radius is the number that a unit follows.
      for (std::size_t i = 1; i + 1 < fields.size(); ++i) {
        const auto radius = NumberField(fields[i]);
        const auto unitUM = MicrometresPerUnit(fields[i + 1]);
        if (radius && unitUM) profile.tipRadiusMM = *radius * *unitUM * 1e-3;
      }
    }
  }
  profile.date = time.empty() ? date : date + " - " + time;
}

void CheckSum(std::string_view bytes, const Records& records, ImportedProfile& profile) {
  if (records.texts.size() < 4 || records.summed == 0) return;
  const auto fields = SplitAtAny(records.texts[3], kSeparators);
  const auto stated = NumberField(fields.empty() ? std::string_view{} : fields.front());
  const std::string_view summed = bytes.substr(0, records.summed);
  const std::uint64_t sum = std::accumulate(summed.begin(), summed.end(), std::uint64_t{0},
                                            [](std::uint64_t s, char c) { return s + static_cast<unsigned char>(c); });
  if (stated && *stated != static_cast<double>(sum % 65'535) && *stated != static_cast<double>(sum % 65'536)) {
    profile.warnings.emplace_back("the sum of the bytes is not the one that the file states");
  }
}

/// Numbers of record 3; what was wrong, or nothing.
std::string_view ReadNumbers(std::string_view text, std::size_t wanted, std::vector<double>& numbers) {
  if (wanted > (text.size() + 1) / 2) return "The file cannot hold as many points as it says.";
  numbers.reserve(wanted);
  LineCursor lines(text, LineCursor::Nul::kIsOfLayout);
  while (const auto line = lines.Next()) {
    const auto fields = SplitAtAny(*line, kSeparators);
    if (fields.size() == kMostFields) return "There are too many numbers on one line.";
    for (const std::string_view field : fields) {
      const auto number = NumberField(field);
      if (!number) return "Not a number.";
      if (numbers.size() == wanted) return "There are more numbers than the file says.";
      numbers.push_back(*number);
    }
  }
  return numbers.size() < wanted ? std::string_view("Unexpected end of file.") : std::string_view{};
}

}  // namespace

ReadResult ReadSoftgauge(const ReaderInput& input, ImportedProfile& profile) {
  const std::string_view bytes = WithoutBlankLines(input.bytes);
  if (!bytes.starts_with("ISO 5436")) return ReadResult::NotRecognised("line 1 does not begin with \"ISO 5436\"");
  const Records records = SplitRecords(bytes);
  if (records.texts.size() < 3) return RefuseAtLine(input, 1, "The records are not closed.");
  Axis x;
  Axis z;
  LineCursor lines(records.texts[0], LineCursor::Nul::kIsOfLayout);
  while (const auto line = lines.Next()) {
    const auto fields = SplitAtAny(*line, kSeparators);
    if (fields.empty()) continue;
    if (lines.LineNumber() == 1) profile.identification = NameOnFirstLine(*line);
    // The name of the feature, where it is more than that of the standard.
    const bool hasName = fields[0] == "PRF" && fields.size() > 2;
    if (hasName && (fields[2] != kStandardName || profile.identification.empty())) profile.identification = fields[2];
    const bool isX = fields[0] == "CX";
    if (!isX && fields[0] != "CZ") continue;
    if (!ReadAxis(fields, isX ? x : z)) return RefuseAtLine(input, lines.LineNumber(), "The axis is not understood.");
  }
  if (x.count < 1.0 || z.count < 1.0) return RefuseAtLine(input, lines.LineNumber(), "An axis is missing.");
  ReadConditions(records.texts[1], profile);
  const auto count = static_cast<std::size_t>(z.count);
  if (x.isAbsolute && x.count != z.count) return RefuseAtLine(input, 3, "The axes have different numbers of points.");
  std::vector<double> numbers;
  const std::string_view wrong = ReadNumbers(records.texts[2], x.isAbsolute ? 2 * count : count, numbers);
  if (!wrong.empty()) return RefuseAtLine(input, 1, wrong);
  const auto heights = numbers.begin() + static_cast<std::ptrdiff_t>(x.isAbsolute ? count : 0);
  Trace trace{{numbers.begin(), heights}, {heights, numbers.end()}, {}};
  for (double& p : trace.xUM) p *= x.scale * x.unitUM;
  for (double& h : trace.zUM) h *= z.scale * z.unitUM;
  CheckSum(bytes, records, profile);
  if (x.isAbsolute) {
    profile.spacingSource = "positions of the points";
    const EvenOutcome even = MakeEven(std::move(trace), profile);
    return even.ok() ? ReadResult::Read() : RefuseAtLine(input, 1, even.reason);
  }
  profile.spacingUM = x.increment * x.scale * x.unitUM;
  profile.spacingSource = "increment of CX";
  profile.heightsUM = std::move(trace.zUM);
  return ReadResult::Read();
}

}  // namespace texturon
