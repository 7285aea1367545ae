// SPDX-License-Identifier: Apache-2.0

#include "ui/trust/known_budget.h"

#include <QObject>
#include <QRegularExpression>
#include <QSettings>
#include <QStringList>
#include <utility>

#include "analysis/decision.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr const char* kBudgetKey = "trust/budget";

/// Behind a value of a line; empty for what is no measure.
QString UnitOf(std::string_view key) {
  std::string_view unit = key.ends_with("Percent") ? "%" : key.ends_with("UM") ? "um" : key.ends_with("MM") ? "mm" : "";
  if (key.ends_with("Degrees")) unit = "\xB0";
  return unit.empty() ? QString() : Readable(" " + FromText(PrintedUnit(unit)));
}

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

QString BudgetWords(std::string_view key) {
  const std::size_t dot = key.find('.');
  if (dot != std::string_view::npos) {
    const QString line = BudgetWords(key.substr(0, dot));
    const QString part = FromText(key.substr(dot + 1));
    return part == "Distribution" ? QObject::tr("Distribution: %1").arg(line) : line + " (" + part + ")";
  }
  if (key == "TipRadiusUM") return QObject::tr("radius of the tip");
  if (key == "StraightnessWavelengthMM") return QObject::tr("length of the guide's wave");
  for (const BudgetItemRow& item : BudgetItems()) {
    if (item.key == key) return EngineText(item.meaning).section(',', 0, 0);
  }
  return FromText(key);
}

QString BudgetSentence(std::string_view sentence) {
  static const QRegularExpression word("\\b[A-Z][A-Za-z]+(?:\\.\\w+)?\\b");
  const QString text = EngineText(sentence);
  QString shown;
  qsizetype from = 0;
  for (auto words = word.globalMatch(text); words.hasNext();) {
    const auto match = words.next();
    shown += text.mid(from, match.capturedStart() - from) + BudgetWords(ToText(match.captured()));
    from = match.capturedEnd();
  }
  return AsSentence(shown + text.mid(from));
}

QString BudgetInUse(const DecisionSettings& decision) {
  if (!IsGuarded(decision.DecisionRule) || !KnownBudget()) return {};
  QStringList lines;
  for (const auto& [key, value] : KnownBudgetEntries())
    lines << (BudgetWords(key) + " " + FromText(value) + UnitOf(key));
  return QObject::tr("Verdicts go by the budget that was tried last: %1.").arg(lines.join(", "));
}

}  // namespace texturon
