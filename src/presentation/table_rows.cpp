// SPDX-License-Identifier: Apache-2.0

#include "presentation/table_rows.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "parameters/edition2021/edition_list.h"
#include "parameters/ratio_rows.h"
#include "presentation/requirement_texts.h"

namespace texturon {
namespace {

/// What most drawings and most reports ask for, by the names of either edition.
constexpr std::string_view kCommon[] = {"Ra",  "Rq", "RzDIN", "Rt",  "Rp",   "Rv",   "Rsm", "Rsk",
                                        "Rku", "Rk", "Rpk",   "Rvk", "Rmr1", "Rmr2", "Pt",  "Wt"};
constexpr std::string_view kCommon2021[] = {"Ra",  "Rq", "Rz",  "Rt",  "Rp",    "Rv",    "Rsm", "Rsk",
                                            "Rku", "Rk", "Rpk", "Rvk", "Rmrk1", "Rmrk2", "Pt",  "Wt"};

bool IsCommon(const ParameterDef& row) {
  const auto isIn = [&row](const auto& names) {
    return std::find(std::begin(names), std::end(names), row.name) != std::end(names);
  };
  return row.edition == Edition::k1997 ? isIn(kCommon) : isIn(kCommon2021);
}

/// A feature or a row with arguments, or one with numbers of its own: nobody has it unless he wants it.
bool IsWrittenByHand(const ParameterDef& row) {
  if (row.edition == Edition::k1997) return FindRatioRowKind(row.name) != nullptr;
  return row.name.find_first_of(";(") != std::string::npos;
}

RowGroup GroupOf(const ParameterDef& row) {
  const bool isOf2021 = row.edition == Edition::k2021;
  if (!isOf2021 && FamilyOfRow(row.name) == ParameterFamily::kMotif) return RowGroup::kMotif;
  const char letter = isOf2021 ? ParseEditionName(row.name).letter : row.name.empty() ? 'R' : row.name.front();
  switch (letter) {
    case 'P':
      return RowGroup::kPrimary;
    case 'W':
      return RowGroup::kWaviness;
    case 'F':
      return RowGroup::kForm;
    default:
      return RowGroup::kRoughness;
  }
}

using Names = std::vector<std::string>;

/// The names that may be chosen of an edition before anybody has.
const Names& StartingNames(EditionChoice edition) {
  static const std::array<Names, 3> kNames = [] {
    std::array<Names, 3> all;
    constexpr std::string_view kEditions[] = {"1997", "2021", "both"};
    for (std::size_t i = 0; i < all.size(); ++i) {
      AnalysisSettings start;
      start.parameters = DefaultSelection();
      start.standard.Edition = kEditions[i];
      for (const ParameterSelection& row : OfferedRows(start)) all[i].push_back(row.name);
    }
    return all;
  }();
  return kNames[static_cast<std::size_t>(edition)];
}

/// Whether a list begins with these names; what stands behind was written by hand.
bool BeginsWith(const std::vector<ParameterSelection>& list, const Names& names) {
  return list.size() >= names.size() &&
         std::equal(names.begin(), names.end(), list.begin(),
                    [](const std::string& name, const ParameterSelection& row) { return row.name == name; });
}

/// Whether a list holds as many of these names as it can, in their order: what it had no room for has been left out.
bool IsFullOf(const std::vector<ParameterSelection>& list, const Names& names) {
  if (list.size() < kMostParameters) return false;
  auto next = names.begin();
  return std::all_of(list.begin(), list.end(), [&](const ParameterSelection& row) {
    next = std::find(next, names.end(), row.name);
    return next != names.end();
  });
}

/// Whether the rows are those of the edition as they come. Limits are no choice among them.
bool IsAsItComes(const Document& document) {
  const auto& rows = document.catalogue.rows;
  if (std::any_of(rows.begin(), rows.end(), [](const ParameterDef& row) { return !row.selected; })) return false;
  const AnalysisSettings& settings = document.settings.analysis;
  const Names& offered = StartingNames(ChosenEdition(settings));
  return BeginsWith(settings.parameters, StartingNames(EditionChoice::k1997)) ||
         BeginsWith(settings.parameters, offered) || IsFullOf(settings.parameters, offered);
}

/// The name in the edition before of the row whose place one of 2021 takes; empty: there is none.
std::string OlderName(std::string_view name) {
  const EditionName read = ParseEditionName(name);
  if (read.row == nullptr || read.row->older.name.empty()) return {};
  std::string older(read.row->older.name);
  if (older.front() == 'R') older.front() = read.letter;
  return older;
}

/// Puts each row of 2021 behind its namesake, or else behind the row whose place it takes, where that is among them.
void PairEditions(std::vector<ListedRow>& rows) {
  const auto isOlder = [](const ListedRow& row) { return row.shown.row.edition == Edition::k1997; };
  std::vector<std::vector<std::size_t>> behind(rows.size());
  std::vector<bool> isPaired(rows.size());
  const auto pair = [&](const auto& nameOf) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const std::string name = isOlder(rows[i]) || isPaired[i] ? std::string() : nameOf(rows[i].shown.row.name);
      const auto owner = std::find_if(rows.begin(), rows.end(), [&](const ListedRow& row) {
        return isOlder(row) && EqualIgnoringCase(row.shown.row.name, name);
      });
      if (name.empty() || owner == rows.end()) continue;
      isPaired[i] = true;
      behind[static_cast<std::size_t>(owner - rows.begin())].push_back(i);
    }
  };
  pair([](const std::string& name) { return name; });
  pair([](const std::string& name) { return OlderName(name); });
  std::vector<ListedRow> paired;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (isPaired[i]) continue;
    paired.push_back(std::move(rows[i]));
    for (const std::size_t follower : behind[i]) paired.push_back(std::move(rows[follower]));
  }
  rows = std::move(paired);
}

