// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "analysis/decision.h"
#include "analysis/document.h"
#include "analysis/uncertainty_json.h"
#include "app/console_prompts.h"
#include "presentation/several_results.h"

namespace texturon {

struct AnalyzeOptions;
struct BudgetOptions;

/// Tries a document on all cores, with a progress that Ctrl-C ends; its verdicts then go by what was found. Empty, with
/// a sentence on standard error, where nothing came of it.
std::optional<UncertaintyResult> FindUncertainty(Document& document, const UncertaintyRequest& request,
                                                 const std::string& file, ConsolePrompts& prompts);

/// Puts the rule in force that a call of analyze names. Throws where it needs an uncertainty and there is no budget.
void ApplyDecisionRule(const BudgetOptions& options, DecisionSettings& decision);

/// The budget that a call of analyze names, with what it wants of it. Empty, with a sentence on standard error, where
/// it is none.
std::optional<UncertaintyRequest> UncertaintyRequestOf(const AnalyzeOptions& analyze);

/// For runs that judge many files: puts the call's rule in force and reads its budget, if it names one. False, with a
/// sentence on standard error, where that is none; a rule without a budget is told there, and a budget without a rule.
bool TakeBudget(const BudgetOptions& options, DecisionSettings& decision, std::optional<UncertaintyRequest>& request,
                bool isQuiet);

/// A table for people, UTF-8: value, U, ends of the interval, bias, verdict and probability of conformity; below it,
/// where wanted, what each line of the budget contributes.
std::string UncertaintyTable(const Document& document, const UncertaintyRequest& request,
                             const UncertaintyResult& result);

/// The uncertainty of a mean over several files: type B, the quadratic mean of the files', and type A, the deviation of
/// the values over the root of their number.
struct MeanUncertainty {
  double typeA = 0.0;
  double typeB = 0.0;

  double Standard() const;
};
std::optional<MeanUncertainty> UncertaintyOfMean(const SeveralRow& row, const std::vector<UncertaintyResult>& files,
                                                 std::size_t index);

}  // namespace texturon
