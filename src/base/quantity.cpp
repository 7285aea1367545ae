// SPDX-License-Identifier: Apache-2.0

#include "base/quantity.h"

#include "base/number_text.h"

namespace texturon {

std::string ShownNumber(const Quantity& quantity, double value, bool metric, Decimals decimals) {
  return FixedText(quantity.Shown(value, metric), decimals.In(metric));
}

std::string ShownText(const Quantity& quantity, double value, bool metric, Decimals decimals) {
  return ShownNumber(quantity, value, metric, decimals).append(" ").append(quantity.Unit(metric));
}

}  // namespace texturon
