// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/iso13565_filter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/samples.h"
#include "base/units.h"
#include "signal/filter/gaussian_filter.h"
#include "signal/mean.h"

namespace texturon {

std::optional<IndexRange> Iso13565Filter(std::span<const double> z, std::span<double> w, double spacingUM,
                                         double cutoffMM) {
  const std::optional<IndexRange> reached = GaussianFilter(z, w, spacingUM, cutoffMM);
  if (!reached) return std::nullopt;
  const auto m = static_cast<std::size_t>(reached->count);
  Samples filled(m);
  for (std::size_t i = 0; i < m; ++i) filled[i] = std::max(z[i], w[i]);
  if (!GaussianFilter(filled, w, spacingUM, cutoffMM)) return std::nullopt;

  const std::int64_t end = StepsInLength(cutoffMM, spacingUM);
  const std::int64_t last = std::min(static_cast<std::int64_t>(z.size()) - end - 1, std::int64_t{reached->last});
  if (last < end) return std::nullopt;
  const IndexRange range = IndexRange::FromEnds(static_cast<std::int32_t>(end), static_cast<std::int32_t>(last));
  const auto first = static_cast<std::size_t>(range.first);
  const auto count = static_cast<std::size_t>(range.count);
  const std::span<double> line = w.subspan(first, count);
  const double shift = Mean(line) - Mean(z.subspan(first, count));
  for (double& height : line) height -= shift;
  return range;
}

}  // namespace texturon
