// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <optional>

#include "analysis/uncertainty_json.h"
#include "settings/decision_settings.h"

namespace texturon {

// The budget of the user's instrument: the one that was tried last in the window, kept from one start to the next.
// Verdicts of a guarded rule over a folder or over several profiles go by it.

void KeepBudget(const BudgetEntries& entries);
/// Empty where none was tried.
BudgetEntries KnownBudgetEntries();
std::optional<UncertaintyRequest> KnownBudget();

/// Which budget the verdicts of a rule go by: a sentence; empty where the rule needs none or none is known.
QString BudgetInUse(const DecisionSettings& decision);

/// A sentence of the engine, which names lines of a budget by their keys, with what they mean in their place.
QString BudgetSentence(std::string_view sentence);
/// The same of a key.
QString BudgetWords(std::string_view key);

}  // namespace texturon
