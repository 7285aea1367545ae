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

std::optional<double> MeanElementWidth(const RowInput& row) {
  const auto statistics = StatisticsFor(row, ElementRow::kWidth);
  if (!statistics) return std::nullopt;
  return statistics->meanWidthPoints * row.profile.SpacingMM();
}

std::optional<double> MeanElementHeight(const RowInput& row) {
  const auto statistics = StatisticsFor(row, ElementRow::kHeight);
  if (!statistics) return std::nullopt;
  return statistics->meanHeightUM;
}

std::optional<double> GreatestElementHeight(const RowInput& row) {
  const auto statistics = StatisticsFor(row, ElementRow::kHeight);
  if (!statistics) return std::nullopt;
  return statistics->greatestHeightUM;
}

std::optional<double> DeviationOfElementWidths(const RowInput& row) {
  const auto statistics = StatisticsFor(row, ElementRow::kWidth);
  if (!statistics || !statistics->widthDeviationPoints) return std::nullopt;
  return *statistics->widthDeviationPoints * row.profile.SpacingMM();
}

}  // namespace texturon
