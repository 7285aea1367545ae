// SPDX-License-Identifier: Apache-2.0

#include "analysis/decision.h"

#include <algorithm>
#include <cmath>

#include "settings/decision_settings.h"
#include "signal/normal_distribution.h"

namespace texturon {
namespace {

constexpr DecisionRuleName kRules[] = {
    {kDecideSimple, "simple"}, {kDecideGuarded, "guarded"}, {kDecideGuardedFail, "guarded-fail"}};

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

}  // namespace

std::span<const DecisionRuleName> DecisionRules() {
  return kRules;
}

std::optional<Decision> Decide(const ParameterDef& row, const std::optional<ParameterUncertainty>& uncertainty,
                               std::int32_t rule) {
  const std::optional<Verdict> simple = JudgeRow(row);
  if (!simple) return std::nullopt;
  Decision decision{*simple == Verdict::kPass ? Acceptance::kPass : Acceptance::kFail, {}};
  const LimitsInForce limits = LimitsOf(row.tolerance);
  const bool isFinite = std::isfinite(row.value);
  if (uncertainty && isFinite) decision.conformity = ConformityOf(row.value, uncertainty->standard, limits);
  if (rule != kDecideGuarded && rule != kDecideGuardedFail) return decision;
  const std::optional<double> margin = MarginOf(row.value, limits);
  if (!isFinite || !margin) return decision;
  if (!uncertainty || std::abs(*margin) < uncertainty->Expanded()) {
    decision.verdict = rule == kDecideGuarded ? Acceptance::kUndecided : Acceptance::kFail;
  }
  return decision;
}

}  // namespace texturon