int Badness(Acceptance verdict) {
  return verdict == Acceptance::kFail ? 2 : verdict == Acceptance::kUndecided ? 1 : 0;
}

/// The worst requirement of the drawing and, where no row is bad, the row that it is about.
void CountDrawing(const Document& document, const std::vector<ShownRow>& rows, VerdictCount& count) {
  for (const JudgedRequirement& judged : RequirementsOf(document)) {
    const Acceptance verdict = judged.Verdict().verdict;
    if (count.drawing && Badness(verdict) <= Badness(*count.drawing)) continue;
    count.drawing = verdict;
    count.drawingSource = judged.requirement.source;
    count.drawingText = RequirementVerdict(document, judged);
    const auto row = std::find_if(rows.begin(), rows.end(), [&judged](const ShownRow& shown) {
      return shown.row.name == judged.requirement.rowName && shown.row.edition == judged.requirement.edition;
    });
    const bool isBad = count.failed + count.undecided + count.missing > 0;
    if (!isBad && verdict != Acceptance::kPass && row != rows.end()) count.firstBad = row->title;
  }
}

}  // namespace

TableRows RowsOfTable(const Document& document, const TableChoice& choice) {
  TableRows table{.isGrouped = IsAsItComes(document)};
  const auto ofCatalogue =
      static_cast<std::size_t>(std::count_if(document.catalogue.rows.begin(), document.catalogue.rows.end(),
                                             [](const ParameterDef& row) { return row.selected; }));
  for (ShownRow& shown : ShownRows(document)) {
    const bool isRatio = table.selected++ >= ofCatalogue;
    const bool isWanted =
        isRatio || shown.row.tolerance.toleranced || IsCommon(shown.row) || IsWrittenByHand(shown.row);
    if (table.isGrouped && !choice.showsAll && !isWanted) continue;
    const RowGroup group = isRatio ? RowGroup::kRatio : GroupOf(shown.row);
    table.rows.push_back({std::move(shown), group});
  }
  if (table.isGrouped) {
    if (ChosenEdition(document.settings.analysis) == EditionChoice::kBoth) PairEditions(table.rows);
    std::stable_sort(table.rows.begin(), table.rows.end(),
                     [](const ListedRow& a, const ListedRow& b) { return a.group < b.group; });
  }
  if (choice.tolerancedFirst) {
    std::stable_partition(table.rows.begin(), table.rows.end(),
                          [](const ListedRow& row) { return row.shown.row.tolerance.toleranced; });
  }
  return table;
}

int RankOfInterest(const ParameterDef& row) {
  if (row.tolerance.toleranced) return 0;
  constexpr int kLast = static_cast<int>(RowGroup::kRatio) + 2;
  return IsCommon(row) || IsWrittenByHand(row) ? static_cast<int>(GroupOf(row)) + 1 : kLast;
}

std::vector<std::size_t> OrderOfInterest(const Document& document) {
  std::vector<std::pair<int, std::size_t>> ranked;
  for (const ShownRow& row : ShownRows(document)) ranked.emplace_back(RankOfInterest(row.row), ranked.size());
  std::sort(ranked.begin(), ranked.end());
  std::vector<std::size_t> order;
  for (const auto& [rank, place] : ranked) order.push_back(place);
  return order;
}

VerdictCount CountVerdicts(const Document& document) {
  VerdictCount count;
  std::optional<std::string> firstUndecided;
  std::optional<std::string> firstMissing;
  const std::vector<ShownRow> rows = ShownRows(document);
  for (const ShownRow& row : rows) {
    if (!row.verdict) {
      if (row.row.tolerance.toleranced && count.missing++ == 0) firstMissing = row.title;
      continue;
    }
    ++count.judged;
    if (*row.verdict == Acceptance::kFail) {
      ++count.failed;
      if (!row.doubt.empty() && count.doubted++ == 0) count.doubt = row.doubt;
      if (!count.firstBad) count.firstBad = row.title;
    } else if (*row.verdict == Acceptance::kUndecided) {
      if (count.undecided++ == 0) {
        firstUndecided = row.title;
        if (count.doubted == 0) count.doubt = row.doubt;
      }
    }
  }
  if (!count.firstBad) count.firstBad = firstUndecided ? firstUndecided : firstMissing;
  CountDrawing(document, rows, count);
  return count;
}

}  // namespace texturon
