// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "analysis/document.h"

namespace texturon {

/// How often the attributes of features lie in equal classes; the last one has its upper end too.
struct FeatureHistogram {
  std::vector<double> edges;  ///< one more than classes, in the row's metric unit
  std::vector<std::int32_t> counts;
};

/// Of a row whose feature parameter asks for one; nothing for any other, and where there is no feature. Ten classes
/// between the least and the largest attribute, one where they are the same.
std::optional<FeatureHistogram> HistogramOf(const Document& document, const ParameterDef& row);

}  // namespace texturon
