// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/edition_list.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "base/text.h"
#include "parameters/edition2021/feature_rows.h"
#include "parameters/suffix_table.h"
#include "settings/filter_table.h"

namespace texturon {
namespace {

constexpr std::string_view kLetters = "PWR";
constexpr int kFeatureDecimals = 4;

/// A text of the table, which names rows of R, for the rows of another letter.
std::string InLetter(std::string_view text, char letter) {
  std::string own(text);
  for (std::size_t i = 0; i + 1 < own.size(); ++i) {
    const bool isName = own[i] == 'R' && (i == 0 || own[i - 1] == ' ') && own[i + 1] >= 'a' && own[i + 1] <= 'z';
    if (isName) own[i] = letter;
  }
  return own;
}

/// The differences of all rows, where they can be referred to.
const std::map<std::pair<char, std::string_view>, std::string>& DifferencesInLetters() {
  static const auto made = [] {
    std::map<std::pair<char, std::string_view>, std::string> texts;
    for (const EditionRow& row : EditionTable()) {
      for (const char letter : kLetters) {
        for (const std::string_view text : {row.difference, row.roughnessDifference}) {
          texts[{letter, text}] = InLetter(text, letter);
        }
      }
    }
    return texts;
  }();
  return made;
}

/// A name that stands in the older edition too, with why the rows differ.
std::string_view DifferenceOf(const EditionName& name, const AnalysisSettings& settings) {
  if (name.row == nullptr || !name.arguments.empty()) return {};
  // Only the roughness has a filter of its own for the core.
  const bool isOnProfile = name.row->ofCore && (name.letter != 'R' || CoreFilter(settings) == nullptr);
  const std::string_view text = isOnProfile ? name.row->roughnessDifference : name.row->difference;
  return DifferencesInLetters().at({name.letter, text});
}

void Append(ParameterCatalogue& list, ParameterDef row, const ParameterCatalogue& former) {
  const auto before = std::find_if(former.rows.begin(), former.rows.end(), [&row](const ParameterDef& candidate) {
    return candidate.name == row.name && candidate.edition == row.edition;
  });
  if (before != former.rows.end()) {
    row.value = before->value;
    row.valid = before->valid;
    row.reason = before->reason;
  }
  list.rows.push_back(std::move(row));
}

ParameterDef SelectedRow(const ParameterSelection& selection) {
  ParameterDef row = MakeEditionRow(selection.name);
  row.selected = selection.selected;
  row.tolerance = selection.tolerance;
  return row;
}

bool IsIn(const ParameterCatalogue& list, std::string_view name, Edition edition) {
  return std::any_of(list.rows.begin(), list.rows.end(), [&](const ParameterDef& row) {
    return row.edition == edition && EqualIgnoringCase(row.name, name);
  });
}

/// Every row of the edition that needs no argument, in the order of letters and table.
std::vector<std::string> AllNames() {
  std::vector<std::string> names;
  for (const char letter : kLetters) {
    for (const EditionRow& row : EditionTable()) {
      if (row.leastArguments == 0) names.push_back(letter + std::string(row.suffix));
    }
  }
  return names;
}

const ParameterSelection* Find(const std::vector<ParameterSelection>& rows, std::string_view name) {
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [name](const ParameterSelection& row) { return EqualIgnoringCase(row.name, name); });
  return found != rows.end() ? &*found : nullptr;
}

/// Puts each row of the edition that is not among them behind the one that stands before it in the edition.
void OfferMissing(std::vector<ParameterSelection>& rows, bool selected) {
  std::size_t place = 0;
  for (const std::string& name : AllNames()) {
    if (const ParameterSelection* const held = Find(rows, name)) {
      place = static_cast<std::size_t>(held - rows.data()) + 1;
    } else {
      rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(place++), {.name = name, .selected = selected});
    }
  }
}

