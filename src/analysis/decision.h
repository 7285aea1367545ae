// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "analysis/acceptance.h"
#include "analysis/uncertainty_trials.h"
#include "parameters/catalogue.h"

namespace texturon {

// Whether one value keeps its limits, with its uncertainty taken into account.

struct DecisionRuleName {
  std::int32_t number;  ///< of DECISION.DecisionRule
  std::string_view name;
};
/// "simple", "guarded", "guarded-fail": how commands name the rules.
std::span<const DecisionRuleName> DecisionRules();

struct Decision {
  Acceptance verdict = Acceptance::kUndecided;
  /// Probability that the true value keeps the limits, for a normal distribution about the value; none without an
  /// uncertainty.
  std::optional<double> conformity;
};

/// Of a row's value by a rule of DecisionNumber. Empty where the row has no limits to keep or no value.
///
/// Simple: as JudgeValue. Guarded (ISO 14253-1:2017, with U = 2 u): PASS where the value keeps the limits moved inward
/// by U, FAIL where it is beyond one moved outward, between them UNDECIDED or, as guarded-fail has it, FAIL. Without
/// an uncertainty nothing is decided, unless the value is undefined, which fails.
std::optional<Decision> Decide(const ParameterDef& row, const std::optional<ParameterUncertainty>& uncertainty,
                               std::int32_t rule);

}  // namespace texturon
