// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/edition_notice.h"

#include <QObject>
#include <QStringList>

#include "ui/qt_text.h"

namespace texturon {
namespace {

/// The first few, and how many more there are.
QString Some(const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 6;
  QStringList shown;
  for (std::size_t i = 0; i < names.size() && i < kMost; ++i) shown << FromText(names[i]);
  const QString list = shown.join(", ");
  if (names.size() <= kMost) return list;
  return QObject::tr("%1 and %n more", nullptr, static_cast<int>(names.size() - kMost)).arg(list);
}

}  // namespace

QString TwoUnitsNotice(const AnalysisSettings& settings) {
  if (ChosenEdition(settings) != EditionChoice::kBoth) return {};
  std::vector<std::string> names;
  for (const ParameterSelection& row : settings.parameters) {
    if (row.tolerance.toleranced && HasTwoUnits(row.name)) names.push_back(row.name);
  }
  if (names.empty()) return {};
  return QObject::tr("The limits of %1 are those of the row of 1997; that of 2021 has another unit and is not judged.")
      .arg(Some(names));
}

QString EditionNotice(const EditionChange& change, const AnalysisSettings& settings) {
  QStringList clauses;
  if (!change.without.empty()) clauses << QObject::tr("there is no row for %1").arg(Some(change.without));
  if (!change.limitsLost.empty()) {
    clauses << QObject::tr("the limits of %1 are left out, because the row has another unit now")
                   .arg(Some(change.limitsLost));
  }
  std::vector<std::string> moved;
  for (const auto& [before, now] : change.limitsMoved) moved.push_back(before + " > " + now);
  if (!moved.empty())
    clauses << QObject::tr("limits went over: %1").arg(Some(moved).replace(">", QString::fromUtf8("\u2192")));
  if (change.leftOut > 0) {
    clauses << QObject::tr("%n rows are left out, because a list holds 128", nullptr, static_cast<int>(change.leftOut));
  }
  if (clauses.isEmpty()) return {};
  const QString edition =
      settings.standard.Edition == "both" ? QObject::tr("Both editions") : FromText(settings.standard.Edition);
  return QObject::tr("%1: %2.").arg(edition, clauses.join("; "));
}

}  // namespace texturon