/// What a list that stands for all rows stands for: those of the edition with its limits, and behind them what it has
/// besides. Limits of a row that the edition does not have are not passed over.
std::vector<ParameterSelection> WholeList(const std::vector<ParameterSelection>& list, EditionChoice chosen) {
  const std::size_t count = DefaultSelection().size();
  std::vector<ParameterSelection> rows;
  if (chosen == EditionChoice::kBoth) rows.assign(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count));
  OfferMissing(rows, true);
  for (ParameterSelection& row : rows) {
    if (const ParameterSelection* const held = Find(list, row.name)) row.tolerance = held->tolerance;
  }
  for (std::size_t i = 0; i < list.size(); ++i) {
    const bool isWanted = i >= count || list[i].tolerance.toleranced;
    if (isWanted && Find(rows, list[i].name) == nullptr) rows.push_back(list[i]);
  }
  return rows;
}

/// The list that stands for these rows; nothing where some row of the edition is not selected or stands elsewhere, or
/// where there are too many others.
std::optional<std::vector<ParameterSelection>> ListForAll(const std::vector<ParameterSelection>& offered,
                                                          EditionChoice chosen) {
  std::vector<ParameterSelection> list = DefaultSelection();
  const std::vector<ParameterSelection> all = WholeList(list, chosen);
  const bool isWhole = offered.size() >= all.size() &&
                       std::equal(all.begin(), all.end(), offered.begin(), [](const auto& row, const auto& own) {
                         return row.name == own.name && own.selected;
                       });
  if (!isWhole) return std::nullopt;
  for (std::size_t i = 0; i < offered.size(); ++i) {
    const auto held = std::find_if(list.begin(), list.end(),
                                   [&](const ParameterSelection& row) { return row.name == offered[i].name; });
    if (held != list.end()) {
      held->tolerance = offered[i].tolerance;
    } else if (i >= all.size() || offered[i].tolerance.toleranced) {
      list.push_back(offered[i]);
    }
  }
  if (list.size() > kMostParameters) return std::nullopt;
  return list;
}

/// Takes rows off the end, until no more than a list holds, where `goes` says so; how many.
template <typename Goes>
std::size_t Shorten(std::vector<ParameterSelection>& rows, const Goes& goes) {
  std::size_t gone = 0;
  for (std::size_t i = rows.size(); i > 0 && rows.size() > kMostParameters; --i) {
    if (!goes(rows[i - 1])) continue;
    rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(i - 1));
    ++gone;
  }
  return gone;
}

/// A row that most want to see, or that is judged: such rows go last where a list is too long.
bool IsOfInterest(const ParameterSelection& row) {
  return row.tolerance.toleranced || row.name == "Pt" || row.name == "Wt";
}

ParameterCatalogue ListOfBoth(const AnalysisSettings& settings, const ParameterCatalogue& former) {
  ParameterCatalogue list;
  const bool isAll = StandsForAll(settings.parameters);
  for (const ParameterSelection& selection : settings.parameters) {
    const bool isOld = IsOfEditionBefore(selection.name);
    const bool isNew = IsOfEdition(selection.name);
    if (isOld || !isNew) {
      Append(list, MakeWorkingList({&selection, 1}).rows.front(), former);
    }
    if (!isNew) continue;
    ParameterDef row = SelectedRow(selection);
    // Nobody can tell 5 degrees from 5.
    if (HasTwoUnits(selection.name)) row.tolerance = {};
    if (isOld) row.difference = DifferenceOf(ParseEditionName(selection.name), settings);
    Append(list, std::move(row), former);
  }
  if (!isAll) return list;
  for (const std::string& name : AllNames()) {
    if (!IsIn(list, name, Edition::k2021)) Append(list, MakeEditionRow(name), former);
  }
  return list;
}

}  // namespace

EditionChoice ChosenEdition(const AnalysisSettings& settings) {
  const std::string& edition = settings.standard.Edition;
  if (EqualIgnoringCase(edition, "2021")) return EditionChoice::k2021;
  return EqualIgnoringCase(edition, "both") ? EditionChoice::kBoth : EditionChoice::k1997;
}

bool StandsForAll(const std::vector<ParameterSelection>& list) {
  static const std::vector<ParameterSelection> kStart = DefaultSelection();
  return list.size() >= kStart.size() && std::equal(kStart.begin(), kStart.end(), list.begin(),
                                                    [](const ParameterSelection& a, const ParameterSelection& b) {
                                                      return a.name == b.name && a.selected == b.selected;
                                                    });
}

