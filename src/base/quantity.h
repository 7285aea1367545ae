// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "base/units.h"

namespace texturon {

/// A kind of number that is shown in metric or imperial units. It is stored in the metric one, which its name bears.
/// Texts are Windows-1252.
struct Quantity {
  std::string_view metricUnit;
  std::string_view imperialUnit;
  double imperialFactor = 1.0;  ///< imperial value = metric value x this

  constexpr double Factor(bool metric) const { return metric ? 1.0 : imperialFactor; }
  constexpr double Shown(double value, bool metric) const { return metric ? value : value * imperialFactor; }
  /// Heights and lengths come back by the factors that define the inch, not by the rounded ones that show them.
  constexpr double FromShown(double shown, bool metric) const {
    if (metric) return shown;
    if (imperialFactor == kInchesPerMillimetre) return shown * kMillimetresPerInch;
    if (imperialFactor == kMicroinchesPerMicrometre) return shown * kMicrometresPerMicroinch;
    return shown / imperialFactor;
  }
  constexpr std::string_view Unit(bool metric) const { return metric ? metricUnit : imperialUnit; }
};

inline constexpr Quantity kHeightUM = {"\xB5m", "\xB5in", kMicroinchesPerMicrometre};
inline constexpr Quantity kLengthMM = {"mm", "in", kInchesPerMillimetre};
inline constexpr Quantity kCurvaturePerMM = {"1/mm", "1/in", kMillimetresPerInch};
inline constexpr Quantity kAngleDegrees = {"\xB0", "\xB0"};

struct Decimals {
  int metric;
  int imperial;

  constexpr int In(bool isMetric) const { return isMetric ? metric : imperial; }
};

/// What windows, tables and reports show of heights and lengths: steps of 0.1 nm and 0.1 um. Files, exports and
/// captions have their own.
inline constexpr Decimals kHeightDecimals = {4, 2};
inline constexpr Decimals kLengthDecimals = {4, 5};

/// The number in the units asked for: "0.8000".
std::string ShownNumber(const Quantity& quantity, double value, bool metric, Decimals decimals);

/// The same with its unit: "0.8000 mm".
std::string ShownText(const Quantity& quantity, double value, bool metric, Decimals decimals);
std::string HeightText(double heightUM, bool metric, Decimals decimals = kHeightDecimals);
std::string LengthText(double lengthMM, bool metric, Decimals decimals = kLengthDecimals);

// The same without the sign of a number that is shown as 0.
std::string HeightReadout(double heightUM, bool metric);
std::string LengthReadout(double lengthMM, bool metric);

}  // namespace texturon
