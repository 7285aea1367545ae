// SPDX-License-Identifier: Apache-2.0

#include "base/quantity.h"

#include "base/number_text.h"

namespace texturon {
namespace {

std::string WithUnit(std::string number, const Quantity& quantity, bool metric) {
  return number.append(" ").append(quantity.Unit(metric));
}

std::string Readout(const Quantity& quantity, double value, bool metric, Decimals decimals) {
  return WithUnit(ReadoutText(quantity.Shown(value, metric), decimals.In(metric)), quantity, metric);
}

}  // namespace

std::string ShownNumber(const Quantity& quantity, double value, bool metric, Decimals decimals) {
  return FixedText(quantity.Shown(value, metric), decimals.In(metric));
}

std::string ShownText(const Quantity& quantity, double value, bool metric, Decimals decimals) {
  return WithUnit(ShownNumber(quantity, value, metric, decimals), quantity, metric);
}

std::string HeightText(double heightUM, bool metric, Decimals decimals) {
  return ShownText(kHeightUM, heightUM, metric, decimals);
}

std::string LengthText(double lengthMM, bool metric, Decimals decimals) {
  return ShownText(kLengthMM, lengthMM, metric, decimals);
}

std::string HeightReadout(double heightUM, bool metric) {
  return Readout(kHeightUM, heightUM, metric, kHeightDecimals);
}

std::string LengthReadout(double lengthMM, bool metric) {
  return Readout(kLengthMM, lengthMM, metric, kLengthDecimals);
}

}  // namespace texturon
