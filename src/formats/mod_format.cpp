// SPDX-License-Identifier: Apache-2.0

#include "formats/mod_format.h"

#include <cmath>

#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/prf_records.h"
#include "formats/text_cursor.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

/// Reads record 2: the number of points, from record 1 where it is not stated. 0: record 2 is not understood.
double ReadPointCount(LineCursor& lines, const PrfFirstRecord& first) {
  double count = first.z.count;
  while (const auto line = lines.Next()) {
    if (IsEndOfRecord(*line)) return count;
    const auto fields = PrfFields(*line);
    if (fields.size() < 2 || !EqualIgnoringCase(fields[0], "NUMBER_MOD_POINTS")) continue;
    const auto stated = NumberField(fields[1]);
    if (!stated || *stated < 1.0) return 0.0;
    count = std::trunc(*stated);
  }
  return 0.0;
}

/// `count` numbers times `factor`; their number falls short where the text does.
std::vector<double> ReadNumbers(TextCursor& cursor, std::size_t count, double factor) {
  std::vector<double> numbers;
  numbers.reserve(count);
  while (numbers.size() < count) {
    const auto number = cursor.Number();
    if (!number) break;
    numbers.push_back(*number * factor);
  }
  return numbers;
}

}  // namespace

ReadResult ReadModProfile(const ReaderInput& input, ImportedProfile& profile) {
  if (!input.bytes.starts_with('1')) return ReadResult::NotRecognised("the first byte is not 1");
  LineCursor lines(input.bytes);
  PrfFirstRecord first;
  const std::string problem = ReadPrfFirstRecord(lines, "MOD", first);
  if (!problem.empty()) return RefusePrf(input, lines.LineNumber(), {problem, "Error reading record one."});
  const double points = ReadPointCount(lines, first);
  if (points < 1.0) return RefusePrf(input, lines.LineNumber(), {"Error reading record 2."});

  TextCursor cursor(lines.Rest());
  const std::size_t line = lines.LineNumber() + 1;
  const auto refuse = [&input, line](const std::string& why) {
    return RefusePrf(input, line, {"Error reading record 3."}, "Error reading record 3. (" + why + ")");
  };
  if (points > kPointCapacity) return refuse("there are more than 750 000 points");
  if (points > static_cast<double>(cursor.Remaining() + 1) / 4.0) {
    return refuse("the file cannot hold as many points as the header says");
  }
  const auto count = static_cast<std::size_t>(points);
  Trace trace;
  trace.xUM = ReadNumbers(cursor, count, first.x.scale * first.x.unitUM);
  trace.zUM = ReadNumbers(cursor, count, first.z.scale * first.z.unitUM);
  if (trace.zUM.size() < count) return refuse("there are fewer numbers than the header says");
  // Positions are written with seven significant digits.
  const double digitUM = 1e-6 * std::max(std::abs(trace.xUM.front()), std::abs(trace.xUM.back()));
  trace.lastDigitUM = [digitUM] { return digitUM; };
  trace.resamplesToMean = true;
  const EvenOutcome even = MakeEven(std::move(trace), profile);
  if (!even.ok()) return refuse(even.reason);
  profile.spacingSource = "positions of the points";
  profile.identification = std::move(first.identification);
  return ReadResult::Read();
}

}  // namespace texturon
