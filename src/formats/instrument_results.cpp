// SPDX-License-Identifier: Apache-2.0

#include "formats/instrument_results.h"

#include <cmath>

#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

constexpr std::size_t kMostValues = 1'000;

bool IsParameterName(std::string_view name) {
  constexpr std::size_t kLongest = 8;
  return name.size() >= 2 && name.size() <= kLongest && std::string_view("PRWM").find(name.front()) != name.npos;
}

}  // namespace

void AddInstrumentValue(ImportedProfile& profile, std::string_view name, double value, std::string_view unit) {
  if (name.empty() || !std::isfinite(value) || profile.instrumentValues.size() == kMostValues) return;
  profile.instrumentValues.push_back({std::string(name), value, std::string(unit)});
}

void AddInstrumentValue(ImportedProfile& profile, std::string_view text) {
  const std::size_t end = text.find(' ');
  if (end == std::string_view::npos || !IsParameterName(text.substr(0, end))) return;
  const std::string_view rest = TrimBlanks(text.substr(end));
  const ParsedDouble number = ParseDouble(rest);
  if (!number.usable()) return;
  const std::string_view unit = TrimBlanks(rest.substr(number.length));
  if (unit.find(' ') == std::string_view::npos) AddInstrumentValue(profile, text.substr(0, end), number.value, unit);
}

}  // namespace texturon
