// SPDX-License-Identifier: Apache-2.0

#include "presentation/cutoff_proposal.h"

#include <algorithm>
#include <span>

#include "base/number_text.h"
#include "base/quantity.h"

namespace texturon {
namespace {

/// From above the step before, or the least, up to and with `upTo`.
struct Step {
  double upTo;
  double cutoffMM;
};

struct Table {
  double above;
  std::span<const Step> steps;
  std::string_view row;
  const Quantity& quantity;
  Decimals decimals;
};

constexpr Step kByRa[] = {{0.02, 0.08}, {0.1, 0.25}, {2.0, 0.8}, {10.0, 2.5}, {80.0, 8.0}};
constexpr Step kByRsm[] = {{0.04, 0.08}, {0.13, 0.25}, {0.4, 0.8}, {1.3, 2.5}, {4.0, 8.0}};

const Table& TableOf(CutoffBasis basis) {
  static const Table byRa{0.006, kByRa, "Ra", kHeightUM, {3, 2}};
  static const Table byRsm{0.013, kByRsm, "Rsm", kLengthMM, {3, 5}};
  return basis == CutoffBasis::kRa ? byRa : byRsm;
}

/// Index of the step; its number where there is none.
std::size_t StepOf(const Table& table, double value) {
  if (!(value > table.above)) return table.steps.size();
  const auto step =
      std::find_if(table.steps.begin(), table.steps.end(), [value](const Step& each) { return value <= each.upTo; });
  return static_cast<std::size_t>(step - table.steps.begin());
}

}  // namespace

std::optional<double> CutoffFor(CutoffBasis basis, double value) {
  const Table& table = TableOf(basis);
  const std::size_t step = StepOf(table, value);
  if (step == table.steps.size()) return std::nullopt;
  return table.steps[step].cutoffMM;
}

CutoffProposal ProposeCutoff(const Document& document, CutoffBasis basis) {
  const Table& table = TableOf(basis);
  const bool metric = document.settings.display.Metric;
  const std::string name(table.row);
  const auto& rows = document.catalogue.rows;
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const ParameterDef& each) { return each.name == name; });
  if (row == rows.end() || !row->selected) return {.reason = "No proposal by " + name + ": it is not selected."};
  if (!row->valid) return {.reason = "No proposal by " + name + ": it has no value."};
  const auto shown = [&](double value) { return ShownText(table.quantity, value, metric, table.decimals); };
  const std::string measured = name + " is " + shown(row->value);
  const std::size_t step = StepOf(table, row->value);
  if (step == table.steps.size()) return {.reason = measured + ", for which ISO 4288 has no cut-off."};
  const double from = step == 0 ? table.above : table.steps[step - 1].upTo;
  const double cutoffMM = table.steps[step].cutoffMM;
  const std::string cutoff = LengthText(cutoffMM, metric, {2, 4});
  const std::string stretch = "above " + shown(from) + " to " + shown(table.steps[step].upTo);
  std::string reason = measured + "; for " + stretch + " ISO 4288 has the cut-off " + cutoff;
  reason += cutoffMM == document.AnalysedBy().LcCutoffMM ? ", which is in force." : ".";
  return {.cutoffMM = cutoffMM, .reason = std::move(reason)};
}

}  // namespace texturon
