// SPDX-License-Identifier: Apache-2.0

#include "analysis/decision.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/ratio_row_list.h"
#include "settings/decision_settings.h"
#include "signal/normal_distribution.h"

namespace texturon {
namespace {

constexpr DecisionRuleName kRules[] = {
    {kDecideSimple, "simple", "values alone"},
    {kDecideGuarded, "guarded", "limits moved inward by U are kept, beyond those moved outward fails"},
    {kDecideGuardedFail, "guarded-fail", "limits moved inward by U are kept, all else fails"}};

constexpr std::string_view kNoUncertainty = "no uncertainty is known";
constexpr std::string_view kReaches = "the uncertainty reaches over a limit";

/// By how much a value keeps the nearer limit; below 0: by how much it is beyond it. None without a limit in force.
std::optional<double> MarginOf(double value, const LimitsInForce& limits) {
  std::optional<double> margin;
  if (limits.upper) margin = *limits.upper - value;
  if (limits.lower && !(margin && *margin < value - *limits.lower)) margin = value - *limits.lower;
  return margin;
}

double ConformityOf(double value, double standard, const LimitsInForce& limits) {
  const auto shareBelow = [&](double distance) {
    if (standard > 0.0) return NormalProbability(distance / standard);
    return distance >= 0.0 ? 1.0 : 0.0;
  };
  // Shares beyond either limit, which keep their digits.
  const double above = limits.upper ? shareBelow(value - *limits.upper) : 0.0;
  const double below = limits.lower ? shareBelow(*limits.lower - value) : 0.0;
  const bool isOnLimit = !(standard > 0.0) && (limits.upper == value || limits.lower == value);
  return isOnLimit ? 1.0 : std::max(1.0 - above - below, 0.0);
}

/// What a rule makes of a value in doubt.
Acceptance InDoubt(std::int32_t rule) {
  return rule == kDecideGuardedFail ? Acceptance::kFail : Acceptance::kUndecided;
}

}  // namespace

std::span<const DecisionRuleName> DecisionRules() {
  return kRules;
}

const DecisionRuleName& DecisionRuleOf(std::int32_t number) {
  const auto* const known = std::find_if(std::begin(kRules), std::end(kRules),
                                         [number](const DecisionRuleName& rule) { return rule.number == number; });
  return known != std::end(kRules) ? *known : kRules[0];
}

bool IsGuarded(std::int32_t rule) {
  return rule == kDecideGuarded || rule == kDecideGuardedFail;
}

std::optional<Decision> Decide(const ParameterDef& row, const std::optional<ParameterUncertainty>& uncertainty,
                               std::int32_t rule) {
  if (!row.valid || !row.tolerance.toleranced) return std::nullopt;
  const LimitsInForce limits = LimitsOf(row.tolerance);
  Decision decision{IsWithin(row.value, limits) ? Acceptance::kPass : Acceptance::kFail, {}};
  const bool isFinite = std::isfinite(row.value);
  if (uncertainty && isFinite) decision.conformity = ConformityOf(row.value, uncertainty->standard, limits);
  const std::optional<double> margin = MarginOf(row.value, limits);
  if (!IsGuarded(rule) || !isFinite || !margin) return decision;
  if (!uncertainty || std::abs(*margin) < uncertainty->Expanded()) {
    decision.verdict = InDoubt(rule);
    decision.doubt = uncertainty ? kReaches : kNoUncertainty;
  }
  return decision;
}

std::optional<Decision> Decide(const Document& document, const ParameterDef& row, std::size_t place) {
  const Uncertainties& known = document.results.uncertainties;
  return Decide(row, place < known.size() ? known[place] : std::nullopt, document.settings.decision.DecisionRule);
}

bool LacksUncertainty(const Document& document) {
  if (!IsGuarded(document.settings.decision.DecisionRule)) return false;
  std::size_t place = 0;
  const auto isOpen = [&](const ParameterDef& row) {
    const auto decision = Decide(document, row, place++);
    return decision && decision->doubt == kNoUncertainty;
  };
  bool lacks = false;
  for (const ParameterDef& row : document.catalogue.rows) lacks = (row.selected && isOpen(row)) || lacks;
  for (const auto& entries : {SelectedMaterialRatios(document), SelectedHtps(document)}) {
    for (const RatioRowEntry& entry : entries) lacks = isOpen(entry.row) || lacks;
  }
  return lacks;
}

AcceptanceResult DecideLimit(std::span<const std::optional<double>> values,
                             std::span<const std::optional<double>> expanded, const OneLimit& limit,
                             std::int32_t rule) {
  const auto accept = [&](std::span<const std::optional<double>> held) {
    return AcceptLimit(held, limit.limit, limit.isUpper, limit.acceptance);
  };
  if (!IsGuarded(rule)) return accept(values);
  ValueSeries worst(values.begin(), values.end());
  ValueSeries best = worst;
  const double beyond = limit.isUpper ? 1.0 : -1.0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!values[i] || !std::isfinite(*values[i])) continue;
    if (i >= expanded.size() || !expanded[i]) return {InDoubt(rule), kNoUncertainty};
    *worst[i] += beyond * *expanded[i];
    *best[i] -= beyond * *expanded[i];
  }
  const AcceptanceResult atWorst = accept(worst);
  const AcceptanceResult atBest = accept(best);
  // What hangs on more than the uncertainty, a missing value for one, is told as it is without.
  if (atWorst.verdict == atBest.verdict) return atWorst;
  return atBest.verdict == Acceptance::kPass ? AcceptanceResult{InDoubt(rule), kReaches} : atBest;
}

std::optional<AcceptanceResult> Decide(std::span<const std::optional<double>> values,
                                       std::span<const std::optional<double>> expanded, const Tolerance& tolerance,
                                       AcceptanceRule acceptance, std::int32_t rule) {
  const LimitsInForce limits = LimitsOf(tolerance);
  if (!IsGuarded(rule) || !limits.upper) return Accept(values, tolerance, acceptance);
  const AcceptanceResult upper = DecideLimit(values, expanded, {*limits.upper, true, acceptance}, rule);
  if (!limits.lower || upper.verdict == Acceptance::kFail) return upper;
  const AcceptanceResult lower = DecideLimit(values, expanded, {*limits.lower, false, acceptance}, rule);
  return lower.verdict == Acceptance::kPass ? upper : lower;
}

}  // namespace texturon
