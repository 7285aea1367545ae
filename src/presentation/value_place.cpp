// SPDX-License-Identifier: Apache-2.0

#include "presentation/value_place.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/number_text.h"

namespace texturon {
namespace {

constexpr int kMostDecimals = 9;
/// Of a value: less is the rounding of a computation.
constexpr double kLeastShare = 1e-9;

/// The power of ten of a number's first figure where it is rounded to two.
int PowerOf(double number) {
  const std::string text = ScientificText(number, 1);
  return ParseInt32(std::string_view(text).substr(text.find('e') + 1)).value;
}

/// A number down to a power of ten.
std::string TextTo(int place, double number, bool isScientific) {
  if (!isScientific || !std::isfinite(number)) return ReadoutText(number, std::clamp(-place, 0, kMostDecimals));
  const int decimals = number == 0.0 ? 0 : PowerOf(number) - place;
  return ScientificText(number, std::clamp(decimals, 0, kMostDecimals));
}

}  // namespace

UncertaintyTexts TextsOf(const ParameterDef& row, const ParameterUncertainty& uncertainty, bool metric) {
  const double expanded = row.quantity.Shown(uncertainty.Expanded(), metric);
  std::optional<int> place;
  const double least = kLeastShare * std::abs(row.quantity.Shown(row.value, metric));
  if (expanded > least && std::isfinite(expanded)) place = PowerOf(expanded) - 1;
  const auto text = [&](double value, int figures) {
    const double shown = row.quantity.Shown(value, metric);
    return place ? TextTo(*place, shown, row.format.scientific) : SignificantText(shown, figures);
  };
  constexpr int kFiguresOfEnds = 5;
  constexpr int kFigures = 2;
  return {.value = row.valid && place ? text(row.value, kFigures) : ShownValue(row, metric),
          .expanded = text(uncertainty.Expanded(), kFigures),
          .low = text(uncertainty.low, kFiguresOfEnds),
          .high = text(uncertainty.high, kFiguresOfEnds),
          .bias = SignificantText(row.quantity.Shown(uncertainty.bias, metric), kFigures)};
}

}  // namespace texturon
