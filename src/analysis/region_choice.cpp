// SPDX-License-Identifier: Apache-2.0

#include "analysis/region_choice.h"

#include <algorithm>

#include "analysis/compute_range.h"
#include "base/number_text.h"
#include "base/quantity.h"
#include "base/text.h"
#include "settings/settings_value.h"

namespace texturon {

RegionChoice RegionOf(const Document& document) {
  if (!document.regionSet) return {};
  return {document.regionMode, document.regionStartMM, document.regionEndOffsetMM, document.regionLengthMM};
}

void SetRegion(Document& document, const RegionChoice& region) {
  document.regionSet = true;
  document.regionMode = region.mode;
  document.regionStartMM = region.startMM;
  document.regionEndOffsetMM = region.endOffsetMM;
  document.regionLengthMM = region.lengthMM;
}

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

std::string DescribeRegion(const IndexRange& range, double spacingUM, bool metric) {
  const auto at = [&](std::int32_t steps) { return LengthText(steps * spacingUM * kMillimetresPerMicrometre, metric); };
  return at(range.first) + " to " + at(range.last) + ": " + at(range.last - range.first) + ", " +
         IntegerText(range.count) + " points";
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
