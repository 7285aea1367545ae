// SPDX-License-Identifier: Apache-2.0

#include "parameters/element_parameters.h"

#include "parameters/letter_settings.h"

namespace texturon {
namespace {

using Kind = LetterSettings::Discrimination LetterSettings::*;

const Defined<std::vector<ProfileElement>>& ElementsFor(const RowInput& row, Kind kind) {
  const LetterSettings::Discrimination& discrimination = SettingsOfLetter(row.profile.Letter()).*kind;
  return row.profile.Elements(row.settings.*discrimination.height, row.settings.*discrimination.width);
}

Defined<ElementStatistics> StatisticsFor(const RowInput& row, Kind kind) {
  const auto& elements = ElementsFor(row, kind);
  if (!elements) return elements.Reason();
  const auto statistics = SummariseElements(*elements);
  if (!statistics) return NoValue{Why::kNoElement};
  return *statistics;
}

}  // namespace

RowResult MeanElementWidth(const RowInput& row) {
  const auto statistics = StatisticsFor(row, &LetterSettings::widths);
  if (!statistics) return statistics.Reason();
  return statistics->meanWidthPoints * row.profile.SpacingMM();
}

RowResult MeanElementHeight(const RowInput& row) {
  const auto statistics = StatisticsFor(row, &LetterSettings::heights);
  if (!statistics) return statistics.Reason();
  return statistics->meanHeightUM;
}

RowResult GreatestElementHeight(const RowInput& row) {
  const auto statistics = StatisticsFor(row, &LetterSettings::heights);
  if (!statistics) return statistics.Reason();
  return statistics->greatestHeightUM;
}

RowResult DeviationOfElementWidths(const RowInput& row) {
  const auto statistics = StatisticsFor(row, &LetterSettings::widths);
  if (!statistics) return statistics.Reason();
  if (!statistics->widthDeviationPoints) return NoValue{Why::kFewElements, {2.0, 1.0}};
  return *statistics->widthDeviationPoints * row.profile.SpacingMM();
}

RowResult MeanElementHeightOfLengths(const RowInput& row) {
  const auto& elements = ElementsFor(row, &LetterSettings::heights);
  const auto lengths = DivideIntoSamplingLengths(row.profile.Heights().size(), row.profile.SpacingMM(),
                                                 row.profile.SamplingLengthMM(), ShortProfile::kIsOneSamplingLength);
  if (!elements) return elements.Reason();
  if (!lengths) return row.profile.WhyNotDivided(row.profile.SamplingLengthMM());
  if (elements->empty()) return NoValue{Why::kNoElement};
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
  if (counted == 0) return NoValue{Why::kNoElementWithin};
  return sum / static_cast<double>(counted);
}

}  // namespace texturon
