// SPDX-License-Identifier: Apache-2.0

#include "formats/stylus_curve.h"

#include <cmath>
#include <limits>
#include <vector>

#include "base/text.h"
#include "base/units.h"
#include "formats/even_spacing.h"
#include "formats/little_endian.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "formats/unit_words.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

std::string Refusal(std::string_view reason) {
  return "The stylus profiler file is not read: " + std::string(reason) + ".";
}

/// Micrometres of one unit of the quantity.
std::optional<double> UnitOf(const std::optional<StylusQuantity>& quantity, std::string_view what, std::string& wrong) {
  const auto unitUM = quantity ? MicrometresPerUnit(quantity->unit) : std::nullopt;
  if (!quantity) wrong = std::string(what) + " is missing";
  if (quantity && !unitUM) {
    wrong = std::string(what) + " is in " + Quoted(OnOneLine(quantity->unit)) + ", which is no unit of length";
  }
  return unitUM;
}

std::vector<double> Doubles(std::string_view bytes, double scale) {
  std::vector<double> numbers(bytes.size() / sizeof(double));
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const double number = LittleEndian<double>(bytes, i * sizeof(double));
    numbers[i] = std::isfinite(number) ? number * scale : std::numeric_limits<double>::quiet_NaN();
  }
  return numbers;
}

}  // namespace

ReadResult FinishStylusCurve(const ReaderInput& input, const StylusCurve& curve, ImportedProfile& profile) {
  const std::size_t points = curve.numbers.size() / sizeof(double);
  if (points < 2) return Refuse(input, Refusal("the curve has fewer than two points"));
  if (points > static_cast<std::size_t>(kPointCapacity))
    return Refuse(input, Refusal("the curve has more than 750 000 points"));
  std::string wrong;
  const auto scaleUM = UnitOf(curve.scale, "the scale of the heights (DataScale)", wrong);
  if (!scaleUM) return Refuse(input, Refusal(wrong));
  profile.heightsUM = Doubles(curve.numbers, curve.scale->value * *scaleUM);
  WarnOfCount(curve.statedPoints, profile);
  if (curve.positionsUM.size() == curve.numbers.size()) {
    profile.spacingSource = "positions of the points";
    Trace trace{.xUM = Doubles(curve.positionsUM, 1.0), .zUM = std::move(profile.heightsUM)};
    const EvenOutcome even = MakeEven(std::move(trace), profile);
    return even.ok() ? ReadResult::Read() : Refuse(input, Refusal(even.reason));
  }
  const auto extentUM = UnitOf(curve.extent, "the length of the curve (Extent)", wrong);
  if (!extentUM) return Refuse(input, Refusal(wrong));
  profile.spacingUM = curve.extent->value * *extentUM / static_cast<double>(points - 1);
  profile.spacingSource = "Extent over the steps between the points";
  FillInvalid(profile.heightsUM, profile.warnings);
  return profile.heightsUM.empty() ? Refuse(input, Refusal("no point is valid")) : ReadResult::Read();
}

double TipRadiusOfStylus(std::string_view text) {
  const auto fields = SplitAtAny(text, " \t:,");
  if (fields.size() < 3 || !EqualIgnoringCase(fields[0], "Radius")) return -1.0;
  const auto radius = NumberField(fields[1]);
  const auto unitUM = MicrometresPerUnit(fields[2]);
  return radius && unitUM ? *radius * *unitUM / kMicrometresPerMillimetre : -1.0;
}

}  // namespace texturon
