// SPDX-License-Identifier: Apache-2.0

#include "parameters/ratio_rows.h"

#include <algorithm>
#include <cmath>

#include "parameters/height_curve.h"

namespace texturon {

RatioRowResults ComputeMaterialRatios(std::span<const double> sorted, const MaterialRatioRows& rows) {
  RatioRowResults results;
  if (sorted.empty()) return results;
  std::transform(rows.begin(), rows.end(), results.begin(), [sorted](const MaterialRatioRow& row) {
    const double height = row.meanReferenced ? row.depthUM : HeightAtRatio(sorted, row.offsetPercent) - row.depthUM;
    return RatioRowResult{true, RatioAtHeight(sorted, height)};
  });
  return results;
}

RatioRowResults ComputeHtps(std::span<const double> sorted, const HtpRows& rows) {
  RatioRowResults results;
  if (sorted.empty()) return results;
  std::transform(rows.begin(), rows.end(), results.begin(), [sorted](const HtpRow& row) {
    const double height = HeightAtRatio(sorted, row.lowerPercent) - HeightAtRatio(sorted, row.upperPercent);
    return std::isfinite(height) ? RatioRowResult{true, height} : RatioRowResult{};
  });
  return results;
}

}  // namespace texturon
