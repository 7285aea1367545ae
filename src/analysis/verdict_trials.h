// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "analysis/document.h"
#include "analysis/uncertainty_json.h"

namespace texturon {

/// Tries an analysed document where its decision rule needs uncertainties that it does not have: its verdicts then
/// follow the rule. `request` may be null, `jobs` are threads. Why values with limits stay without, a clause in
/// Windows-1252; empty: they do not.
std::string TryForVerdicts(Document& document, const UncertaintyRequest* request, unsigned jobs);

/// Why no value of a run will be decided by its rule, or a budget has nothing to decide: a sentence, Windows-1252;
/// empty: neither.
std::string RemarkOnRule(const DecisionSettings& decision, bool hasBudget);

}  // namespace texturon
