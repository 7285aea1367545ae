// SPDX-License-Identifier: Apache-2.0

#include "presentation/several_results.h"

#include <algorithm>
#include <utility>

#include "presentation/shown_rows.h"

namespace texturon {

std::string SeveralRow::Shown(const std::optional<double>& value, bool metric) const {
  ParameterDef shown = row;
  shown.valid = value.has_value();
  shown.value = value.value_or(0.0);
  return ShownValue(shown, metric);
}

void SeveralResults::Add(const Document& document) {
  for (ShownRow& shown : ShownRows(document)) {
    auto held = std::find_if(rows_.begin(), rows_.end(), [&](const SeveralRow& row) {
      return row.title == shown.title && row.values.size() == count_;
    });
    if (held == rows_.end()) {
      rows_.push_back({.row = shown.row,
                       .title = std::move(shown.title),
                       .label = std::move(shown.label),
                       .values = ValueSeries(count_)});
      held = rows_.end() - 1;
    }
    held->values.push_back(shown.row.valid ? std::optional(shown.row.value) : std::nullopt);
  }
  AddFailed();
}

void SeveralResults::AddFailed() {
  ++count_;
  for (SeveralRow& row : rows_) row.values.resize(count_);
}

std::vector<SeveralRow> SeveralResults::Rows(AcceptanceRule rule) const {
  std::vector<SeveralRow> rows = rows_;
  for (SeveralRow& row : rows) {
    row.statistics = StatisticsOf(row.values);
    row.acceptance = Accept(row.values, row.row.tolerance, rule);
  }
  return rows;
}

}  // namespace texturon
