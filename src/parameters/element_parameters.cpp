// SPDX-License-Identifier: Apache-2.0

#include "parameters/element_parameters.h"

namespace texturon {
namespace {

std::optional<ElementStatistics> StatisticsFor(const RowInput& row, ElementRow kind) {
  const ElementPercentages percent = DiscriminationOf(row.profile.Letter(), kind, row.settings);
  const auto& elements = row.profile.Elements(percent.height, percent.width);
  if (!elements) return std::nullopt;
  return SummariseElements(*elements);
}

}  // namespace

ElementPercentages DiscriminationOf(char letter, ElementRow kind, const AnalysisSettings& settings) {
  switch (letter) {
    case 'R':
      return {settings.RcRzPercent, settings.RcSamplingLengthPercent};
    case 'W':
      if (kind == ElementRow::kHeight) return {settings.WcWzPercent, settings.WcSamplingLengthPercent};
      return {settings.WsmWzPercent, settings.WsmSamplingLengthPercent};
    default:
      return {settings.PsmPzPercent, settings.PsmSamplingLengthPercent};
  }
}

RowResult MeanElementWidth(const RowInput& row) {
  const auto statistics = StatisticsFor(row, ElementRow::kWidth);
  if (!statistics) return std::nullopt;
  return statistics->meanWidthPoints * row.profile.SpacingMM();
}

RowResult MeanElementHeight(const RowInput& row) {
  const auto statistics = StatisticsFor(row, ElementRow::kHeight);
  if (!statistics) return std::nullopt;
  return statistics->meanHeightUM;
}

RowResult GreatestElementHeight(const RowInput& row) {
  const auto statistics = StatisticsFor(row, ElementRow::kHeight);
  if (!statistics) return std::nullopt;
  return statistics->greatestHeightUM;
}

RowResult DeviationOfElementWidths(const RowInput& row) {
  const auto statistics = StatisticsFor(row, ElementRow::kWidth);
  if (!statistics || !statistics->widthDeviationPoints) return std::nullopt;
  return *statistics->widthDeviationPoints * row.profile.SpacingMM();
}

RowResult MeanElementHeightOfLengths(const RowInput& row) {
  const ElementPercentages percent = DiscriminationOf(row.profile.Letter(), ElementRow::kHeight, row.settings);
  const auto& elements = row.profile.Elements(percent.height, percent.width);
  const auto lengths = DivideIntoSamplingLengths(row.profile.Heights().size(), row.profile.SpacingMM(),
                                                 row.profile.SamplingLengthMM(), ShortProfile::kIsOneSamplingLength);
  if (!elements || !lengths) return std::nullopt;
  double sum = 0.0;
  std::size_t counted = 0;
  auto element = elements->begin();
  for (std::size_t k = 0; k < lengths->count; ++k) {
    const auto begin = static_cast<double>(k * lengths->pointsEach);
    const auto end = static_cast<double>((k + 1) * lengths->pointsEach - 1);
    double heights = 0.0;
    std::size_t within = 0;
    for (; element != elements->end() && element->startPoints <= end; ++element) {
      if (element->startPoints < begin || element->startPoints + element->widthPoints > end) continue;
      heights += element->heightUM;
      ++within;
    }
    if (within == 0) continue;
    sum += heights / static_cast<double>(within);
    ++counted;
  }
  if (counted == 0) return std::nullopt;
  return sum / static_cast<double>(counted);
}

}  // namespace texturon
