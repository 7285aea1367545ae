// SPDX-License-Identifier: Apache-2.0

#include "formats/instrument_results.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/text_lines.h"
#include "formats/unit_words.h"

namespace texturon {
namespace {

constexpr std::size_t kMostValues = 1'000;

bool IsParameterName(std::string_view name) {
  constexpr std::size_t kLongest = 8;
  return name.size() >= 2 && name.size() <= kLongest && std::string_view("PRWM").find(name.front()) != name.npos;
}

/// Whether a label is what instruments call a parameter: a letter and one of the usual endings in any case, perhaps
/// with a figure in it ("R3z", "Rz1max") or its level behind it ("Rmr(20)").
bool IsUsualParameter(std::string_view label) {
  constexpr std::string_view kEndings[] = {"a",  "q",  "z",    "t",    "p",     "v",    "c",  "y",  "k",  "s",
                                           "sk", "ku", "sm",   "pc",   "pm",    "vm",   "dq", "da", "dc", "pk",
                                           "vk", "mr", "mr1",  "mr2",  "max",   "3z",   "lo", "zi", "rx", "rz",
                                           "r1", "r2", "zjis", "zmax", "z1max", "zdin", "zj"};
  const std::string_view name = label.substr(0, label.find('('));
  if (!IsParameterName(name)) return false;
  return std::any_of(std::begin(kEndings), std::end(kEndings),
                     [&name](std::string_view ending) { return EqualIgnoringCase(name.substr(1), ending); });
}

}  // namespace

void AddInstrumentValue(ImportedProfile& profile, std::string_view name, double value, std::string_view unit) {
  if (name.empty() || !std::isfinite(value) || profile.instrumentValues.size() == kMostValues) return;
  const auto isSame = [&](const InstrumentValue& known) {
    return known.name == name && known.value == value && known.unit == unit;
  };
  if (std::any_of(profile.instrumentValues.begin(), profile.instrumentValues.end(), isSame)) return;
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

void AddInstrumentPair(ImportedProfile& profile, std::string_view label, std::string_view value) {
  if (!IsUsualParameter(label)) return;
  constexpr bool kDecimalComma = true;
  const std::string_view digits = value.substr(0, value.find_last_of("0123456789.,") + 1);
  const auto number = NumberField(digits, kDecimalComma);
  const std::string_view unit = TrimBlanks(value.substr(digits.size()));
  if (!number || !(unit.empty() || unit == "%" || MicrometresPerUnit(unit))) return;
  AddInstrumentValue(profile, label, *number, unit);
}

}  // namespace texturon
