// SPDX-License-Identifier: Apache-2.0

#include "parameters/ratio_rows.h"

#include <algorithm>
#include <cmath>

#include "parameters/height_curve.h"

namespace texturon {

const RatioRowKind* FindRatioRowKind(std::string_view name) {
  constexpr std::string_view kRatio =
      "Material ratio at a depth below the height of a reference ratio, or at a height about the mean line.";
  constexpr std::string_view kHeight = "Height between the points of two material ratios.";
  static constexpr RatioRowKind kKinds[] = {{"Pmr", kRatio, "ISO 4287:1997"},
                                            {"Rmr", kRatio, "ISO 4287:1997"},
                                            {"PHtp", kHeight, "this program"},
                                            {"RHtp", kHeight, "this program"}};
  const auto* const kind =
      std::find_if(std::begin(kKinds), std::end(kKinds), [name](const RatioRowKind& row) { return row.name == name; });
  return kind != std::end(kKinds) ? kind : nullptr;
}

RatioRowResults ComputeMaterialRatios(std::span<const double> sorted, const MaterialRatioRows& rows) {
  RatioRowResults results;
  results.fill({.reason = {Why::kNoProfile}});
  if (sorted.empty()) return results;
  std::transform(rows.begin(), rows.end(), results.begin(), [sorted](const MaterialRatioRow& row) {
    const double height = row.meanReferenced ? row.depthUM : HeightAtRatio(sorted, row.offsetPercent) - row.depthUM;
    return RatioRowResult{true, RatioAtHeight(sorted, height)};
  });
  return results;
}

RatioRowResults ComputeHtps(std::span<const double> sorted, const HtpRows& rows) {
  RatioRowResults results;
  results.fill({.reason = {Why::kNoProfile}});
  if (sorted.empty()) return results;
  std::transform(rows.begin(), rows.end(), results.begin(), [sorted](const HtpRow& row) {
    const double height = HeightAtRatio(sorted, row.lowerPercent) - HeightAtRatio(sorted, row.upperPercent);
    return std::isfinite(height) ? RatioRowResult{true, height} : RatioRowResult{.reason = {Why::kNotFinite}};
  });
  return results;
}

}  // namespace texturon
