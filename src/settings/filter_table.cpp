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
  const std::string& word = settings.standard.LongWaveFilter;
  return word.empty() ? FindFilter(settings.FilterType) : FindFilter(word);
}

const FilterRow& ShortWaveFilter(const AnalysisSettings& settings) {
  return EqualIgnoringCase(settings.standard.ShortWaveFilter, "gaussian") ? *FindFilter("GAUSSIAN")
                                                                          : *FindFilter("SPLINE");
}

const FilterRow* CoreFilter(const AnalysisSettings& settings) {
  const FilterRow* const filter = FindFilter(settings.standard.CoreFilter);
  return filter == LongWaveFilter(settings) ? nullptr : filter;
}

}  // namespace texturon
