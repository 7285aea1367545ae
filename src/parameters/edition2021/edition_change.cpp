// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/edition_change.h"

#include <algorithm>
#include <optional>

#include "base/text.h"

namespace texturon {
namespace {

using List = std::vector<ParameterSelection>;

/// The row of the edition before that a row takes the place of, for the letter; empty: there is none.
std::string OlderName(const EditionRow& row, char letter) {
  std::string older(row.older.name);
  if (older.empty() || row.leastArguments > 0) return {};
  if (older.front() == 'R') older.front() = letter;
  return older.front() == letter && IsOfEditionBefore(older) ? older : std::string();
}

std::string NameIn1997(const std::string& name) {
  const EditionName read = ParseEditionName(name);
  if (read.row == nullptr || !read.arguments.empty()) return {};
  return OlderName(*read.row, read.letter);
}

std::string NameIn2021(const std::string& name) {
  if (name.empty()) return {};
  for (const EditionRow& row : EditionTable()) {
    if (EqualIgnoringCase(OlderName(row, name.front()), name)) return name.front() + std::string(row.suffix);
  }
  return {};
}

bool HasSameUnit(const std::string& before, const std::string& now) {
  const MasterRow* const master = FindMasterRow(before);
  const EditionRow* const row = ParseEditionName(now).row;
  return master != nullptr && row != nullptr &&
         PrintedUnit(master->quantity.metricUnit) == PrintedUnit(row->quantity.metricUnit);
}

/// What a row is called under another edition.
struct Names {
  bool staysItself = false;  ///< the edition has the very row
  std::string other;         ///< the row that takes its place, or that it took the place of; empty: there is none
  bool isUnitSame = true;
};

Names NamesUnder(EditionChoice from, EditionChoice to, const std::string& name) {
  const bool isOld = from != EditionChoice::k2021 && IsOfEditionBefore(name);
  const bool isNew = from != EditionChoice::k1997 && IsOfEdition(name);
  const bool isBoth = to == EditionChoice::kBoth;
  Names found{.staysItself = isBoth || (to == EditionChoice::k2021 ? isNew : isOld)};
  if (found.staysItself && (!isBoth || isOld == isNew)) return found;
  found.other = isOld ? NameIn2021(name) : NameIn1997(name);
  if (isBoth && found.other == name) found.other.clear();
  found.isUnitSame = isOld ? HasSameUnit(name, found.other) : HasSameUnit(found.other, name);
  return found;
}

void Merge(List& list, ParameterSelection row) {
  const auto held = std::find_if(list.begin(), list.end(), [&row](const ParameterSelection& other) {
    return EqualIgnoringCase(other.name, row.name);
  });
  if (held == list.end()) return list.push_back(std::move(row));
  held->selected = held->selected || row.selected;
  if (!held->tolerance.toleranced) held->tolerance = row.tolerance;
}

void Translate(EditionChoice from, EditionChoice to, ParameterSelection row, List& list, EditionChange& change) {
  const Names found = NamesUnder(from, to, row.name);
  // Under both the limits were those of the row of 1997, and they are no others' of another unit.
  const bool isOfOtherUnit = HasTwoUnits(row.name) && (from == EditionChoice::k2021) != (to == EditionChoice::k2021) &&
                             found.staysItself && from != EditionChoice::k1997;
  if (isOfOtherUnit) {
    if (row.tolerance.toleranced) change.limitsLost.push_back(row.name);
    row.tolerance = {};
  }
  if (found.staysItself) Merge(list, row);
  if (found.other.empty()) {
    if (!found.staysItself) change.without.push_back(row.name);
    return;
  }
  ParameterSelection other = row;
  other.name = found.other;
  if (!found.isUnitSame) other.tolerance = {};
  if (row.tolerance.toleranced) {
    if (found.isUnitSame && other.name != row.name) change.limitsMoved.emplace_back(row.name, other.name);
    // Beside it, the row itself still has them.
    if (!found.isUnitSame && !found.staysItself) change.limitsLost.push_back(row.name);
  }
  Merge(list, std::move(other));
}

}  // namespace

EditionChange TranslateList(EditionChoice from, AnalysisSettings& settings) {
  const EditionChoice to = ChosenEdition(settings);
  EditionChange change;
  if (from == to) return change;
  const List start = DefaultSelection();
  const bool isAll = StandsForAll(settings.parameters);
  List list = isAll ? start : List();
  for (std::size_t i = 0; i < settings.parameters.size(); ++i) {
    const ParameterSelection& row = settings.parameters[i];
    const bool isWanted = row.tolerance.toleranced || (row.selected && !(isAll && i < start.size()));
    if (isWanted) Translate(from, to, row, list, change);
  }
  if (!isAll && to != EditionChoice::k2021) {
    for (ParameterSelection row : start) {
      row.selected = false;
      Merge(list, std::move(row));
    }
  }
  for (std::size_t i = 0; i < list.size(); ++i) list[i].selectionRef = static_cast<std::int32_t>(i);
  change.leftOut = TakeOfferedRows(std::move(list), settings);
  return change;
}

}  // namespace texturon
