// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/quantity.h"
#include "parameters/edition2021/feature_segments.h"

namespace texturon {

/// A number that is a share of something where a per-cent sign follows it.
struct FeatureLevel {
  double value = 0.0;
  bool isPercent = false;

  friend bool operator==(const FeatureLevel&, const FeatureLevel&) = default;
};

enum class FeatureSignificance : std::uint8_t { kAll, kMostExtreme, kOpen, kClosed };
enum class FeatureStatistic : std::uint8_t { kMean, kMax, kMin, kDeviation, kSum, kShareAbove, kHistogram, kDensity };

/// A feature parameter in its written form,
///
///     FC; type; pruning; significance; attribute; statistic
///
/// type: H hill, D dale, P peak, V pit. pruning: None, Wolfprune, Width, VolS or DevLength with a threshold (local
/// depth in um or percent of Rz; width in mm or percent of the evaluation length; volume in um; line length in mm), or
/// `opt` in its place, the threshold that leaves the most even features. significance: All; Top N or Bot N, the N
/// highest peaks or deepest pits; Open c, Closed c, c in um about the mean line or percent of material ratio.
/// attribute: HDh, PVh, HDw, HDv, HDl, Curvature, Count. statistic: Mean, Max, Min, StdDev, Sum, Perc v, Hist, Density.
struct FeatureParameter {
  bool ofHills = false;
  std::optional<FeatureAttribute> pruning;  ///< none: no pruning
  std::optional<FeatureLevel> threshold;    ///< none: the one that leaves the most even features
  FeatureSignificance significance = FeatureSignificance::kAll;
  std::size_t count = 0;  ///< of the most extreme
  FeatureLevel level;     ///< of open and closed features
  FeatureAttribute attribute = FeatureAttribute::kCount;
  FeatureStatistic statistic = FeatureStatistic::kMean;
  double above = 0.0;  ///< of the share

  Quantity Unit() const;

  friend bool operator==(const FeatureParameter&, const FeatureParameter&) = default;
};

struct FeatureTextResult {
  std::optional<FeatureParameter> feature;
  std::string fault;  ///< a clause that names the piece that is not understood, where there is no feature
};

/// True for a text that begins as a feature parameter does, "FC;", in any case.
bool IsFeatureText(std::string_view text);

/// Reads the written form without a letter; case and blanks do not count.
FeatureTextResult ParseFeature(std::string_view text);

}  // namespace texturon
