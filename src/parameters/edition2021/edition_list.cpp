// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/edition_list.h"

#include <algorithm>
#include <cstddef>
#include <map>
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

bool IsStartingSelection(const std::vector<ParameterSelection>& selection) {
  static const std::vector<ParameterSelection> start = DefaultSelection();
  // Which row a limit refers to and how it is shown is of no meaning here.
  const auto isSame = [](Tolerance a, const Tolerance& b) {
    a.highlightIfOut = b.highlightIfOut;
    return a == b;
  };
  return std::equal(selection.begin(), selection.end(), start.begin(), start.end(),
                    [&isSame](const ParameterSelection& a, const ParameterSelection& b) {
                      return a.name == b.name && a.selected == b.selected && isSame(a.tolerance, b.tolerance);
                    });
}

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

bool IsOfEdition(std::string_view name) {
  return ParseEditionName(name).fault.empty();
}

bool IsOfEditionBefore(std::string_view name) {
  if (FindWholeName(name) != nullptr) return true;
  const SuffixRow* const suffix = name.empty() ? nullptr : FindSuffix(name.substr(1));
  return suffix != nullptr && ContainsIgnoringCase(suffix->letters, name.substr(0, 1));
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

void AppendAll(ParameterCatalogue& list, const ParameterCatalogue& former) {
  for (const std::string& name : AllNames()) {
    if (!IsIn(list, name, Edition::k2021)) Append(list, MakeEditionRow(name), former);
  }
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

ParameterCatalogue ListOfBoth(const AnalysisSettings& settings, const ParameterCatalogue& former) {
  ParameterCatalogue list;
  const bool isAll = IsStartingSelection(settings.parameters);
  for (const ParameterSelection& selection : settings.parameters) {
    const bool isOld = IsOfEditionBefore(selection.name);
    const bool isNew = IsOfEdition(selection.name);
    if (isOld || !isNew) {
      Append(list, MakeWorkingList({&selection, 1}).rows.front(), former);
    }
    if (!isNew) continue;
    ParameterDef row = SelectedRow(selection);
    if (isOld) row.difference = DifferenceOf(ParseEditionName(selection.name), settings);
    Append(list, std::move(row), former);
  }
  if (isAll) AppendAll(list, former);
  return list;
}

}  // namespace

EditionChoice ChosenEdition(const AnalysisSettings& settings) {
  const std::string& edition = settings.standard.Edition;
  if (EqualIgnoringCase(edition, "2021")) return EditionChoice::k2021;
  return EqualIgnoringCase(edition, "both") ? EditionChoice::kBoth : EditionChoice::k1997;
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
      if (IsStartingSelection(settings.parameters)) {
        AppendAll(list, former);
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
  const bool isStart = IsStartingSelection(settings.parameters);
  std::vector<ParameterSelection> rows;
  if (chosen != EditionChoice::k2021 || !isStart) rows = settings.parameters;
  if (chosen == EditionChoice::k1997) return rows;
  std::size_t place = 0;  // behind the row that stands before in the edition
  for (const std::string& name : AllNames()) {
    const auto held = std::find_if(
        rows.begin(), rows.end(), [&name](const ParameterSelection& row) { return EqualIgnoringCase(row.name, name); });
    if (held != rows.end()) {
      place = static_cast<std::size_t>(held - rows.begin()) + 1;
      continue;
    }
    rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(place++), {.name = name, .selected = isStart});
  }
  return rows;
}

std::size_t TakeOfferedRows(std::vector<ParameterSelection> offered, AnalysisSettings& settings) {
  Shorten(offered, [](const ParameterSelection& row) { return !row.selected; });
  std::size_t gone = 0;
  for (const char letter : kLetters) {
    gone += Shorten(offered, [letter](const ParameterSelection& row) { return row.name.starts_with(letter); });
  }
  if (offered.size() != settings.parameters.size()) {
    for (std::size_t i = 0; i < offered.size(); ++i) offered[i].selectionRef = static_cast<std::int32_t>(i);
  }
  settings.parameters = std::move(offered);
  return gone;
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
