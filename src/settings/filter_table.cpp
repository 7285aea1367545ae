// SPDX-License-Identifier: Apache-2.0

#include "settings/filter_table.h"

#include <algorithm>

#include "base/text.h"

namespace texturon {
namespace {

template <typename Condition>
const FilterRow* FirstWith(Condition condition) {
  const auto* const found = std::find_if(kFilterTable.begin(), kFilterTable.end(), condition);
  return found == kFilterTable.end() ? nullptr : found;
}

}  // namespace

const FilterRow* FindFilter(std::int32_t number) {
  return FirstWith([number](const FilterRow& filter) { return filter.number == number; });
}

const FilterRow* FindFilter(std::string_view word) {
  return FirstWith([word](const FilterRow& filter) { return EqualIgnoringCase(filter.word, word); });
}

const FilterRow* LongWaveFilter(const AnalysisSettings& settings) {
  return FindFilter(settings.FilterType);
}

const FilterRow& ShortWaveFilter(const AnalysisSettings& /*settings*/) {
  return *FindFilter("SPLINE");
}

}  // namespace texturon
