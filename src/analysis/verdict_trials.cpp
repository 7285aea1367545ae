// SPDX-License-Identifier: Apache-2.0

#include "analysis/verdict_trials.h"

#include <utility>

#include "analysis/decision.h"

namespace texturon {

std::string TryForVerdicts(Document& document, const UncertaintyRequest* request, unsigned jobs) {
  if (!LacksUncertainty(document)) return {};
  if (request == nullptr) return "no budget is given";
  TrialOutcome trials =
      RunTrials(document, request->budget,
                {.trials = request->trials, .seed = request->seed, .interval = request->interval, .jobs = jobs});
  if (trials.reason.empty()) document.results.uncertainties = std::move(trials.rows);
  return trials.reason;
}

std::string RemarkOnRule(const DecisionSettings& decision, bool hasBudget) {
  const DecisionRuleName& rule = DecisionRuleOf(decision.DecisionRule);
  const std::string name(rule.name);
  if (IsGuarded(rule.number) && !hasBudget) {
    return "The decision rule " + name + " needs an uncertainty, and there is no budget: no value with limits " +
           (rule.number == kDecideGuarded ? "is decided." : "passes.");
  }
  if (!IsGuarded(rule.number) && hasBudget) return "The budget changes no verdict: the decision rule is " + name + ".";
  return {};
}

}  // namespace texturon
