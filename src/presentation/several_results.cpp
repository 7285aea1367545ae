// SPDX-License-Identifier: Apache-2.0

#include "presentation/several_results.h"

#include <algorithm>
#include <utility>

#include "analysis/decision.h"
#include "base/number_text.h"
#include "presentation/shown_rows.h"

namespace texturon {

std::string SeveralRow::Shown(const std::optional<double>& value, bool metric) const {
  ParameterDef shown = row;
  shown.valid = value.has_value();
  shown.value = value.value_or(0.0);
  return ShownValue(shown, metric);
}

void SeveralResults::Add(const Document& document) {
  std::size_t place = 0;
  for (ShownRow& shown : ShownRows(document)) {
    auto held = std::find_if(rows_.begin(), rows_.end(), [&](const SeveralRow& row) {
      return row.title == shown.title && row.values.size() == count_;
    });
    if (held == rows_.end()) {
      rows_.push_back({.row = shown.row,
                       .title = std::move(shown.title),
                       .label = std::move(shown.label),
                       .values = ValueSeries(count_),
                       .expanded = ValueSeries(count_)});
      held = rows_.end() - 1;
    }
    held->values.push_back(shown.row.valid ? std::optional(shown.row.value) : std::nullopt);
    const Uncertainties& known = document.results.uncertainties;
    const bool isKnown = place < known.size() && known[place] && known[place]->IsDefinedOften();
    held->expanded.push_back(isKnown ? std::optional(known[place]->Expanded()) : std::nullopt);
    ++place;
  }
  AddRequirements(document);
  AddFailed();
}

void SeveralResults::AddRequirements(const Document& document) {
  for (JudgedRequirement& judged : RequirementsOf(document)) {
    auto held = std::find_if(requirements_.begin(), requirements_.end(), [&](const JudgedRequirement& other) {
      return other.requirement.source == judged.requirement.source && other.values->size() == count_;
    });
    if (held == requirements_.end()) {
      requirements_.push_back({judged.requirement, ValueSeries(count_), ValueSeries(count_), judged.decisionRule});
      held = requirements_.end() - 1;
    }
    held->values->push_back(judged.values->front());
    held->expanded.push_back(judged.expanded.front());
  }
}

void SeveralResults::AddFailed() {
  ++count_;
  for (SeveralRow& row : rows_) {
    row.values.resize(count_);
    row.expanded.resize(count_);
  }
  for (JudgedRequirement& judged : requirements_) {
    judged.values->resize(count_);
    judged.expanded.resize(count_);
  }
}

std::vector<SeveralRow> SeveralResults::Rows(AcceptanceRule rule, std::int32_t decisionRule) const {
  std::vector<SeveralRow> rows = rows_;
  for (SeveralRow& row : rows) {
    row.statistics = StatisticsOf(row.values);
    row.acceptance = Decide(row.values, row.expanded, row.row.tolerance, rule, decisionRule);
  }
  return rows;
}

std::vector<std::string> StatisticsTitles() {
  return {"Parameter", "Profiles", "Mean", "Std. dev.", "Least", "Greatest", "Unit", "Verdict"};
}

std::vector<std::vector<std::string>> StatisticsCells(std::span<const SeveralRow> rows, bool metric) {
  std::vector<std::vector<std::string>> lines;
  for (const SeveralRow& row : rows) {
    const ValueStatistics& s = row.statistics;
    const auto extreme = [&](double value) { return s.count > 0 ? std::optional(value) : std::nullopt; };
    std::string verdict;
    if (row.acceptance) {
      verdict = std::string(VerdictWord(row.acceptance->verdict)) + " (" + std::string(row.acceptance->by) + ")";
    }
    lines.push_back({row.title + row.label, IntegerText(static_cast<std::int64_t>(s.count)), row.Shown(s.mean, metric),
                     row.Shown(s.standardDeviation, metric), row.Shown(extreme(s.least), metric),
                     row.Shown(extreme(s.greatest), metric), PrintedUnit(row.row.quantity.Unit(metric)), verdict});
  }
  return lines;
}

}  // namespace texturon
