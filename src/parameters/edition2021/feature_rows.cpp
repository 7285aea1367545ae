// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/feature_rows.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <tuple>

#include "base/units.h"
#include "parameters/edition2021/material_rows.h"
#include "parameters/edition2021/section_rows.h"

namespace texturon {
namespace {

/// What the feature rows of a profile share.
struct FeatureCache {
  using Key = std::tuple<bool, int, double>;  // hills, attribute of the pruning, threshold

  std::vector<double> upsideDown;
  mutable std::map<Key, std::vector<Dale>> pruned;
};

const FeatureCache& CacheOf(const EditionInput& row) {
  return row.profile.Cached<FeatureCache>([&row] {
    FeatureCache cache;
    for (const double height : row.profile.Heights()) cache.upsideDown.push_back(-height);
    return cache;
  });
}

DaleMeasure MeasureOf(const EditionInput& row, bool ofHills) {
  return {ofHills ? std::span<const double>(CacheOf(row).upsideDown) : row.profile.Heights(), row.profile.SpacingUM()};
}

constexpr int kNoPruning = -1;

const std::vector<Dale>& DalesOf(const EditionInput& row, bool ofHills, int pruning, double threshold) {
  const FeatureCache& cache = CacheOf(row);
  const auto [entry, isNew] = cache.pruned.try_emplace({ofHills, pruning, threshold});
  if (!isNew) return entry->second;
  if (pruning == kNoPruning) {
    entry->second = FindDales(ofHills ? std::span<const double>(cache.upsideDown) : row.profile.Heights());
  } else {
    entry->second = DalesOf(row, ofHills, kNoPruning, 0.0);
    PruneDales(entry->second, MeasureOf(row, ofHills), static_cast<FeatureAttribute>(pruning), threshold);
  }
  return entry->second;
}

/// A pruning threshold in the attribute's own unit.
double ThresholdOf(const EditionInput& row, const FeatureParameter& feature) {
  if (!feature.threshold) {
    return EvenestThreshold(DalesOf(row, feature.ofHills, kNoPruning, 0.0), MeasureOf(row, feature.ofHills),
                            *feature.pruning);
  }
  if (!feature.threshold->isPercent) return feature.threshold->value;
  const double share = feature.threshold->value * 0.01;
  if (*feature.pruning == FeatureAttribute::kWidth) return share * row.LengthMM();
  const Defined<SectionHeights>& heights = SectionHeightsOf(row);
  return heights ? share * (heights->peak + heights->pit) : 0.0;
}

/// Indices of the `count` dales with the lowest pits, in order.
std::vector<std::size_t> MostExtreme(std::span<const Dale> dales, std::size_t count) {
  std::vector<std::size_t> order(dales.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto kept = static_cast<std::ptrdiff_t>(std::min(count, order.size()));
  std::partial_sort(order.begin(), order.begin() + kept, order.end(), [dales](std::size_t a, std::size_t b) {
    const double heightA = dales[a].pit.height;
    const double heightB = dales[b].pit.height;
    return heightA != heightB ? heightA < heightB : a < b;
  });
  order.resize(static_cast<std::size_t>(kept));
  std::sort(order.begin(), order.end());
  return order;
}

/// The dales that count, by index.
Defined<std::vector<std::size_t>> SignificantOnes(const EditionInput& row, const FeatureParameter& feature,
                                                  std::span<const Dale> dales) {
  if (feature.significance == FeatureSignificance::kMostExtreme) return MostExtreme(dales, feature.count);
  std::vector<std::size_t> kept;
  double level = feature.level.value;
  if (feature.significance != FeatureSignificance::kAll && feature.level.isPercent) {
    const RowResult height = HeightAtMaterialRatio(row.profile.SortedHeights(), level);
    if (!height) return height.Reason();
    level = *height;
  }
  if (feature.ofHills) level = -level;
  for (std::size_t i = 0; i < dales.size(); ++i) {
    const double lowerPeak = dales[i].Lower().height;
    bool counts = true;
    if (feature.significance == FeatureSignificance::kOpen) counts = lowerPeak <= level;
    if (feature.significance == FeatureSignificance::kClosed) {
      counts = lowerPeak >= level && dales[i].pit.height <= level;
    }
    if (counts) kept.push_back(i);
  }
  return kept;
}

double SumOf(std::span<const double> values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

RowResult DeviationOf(std::span<const double> values) {
  const auto n = static_cast<double>(values.size());
  if (values.size() < 2) return NoValue{Why::kFewFeatures, {2.0, n}};
  const double mean = SumOf(values) / n;
  double squares = 0.0;
  for (const double value : values) squares += (value - mean) * (value - mean);
  return std::sqrt(squares / (n - 1.0));
}

/// A named parameter.
FeatureParameter Named(const EditionInput& row, bool ofHills, FeatureAttribute attribute, FeatureStatistic statistic) {
  return {.ofHills = ofHills,
          .pruning = FeatureAttribute::kLocalDepth,
          .threshold = FeatureLevel{row.Standard().PruningPercent, true},
          .attribute = attribute,
          .statistic = statistic};
}

RowResult MeanOfFive(const EditionInput& row, bool ofHills) {
  FeatureParameter feature = Named(row, ofHills, FeatureAttribute::kHeight, FeatureStatistic::kMean);
  feature.significance = FeatureSignificance::kMostExtreme;
  feature.count = static_cast<std::size_t>(std::max(row.Standard().FeatureCount, 1));
  return FeatureValue(row, feature);
}

}  // namespace

const std::vector<Dale>& PrunedDales(const EditionInput& row, const FeatureParameter& feature) {
  if (!feature.pruning) return DalesOf(row, feature.ofHills, kNoPruning, 0.0);
  return DalesOf(row, feature.ofHills, static_cast<int>(*feature.pruning), ThresholdOf(row, feature));
}

Defined<std::vector<double>> FeatureAttributes(const EditionInput& row, const FeatureParameter& feature) {
  if (DalesOf(row, feature.ofHills, kNoPruning, 0.0).empty()) return NoValue{Why::kNoFeature};
  const bool isByRz = feature.pruning && *feature.pruning != FeatureAttribute::kWidth && feature.threshold &&
                      feature.threshold->isPercent;
  if (const auto& heights = SectionHeightsOf(row); isByRz && !heights) return heights.Reason();
  const std::vector<Dale>& dales = PrunedDales(row, feature);
  const auto kept = SignificantOnes(row, feature, dales);
  if (!kept) return kept.Reason();
  const DaleMeasure measure = MeasureOf(row, feature.ofHills);
  const double sign = feature.ofHills && feature.attribute == FeatureAttribute::kCurvature ? -1.0 : 1.0;
  std::vector<double> attributes;
  for (const std::size_t i : *kept) attributes.push_back(sign * measure.Of(dales[i], feature.attribute));
  return attributes;
}

RowResult FeatureValue(const EditionInput& row, const FeatureParameter& feature) {
  const Defined<std::vector<double>> attributes = FeatureAttributes(row, feature);
  if (!attributes) return attributes.Reason();
  const std::span<const double> values = *attributes;
  const auto n = static_cast<double>(values.size());
  constexpr double kCentimetresPerMillimetre = 0.1;
  switch (feature.statistic) {
    case FeatureStatistic::kSum:
      return SumOf(values);
    case FeatureStatistic::kDensity:
      return SumOf(values) / (row.LengthMM() * kCentimetresPerMillimetre);
    case FeatureStatistic::kHistogram:
      return NoValue{Why::kManyValues};
    case FeatureStatistic::kDeviation:
      return DeviationOf(values);
    default:
      break;
  }
  if (values.empty()) return NoValue{Why::kNoFeatureLeft};
  switch (feature.statistic) {
    case FeatureStatistic::kMax:
      return *std::max_element(values.begin(), values.end());
    case FeatureStatistic::kMin:
      return *std::min_element(values.begin(), values.end());
    case FeatureStatistic::kShareAbove:
      return static_cast<double>(std::count_if(values.begin(), values.end(),
                                               [&feature](double value) { return value > feature.above; })) /
             n;
    default:
      return SumOf(values) / n;
  }
}

RowResult PeakDensity(const EditionInput& row) {
  return FeatureValue(row, Named(row, true, FeatureAttribute::kCount, FeatureStatistic::kDensity));
}

RowResult PitDensity(const EditionInput& row) {
  return FeatureValue(row, Named(row, false, FeatureAttribute::kCount, FeatureStatistic::kDensity));
}

RowResult MeanPeakCurvature(const EditionInput& row) {
  return FeatureValue(row, Named(row, true, FeatureAttribute::kCurvature, FeatureStatistic::kMean));
}

RowResult MeanPitCurvature(const EditionInput& row) {
  return FeatureValue(row, Named(row, false, FeatureAttribute::kCurvature, FeatureStatistic::kMean));
}

RowResult FivePeakHeight(const EditionInput& row) {
  return MeanOfFive(row, true);
}

RowResult FivePitDepth(const EditionInput& row) {
  return MeanOfFive(row, false);
}

RowResult TenPointFeatureHeight(const EditionInput& row) {
  const RowResult peaks = FivePeakHeight(row);
  if (!peaks) return peaks.Reason();
  const RowResult pits = FivePitDepth(row);
  if (!pits) return pits.Reason();
  return *peaks + *pits;
}

}  // namespace texturon
