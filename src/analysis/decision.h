// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "analysis/acceptance.h"
#include "analysis/document.h"
#include "analysis/parameter_uncertainty.h"
#include "parameters/catalogue.h"

namespace texturon {

// Whether values keep their limits. Console, batch, watch, plans, reports and windows ask here and nowhere else.

struct DecisionRuleName {
  std::int32_t number;  ///< of DECISION.DecisionRule
  std::string_view name;
  std::string_view meaning;  ///< a clause for reports
};
/// "simple", "guarded", "guarded-fail": how commands name the rules.
std::span<const DecisionRuleName> DecisionRules();
/// The rule of a number; any other number is the first.
const DecisionRuleName& DecisionRuleOf(std::int32_t number);

/// Whether a rule of DecisionNumber reads uncertainties.
bool IsGuarded(std::int32_t rule);

struct Decision {
  Acceptance verdict = Acceptance::kUndecided;
  /// Probability that the true value keeps the limits, for a normal distribution about the value; none without an
  /// uncertainty.
  std::optional<double> conformity;
  std::string_view doubt = {};  ///< what stands between the value and a plain answer: a clause; empty: nothing
};

/// Of a row's value by a rule of DecisionNumber. Empty where the row has no limits to keep or no value.
///
/// Simple: PASS within the limits. Guarded (ISO 14253-1:2017, with U = 2 u): PASS where the value keeps the limits
/// moved inward by U, FAIL where it is beyond one moved outward, between them UNDECIDED or, as guarded-fail has it,
/// FAIL. Without an uncertainty nothing is decided, unless the value is undefined, which fails.
std::optional<Decision> Decide(const ParameterDef& row, const std::optional<ParameterUncertainty>& uncertainty,
                               std::int32_t rule);

/// The same by the rule of an analysed document and what trials have found of it. `place` is that of the row among
/// ShownRows.
std::optional<Decision> Decide(const Document& document, const ParameterDef& row, std::size_t place);

/// Whether a guarded rule is in force and the document has limits without uncertainties to judge by.
bool LacksUncertainty(const Document& document);

/// A limit that several values are held against, and when they keep it.
struct OneLimit {
  double limit = 0.0;
  bool isUpper = true;
  AcceptanceRule acceptance = AcceptanceRule::kMaximum;
};

/// Of the values of several profiles, as Accept, with their expanded uncertainties (of as many). Guarded: PASS where
/// the values would still be accepted with every one moved by its U towards the limit and beyond, FAIL where they would
/// not even with every one moved away from it, between them UNDECIDED or, as guarded-fail has it, FAIL.
std::optional<AcceptanceResult> Decide(std::span<const std::optional<double>> values,
                                       std::span<const std::optional<double>> expanded, const Tolerance& tolerance,
                                       AcceptanceRule acceptance, std::int32_t rule);
/// The same for one limit, whatever its value.
AcceptanceResult DecideLimit(std::span<const std::optional<double>> values,
                             std::span<const std::optional<double>> expanded, const OneLimit& limit, std::int32_t rule);

}  // namespace texturon
