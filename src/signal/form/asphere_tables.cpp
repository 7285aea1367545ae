// SPDX-License-Identifier: Apache-2.0

#include "signal/form/asphere_tables.h"

#include <algorithm>
#include <cmath>

#include "base/units.h"

namespace texturon {
namespace {

constexpr double kRoundingSlack = 1e-9;  // of a step: 15 / 0.05 is 300 steps, whatever the digits

/// Whole steps in a length; nothing where there are too many, or none make sense.
std::optional<std::size_t> StepsIn(double lengthMM, double spacingMM) {
  const double steps = WholePartsOfLength(lengthMM, spacingMM);
  if (!(spacingMM > 0.0) || !(lengthMM >= 0.0) || !(steps < static_cast<double>(kMostTableRows))) return std::nullopt;
  return static_cast<std::size_t>(steps);
}

}  // namespace

std::vector<TableRow> SagTable(const AsphereDescription& asphere, double firstMM, double lastMM, double spacingMM) {
  const auto steps = StepsIn(lastMM - firstMM, spacingMM);
  if (!steps) return {};
  std::vector<TableRow> rows;
  rows.reserve(*steps + 1);
  for (std::size_t i = 0; i <= *steps; ++i) {
    const double x = firstMM + static_cast<double>(i) * spacingMM;
    rows.push_back({x, AsphereSag(x, {}, asphere)});
  }
  return rows;
}

std::optional<ResidualTable> MakeResidualTable(std::span<const double> residualUM, double spacingUM, double apexMM,
                                               const ResidualTableOptions& options) {
  const auto side = StepsIn(options.sideLengthMM, options.spacingMM);
  if (!side || !(options.sideLengthMM > 0.0) || residualUM.empty() || !(spacingUM > 0.0) || !std::isfinite(apexMM)) {
    return std::nullopt;
  }
  const double step = spacingUM * kMillimetresPerMicrometre;
  const double last = static_cast<double>(residualUM.size() - 1);
  ResidualTable table;
  const double reach = kRoundingSlack * step;
  table.exceedsData = options.sideLengthMM > apexMM + reach || options.sideLengthMM > last * step - apexMM + reach;
  const auto count = static_cast<std::ptrdiff_t>(*side);
  for (std::ptrdiff_t i = -count; i <= count; ++i) {
    const double x = static_cast<double>(i) * options.spacingMM;
    const double index = (apexMM + x) / step;
    const bool isOutside = index < -kRoundingSlack || index > last + kRoundingSlack;
    if (isOutside && options.padding == ResidualPadding::kNone) continue;
    const double inside = std::clamp(index, 0.0, last);
    const auto left = static_cast<std::size_t>(inside);
    const std::size_t right = std::min(left + 1, residualUM.size() - 1);
    const double part = inside - static_cast<double>(left);
    double height = residualUM[left] + part * (residualUM[right] - residualUM[left]);
    if (isOutside && options.padding == ResidualPadding::kZero) height = 0.0;
    table.rows.push_back({x, (height + options.offsetUM) * kMillimetresPerMicrometre});
  }
  return table;
}

}  // namespace texturon
