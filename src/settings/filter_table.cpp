// SPDX-License-Identifier: Apache-2.0

#include "settings/filter_table.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

template <typename Condition>
const FilterRow* FirstWith(Condition condition) {
  const auto* const found = std::find_if(kFilterTable.begin(), kFilterTable.end(), condition);
  return found == kFilterTable.end() ? nullptr : found;
}

std::string EndingOf(const RegressionResult& result) {
  const std::string passes = "The robust regression filter ended after " + IntegerText(result.passes) +
                             (result.passes == 1 ? " pass: " : " passes: ");
  switch (result.stop) {
    case RegressionStop::kNoScale:
      return passes + "half of the points lie on its mean line, so that no weights can be made of their distances.";
    case RegressionStop::kSingular:
      return passes +
             "a point has fewer than three points with weight within 2.5 cut-offs. The last mean line is used.";
    case RegressionStop::kTooLong:
      return passes + "too many points have next to no weight around them. The last mean line is used.";
    case RegressionStop::kPassLimit:
      return passes + "the limit of its weights has not settled. The last mean line is used.";
    case RegressionStop::kConverged:
    case RegressionStop::kCancelled:
    case RegressionStop::kFailed:
      break;
  }
  return {};
}

}  // namespace

FilterRange RunRegression(std::span<const double> z, std::span<double> w, const FilterSetup& setup) {
  const RegressionResult result = RobustRegressionFilter(z, w, setup.spacingUM, setup.cutoffMM, setup.progress);
  if (setup.ending != nullptr) *setup.ending = EndingOf(result);
  return result.range;
}

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
