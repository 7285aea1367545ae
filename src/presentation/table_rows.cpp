// SPDX-License-Identifier: Apache-2.0

#include "presentation/table_rows.h"

#include <algorithm>
#include <string_view>

#include "parameters/catalogue_table.h"

namespace texturon {
namespace {

/// What most drawings and most reports ask for.
constexpr std::string_view kCommon[] = {"Ra",  "Rq", "RzDIN", "Rt",  "Rp",   "Rv",   "Rsm", "Rsk",
                                        "Rku", "Rk", "Rpk",   "Rvk", "Rmr1", "Rmr2", "Pt",  "Wt"};

RowGroup GroupOf(std::string_view name) {
  if (FamilyOfRow(name) == ParameterFamily::kMotif) return RowGroup::kMotif;
  switch (name.empty() ? 'R' : name.front()) {
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

/// Whether the rows are the whole catalogue as it stands.
bool IsAsItComes(const Document& document) {
  const auto& rows = document.catalogue.rows;
  const auto master = MasterCatalogue();
  return std::equal(rows.begin(), rows.end(), master.begin(), master.end(),
                    [](const ParameterDef& row, const MasterRow& as) { return row.selected && row.name == as.name; });
}

}  // namespace

TableRows RowsOfTable(const Document& document, const TableChoice& choice) {
  TableRows table{.isGrouped = IsAsItComes(document)};
  const auto ofCatalogue =
      static_cast<std::size_t>(std::count_if(document.catalogue.rows.begin(), document.catalogue.rows.end(),
                                             [](const ParameterDef& row) { return row.selected; }));
  for (ShownRow& shown : ShownRows(document)) {
    const bool isRatio = table.selected++ >= ofCatalogue;
    const bool isCommon = std::find(std::begin(kCommon), std::end(kCommon), shown.row.name) != std::end(kCommon);
    if (table.isGrouped && !choice.showsAll && !isCommon && !isRatio && !shown.row.tolerance.toleranced) continue;
    const RowGroup group = isRatio ? RowGroup::kRatio : GroupOf(shown.row.name);
    table.rows.push_back({std::move(shown), group});
  }
  if (table.isGrouped) {
    std::stable_sort(table.rows.begin(), table.rows.end(),
                     [](const TableRow& a, const TableRow& b) { return a.group < b.group; });
  }
  if (choice.tolerancedFirst) {
    std::stable_partition(table.rows.begin(), table.rows.end(),
                          [](const TableRow& row) { return row.shown.row.tolerance.toleranced; });
  }
  return table;
}

VerdictCount CountVerdicts(const Document& document) {
  VerdictCount count;
  std::optional<std::string> firstUndecided;
  std::optional<std::string> firstMissing;
  for (const ShownRow& row : ShownRows(document)) {
    if (!row.verdict) {
      if (row.row.tolerance.toleranced && count.missing++ == 0) firstMissing = row.title;
      continue;
    }
    ++count.judged;
    if (*row.verdict == Acceptance::kFail) {
      ++count.failed;
      if (!count.firstBad) count.firstBad = row.title;
    } else if (*row.verdict == Acceptance::kUndecided) {
      if (count.undecided++ == 0) {
        firstUndecided = row.title;
        count.doubt = row.doubt;
      }
    }
  }
  if (!count.firstBad) count.firstBad = firstUndecided ? firstUndecided : firstMissing;
  return count;
}

}  // namespace texturon
