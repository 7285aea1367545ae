// SPDX-License-Identifier: Apache-2.0

#include "ui/trust/known_budget.h"

#include <QObject>
#include <QSettings>
#include <QStringList>
#include <utility>

#include "analysis/decision.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr const char* kBudgetKey = "trust/budget";

}  // namespace

void KeepBudget(const BudgetEntries& entries) {
  QStringList lines;
  for (const auto& [key, value] : entries) lines << FromText(key + "=" + value);
  QSettings().setValue(kBudgetKey, lines);
}

BudgetEntries KnownBudgetEntries() {
  BudgetEntries entries;
  for (const QString& line : QSettings().value(kBudgetKey).toStringList()) {
    const qsizetype equals = line.indexOf('=');
    if (equals > 0) entries.emplace_back(ToText(line.left(equals)), ToText(line.mid(equals + 1)));
  }
  return entries;
}

std::optional<UncertaintyRequest> KnownBudget() {
  const BudgetEntries entries = KnownBudgetEntries();
  if (entries.empty()) return std::nullopt;
  BudgetRead read = MakeBudget(entries);
  if (!read.budget) return std::nullopt;
  return UncertaintyRequest{.budget = std::move(*read.budget)};
}

QString BudgetInUse(const DecisionSettings& decision) {
  if (!IsGuarded(decision.DecisionRule) || !KnownBudget()) return {};
  QStringList lines;
  for (const auto& [key, value] : KnownBudgetEntries()) lines << FromText(key + " " + value);
  return QObject::tr("Verdicts go by the budget that was tried last: %1.").arg(lines.join(", "));
}

}  // namespace texturon
