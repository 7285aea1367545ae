// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "analysis/value_statistics.h"
#include "settings/analysis_settings.h"

namespace texturon {

// Whether a surface of which several profiles were measured keeps within the limits of a parameter.

enum class AcceptanceRule : std::uint8_t {
  kMaximum,    // no value beyond the limit
  k16Percent,  // at most 16 % of the values beyond it (ISO 4288:1996, ISO 21920-3:2021)
  kMedian,     // the median of three or more values is not beyond it (ISO 21920-3:2021)
};

struct AcceptanceRuleName {
  AcceptanceRule rule;
  std::string_view name;
};
/// "max", "16%", "median": how commands name the rules.
std::span<const AcceptanceRuleName> AcceptanceRules();

/// By the number of DECISION.AcceptanceRule.
AcceptanceRule AcceptanceRuleOf(std::int32_t number);

enum class Acceptance : std::uint8_t { kPass, kFail, kUndecided };

/// PASS, FAIL, UNDECIDED: what programs read.
std::string_view AcceptanceWord(Acceptance verdict);
/// "within tolerance", "out of tolerance", "undecided": what people read, in every window, table and report.
std::string_view VerdictWord(Acceptance verdict);

struct AcceptanceResult {
  Acceptance verdict = Acceptance::kUndecided;
  std::string_view by;  ///< what decided: maximum, share, short procedure, median; or why nothing did
};

/// Of values in the order in which they were measured. Empty where the row is not toleranced.
///
/// A value is beyond a limit where IsWithin says so. Both limits must be kept; one that is not decides. The 16
/// % rule is kept by the share of all values, or by the short procedure: the first value is at most 70 % of the upper
/// limit (which must be above 0), or of the first three none, of the first six at most one, of the first twelve at most
/// two are beyond. Fewer than three values decide by the 70 % alone, or not at all; so does the median. A value that is
/// missing leaves undecided what would pass without it.
std::optional<AcceptanceResult> Accept(std::span<const std::optional<double>> values, const Tolerance& tolerance,
                                       AcceptanceRule rule);

/// The same for one limit, whatever its value.
AcceptanceResult AcceptLimit(std::span<const std::optional<double>> values, double limit, bool isUpper,
                             AcceptanceRule rule);

}  // namespace texturon