bool HasTwoUnits(std::string_view name) {
  const MasterRow* const before = FindMasterRow(name);
  const EditionRow* const now = ParseEditionName(name).row;
  return before != nullptr && now != nullptr &&
         PrintedUnit(before->quantity.metricUnit) != PrintedUnit(now->quantity.metricUnit);
}

ParameterDef MakeEditionRow(std::string_view name) {
  ParameterDef row;
  row.name = name;
  row.edition = Edition::k2021;
  const EditionName read = ParseEditionName(name);
  if (read.feature) {
    row.quantity = read.feature->Unit();
    row.format = {.decimals = {kFeatureDecimals, kFeatureDecimals}};
  } else if (read.row != nullptr) {
    row.quantity = read.row->quantity;
    row.format = read.row->format;
  }
  return row;
}

ParameterCatalogue MakeEditionList(const AnalysisSettings& settings, const ParameterCatalogue& former) {
  ParameterCatalogue list;
  switch (ChosenEdition(settings)) {
    case EditionChoice::k1997:
      list = MakeWorkingList(settings.parameters, former);
      break;
    case EditionChoice::k2021:
      if (StandsForAll(settings.parameters)) {
        for (const auto& row : WholeList(settings.parameters, EditionChoice::k2021)) {
          Append(list, SelectedRow(row), former);
        }
      } else {
        const std::size_t count = std::min(settings.parameters.size(), kMostParameters);
        for (std::size_t i = 0; i < count; ++i) Append(list, SelectedRow(settings.parameters[i]), former);
      }
      break;
    case EditionChoice::kBoth:
      list = ListOfBoth(settings, former);
      break;
  }
  for (const std::string& feature : settings.standard.features) {
    if (!TrimBlanks(feature).empty()) Append(list, MakeEditionRow(feature), former);
  }
  return list;
}

std::vector<ParameterSelection> OfferedRows(const AnalysisSettings& settings) {
  const EditionChoice chosen = ChosenEdition(settings);
  if (chosen == EditionChoice::k1997) return settings.parameters;
  if (StandsForAll(settings.parameters)) return WholeList(settings.parameters, chosen);
  std::vector<ParameterSelection> rows = settings.parameters;
  OfferMissing(rows, false);
  return rows;
}

std::size_t TakeOfferedRows(std::vector<ParameterSelection> offered, AnalysisSettings& settings) {
  const EditionChoice chosen = ChosenEdition(settings);
  if (chosen != EditionChoice::k1997) {
    if (auto list = ListForAll(offered, chosen)) offered = std::move(*list);
  }
  Shorten(offered, [](const ParameterSelection& row) { return !row.selected && !IsOfInterest(row); });
  Shorten(offered, [](const ParameterSelection& row) { return !row.selected; });
  std::size_t gone = 0;
  for (const bool ofInterest : {false, true}) {
    for (const char letter : kLetters) {
      gone += Shorten(offered, [&](const ParameterSelection& row) {
        return row.name.starts_with(letter) && IsOfInterest(row) == ofInterest;
      });
    }
  }
  if (offered.size() != settings.parameters.size()) {
    for (std::size_t i = 0; i < offered.size(); ++i) offered[i].selectionRef = static_cast<std::int32_t>(i);
  }
  settings.parameters = std::move(offered);
  return gone;
}

bool IsOfEdition(std::string_view name) {
  return ParseEditionName(name).fault.empty();
}

bool IsOfEditionBefore(std::string_view name) {
  if (FindWholeName(name) != nullptr) return true;
  const SuffixRow* const suffix = name.empty() ? nullptr : FindSuffix(name.substr(1));
  return suffix != nullptr && ContainsIgnoringCase(suffix->letters, name.substr(0, 1));
}

bool NeedsCoreProfile(const ParameterCatalogue& catalogue) {
  return std::any_of(catalogue.rows.begin(), catalogue.rows.end(), [](const ParameterDef& row) {
    if (!row.selected || row.edition != Edition::k2021) return false;
    const EditionName name = ParseEditionName(row.name);
    return name.letter == 'R' && name.row != nullptr && name.row->ofCore;
  });
}

RowResult ComputeEditionRow(const EditionName& name, const EditionInput& input) {
  if (name.feature) return FeatureValue(input, *name.feature);
  return name.row->routine({input.profile, input.settings, name.arguments});
}

}  // namespace texturon
