// SPDX-License-Identifier: Apache-2.0

#include "analysis/region_choice.h"

#include <algorithm>

#include "analysis/compute_range.h"
#include "base/number_text.h"
#include "base/quantity.h"
#include "base/text.h"
#include "base/units.h"
#include "record/profile_set.h"
#include "settings/settings_value.h"

namespace texturon {

std::optional<IndexRange> ResolveRegion(const RegionChoice& region, std::int32_t pointCount, double spacingUM) {
  const std::int64_t n = pointCount;
  const std::int64_t start = StepsInLength(region.startMM, spacingUM);
  const std::int64_t fromEnd = StepsInLength(region.endOffsetMM, spacingUM);
  const std::int64_t length = StepsInLength(region.lengthMM, spacingUM);
  std::int64_t first = start;
  std::int64_t last = n - fromEnd;
  switch (region.mode) {
    case kFromStart:
      last = n - 1;
      break;
    case kStartAndLength:
      last = start + length;
      break;
    case kUpToEndOffset:
      first = 0;
      break;
    case kLengthUpToEndOffset:
      first = n - fromEnd - length;
      break;
    default:
      break;
  }
  const IndexRange range =
      IndexRange::FromEnds(std::clamp<std::int64_t>(first, 0, n - 1), std::clamp<std::int64_t>(last, 0, n - 1));
  if (range.last < range.first + kLeastSteps) return std::nullopt;
  return range;
}

std::string DescribeStretch(const IndexRange& range, double recordSpacingUM, double spacingUM, bool metric) {
  const auto text = [metric](double lengthUM) { return LengthText(lengthUM * kMillimetresPerMicrometre, metric); };
  return IntegerText(range.count) + " points = " + text(LengthOfPoints(range.count, spacingUM)) + ", from " +
         text(range.first * recordSpacingUM) + " to " + text(range.last * recordSpacingUM);
}

LengthEntry ReadRegionLength(std::string_view text, double recordMM, bool metric) {
  const ReadSettingResult read = ReadSetting(SettingType::kNumber, TrimBlanks(text));
  if (!read.fault.empty()) return {0.0, Quoted(text) + " " + std::string(read.fault)};
  const double lengthMM = kLengthMM.FromShown(std::get<double>(read.value), metric);
  if (lengthMM >= 0.0 && lengthMM <= recordMM) return {lengthMM, {}};
  return {0.0, "Must be from 0 to " + RegionLengthText(recordMM, metric)};
}

std::string RegionLengthText(double lengthMM, bool metric) {
  // More digits would only show the conversion.
  constexpr int kDecimals = 6;
  const std::string text = ShownNumber(kLengthMM, lengthMM, metric, {kDecimals, kDecimals});
  return ShortestText(ParseDouble(text).value);
}

}  // namespace texturon
