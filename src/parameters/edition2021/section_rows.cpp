// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/section_rows.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/units.h"
#include "parameters/swept_windows.h"

namespace texturon {
namespace {

struct SharedSections {
  Defined<SectionHeights> heights;
};

struct SharedElements {
  std::vector<CrossingElement> elements;
};

RowResult OfSections(const EditionInput& row, double (*value)(const SectionHeights&)) {
  const Defined<SectionHeights>& heights = SectionHeightsOf(row);
  if (!heights) return heights.Reason();
  return value(*heights);
}

/// The elements of a profile, or why there are none.
Defined<std::span<const CrossingElement>> ElementsOf(const EditionInput& row) {
  const Defined<SectionHeights>& heights = SectionHeightsOf(row);
  if (!heights) return heights.Reason();
  const auto make = [&]() -> SharedElements {
    const StandardSettings& standard = row.Standard();
    const PartThresholds thresholds{standard.HillThresholdPercent * 0.01 * heights->peak,
                                    standard.DaleThresholdPercent * 0.01 * heights->pit};
    return {FindCrossingElements(row.profile.Heights(), thresholds)};
  };
  const std::span<const CrossingElement> elements = row.profile.Cached<SharedElements>(make).elements;
  if (elements.empty()) return NoValue{Why::kNoCrossingElement};
  return elements;
}

/// The mean of a field of the elements. Lengths are in points.
double MeanOf(std::span<const CrossingElement> elements, double CrossingElement::*field) {
  double sum = 0.0;
  for (const CrossingElement& element : elements) sum += element.*field;
  return sum / static_cast<double>(elements.size());
}

RowResult Mean(const EditionInput& row, double CrossingElement::*field, double unit) {
  const auto elements = ElementsOf(row);
  if (!elements) return elements.Reason();
  return MeanOf(*elements, field) * unit;
}

RowResult Greatest(const EditionInput& row, double CrossingElement::*field, double unit) {
  const auto elements = ElementsOf(row);
  if (!elements) return elements.Reason();
  double greatest = 0.0;
  for (const CrossingElement& element : *elements) greatest = std::max(greatest, element.*field);
  return greatest * unit;
}

RowResult Deviation(const EditionInput& row, double CrossingElement::*field, double unit) {
  const auto elements = ElementsOf(row);
  if (!elements) return elements.Reason();
  const auto n = static_cast<double>(elements->size());
  if (elements->size() < 2) return NoValue{Why::kFewCrossingElements, {2.0, n}};
  const double mean = MeanOf(*elements, field);
  double squares = 0.0;
  for (const CrossingElement& element : *elements) squares += (element.*field - mean) * (element.*field - mean);
  return std::sqrt(squares / (n - 1.0)) * unit;
}

/// The section length: that of the stated evaluation length, otherwise that of the profile letter.
double SectionLengthMM(const EditionInput& row) {
  const StandardSettings& standard = row.Standard();
  const bool isStated = standard.EvaluationLengthMM > 0.0 && standard.Sections > 0 && row.profile.Letter() != 'P';
  return isStated ? standard.EvaluationLengthMM / standard.Sections : row.profile.SamplingLengthMM();
}

}  // namespace

const Defined<SectionHeights>& SectionHeightsOf(const EditionInput& row) {
  const auto make = [&row]() -> SharedSections {
    const std::span<const double> z = row.profile.Heights();
    const auto sections = static_cast<std::size_t>(std::max(row.Standard().Sections, 0));
    const auto means = MeanSectionHeights(z, FindCrossingParts(z), sections);
    if (!means) {
      return {NoValue{Why::kFewForSections, {static_cast<double>(sections), static_cast<double>(z.size())}}};
    }
    return {*means};
  };
  return row.profile.Cached<SharedSections>(make).heights;
}

RowResult MeanSectionPeak(const EditionInput& row) {
  return OfSections(row, [](const SectionHeights& heights) { return heights.peak; });
}

RowResult MeanSectionPit(const EditionInput& row) {
  return OfSections(row, [](const SectionHeights& heights) { return heights.pit; });
}

RowResult MeanSectionHeight(const EditionInput& row) {
  return OfSections(row, [](const SectionHeights& heights) { return heights.peak + heights.pit; });
}

RowResult GreatestWindowHeight(const EditionInput& row) {
  const std::span<const double> z = row.profile.Heights();
  const double lengthMM = row.Argument(0, SectionLengthMM(row));
  const auto steps = StepsInLength(lengthMM, row.profile.SpacingUM());
  if (steps < 1) return NoValue{Why::kShortWindow, {lengthMM, row.profile.SpacingUM()}};
  // It spans the length, as that of Wseg, a point more than a section has; one as long as the record has no such point.
  const std::size_t points = static_cast<std::size_t>(steps) + (static_cast<std::size_t>(steps) == z.size() ? 0 : 1);
  if (points > z.size()) return NoValue{Why::kLongWindow, {lengthMM, row.LengthMM()}};
  double greatest = 0.0;
  SweepWindows(
      z.size(), points,
      [z](std::size_t i, std::size_t) {
        return HeightExtremes{z[i], z[i]};
      },
      [](const HeightExtremes& a, const HeightExtremes& b) {
        return HeightExtremes{std::max(a.highest, b.highest), std::min(a.lowest, b.lowest)};
      },
      [&](std::size_t, const HeightExtremes& e) { greatest = std::max(greatest, e.highest - e.lowest); });
  return greatest;
}

RowResult MeanElementSpacing(const EditionInput& row) {
  return Mean(row, &CrossingElement::width, row.profile.SpacingMM());
}

RowResult GreatestElementSpacing(const EditionInput& row) {
  return Greatest(row, &CrossingElement::width, row.profile.SpacingMM());
}

RowResult DeviationOfSpacings(const EditionInput& row) {
  return Deviation(row, &CrossingElement::width, row.profile.SpacingMM());
}

RowResult MeanHeightOfElements(const EditionInput& row) {
  return Mean(row, &CrossingElement::height, 1.0);
}

RowResult GreatestHeightOfElements(const EditionInput& row) {
  return Greatest(row, &CrossingElement::height, 1.0);
}

RowResult DeviationOfElementHeights(const EditionInput& row) {
  return Deviation(row, &CrossingElement::height, 1.0);
}

RowResult ElementsPerLength(const EditionInput& row) {
  constexpr double kMillimetresPerCentimetre = 10.0;
  const RowResult spacing = MeanElementSpacing(row);
  if (!spacing) return spacing.Reason();
  return kMillimetresPerCentimetre / *spacing;
}

}  // namespace texturon
