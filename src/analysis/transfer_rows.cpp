// SPDX-License-Identifier: Apache-2.0

#include "analysis/transfer_rows.h"

#include <string>
#include <utility>

#include "analysis/ratio_row_list.h"
#include "base/number_text.h"
#include "parameters/catalogue.h"

namespace texturon {
namespace {

struct LimitedRow {
  std::string name;
  ParameterDef row;
  std::optional<double> lower, upper;
};

/// Appends the row with the limits by which it is judged, where it has one: as in JudgeValue a single 0 and two are
/// none.
void AddLimited(std::string name, const ParameterDef& row, std::vector<LimitedRow>& rows) {
  const Tolerance& tolerance = row.tolerance;
  const bool hasLower = tolerance.bilateral && (tolerance.lowerLimit != 0.0 || tolerance.upperLimit != 0.0);
  const bool hasUpper = hasLower || tolerance.upperLimit != 0.0;
  if (!tolerance.toleranced || !hasUpper) return;
  LimitedRow limited{.name = std::move(name), .row = row, .upper = tolerance.upperLimit};
  if (hasLower) limited.lower = tolerance.lowerLimit;
  rows.push_back(std::move(limited));
}

std::vector<LimitedRow> LimitedRows(const Document& document) {
  std::vector<LimitedRow> rows;
  for (const ParameterDef& row : document.catalogue.rows) {
    if (row.selected) AddLimited(row.name, row, rows);
  }
  for (const auto& entries : {SelectedMaterialRatios(document), SelectedHtps(document)}) {
    for (const RatioRowEntry& entry : entries) {
      AddLimited(entry.row.name + IntegerText(static_cast<std::int64_t>(entry.index) + 1), entry.row, rows);
    }
  }
  return rows;
}

}  // namespace

std::vector<TransferCharacteristic> TransferCharacteristics(const Document& document) {
  std::vector<TransferCharacteristic> characteristics;
  for (const LimitedRow& limited : LimitedRows(document)) {
    characteristics.push_back({.name = limited.name,
                               .unit = PrintedUnit(limited.row.quantity.metricUnit),
                               .decimals = limited.row.format.decimals.metric,
                               .lower = limited.lower,
                               .upper = limited.upper});
  }
  return characteristics;
}

TransferRecord TransferRecordOf(const Document& document, const std::tm& time) {
  TransferRecord record{.identification = document.profiles.identification, .values = {}, .time = time};
  for (const LimitedRow& limited : LimitedRows(document)) {
    record.values.push_back(limited.row.valid ? std::optional(limited.row.value) : std::nullopt);
  }
  return record;
}

}  // namespace texturon
