// SPDX-License-Identifier: Apache-2.0

#include "analysis/feature_histogram.h"

#include <algorithm>

#include "parameters/edition2021/edition_table.h"
#include "parameters/edition2021/feature_rows.h"

namespace texturon {

std::optional<FeatureHistogram> HistogramOf(const Document& document, const ParameterDef& row) {
  if (row.edition != Edition::k2021) return std::nullopt;
  const EditionName name = ParseEditionName(row.name);
  if (!name.feature || name.feature->statistic != FeatureStatistic::kHistogram) return std::nullopt;
  const ProfileKind kind = name.letter == 'P'   ? ProfileKind::kPrimary
                           : name.letter == 'W' ? ProfileKind::kWaviness
                                                : ProfileKind::kRoughness;
  if (!document.profiles.Has(kind)) return std::nullopt;
  const Profile view = document.profiles.View(kind);
  const ParameterProfile profile(name.letter, view.Heights(), {.spacingUM = view.spacingUM});
  const auto attributes = FeatureAttributes({profile, document.AnalysedBy()}, *name.feature);
  if (!attributes || attributes->empty()) return std::nullopt;

  constexpr std::size_t kClasses = 10;
  const auto [least, largest] = std::minmax_element(attributes->begin(), attributes->end());
  const std::size_t classes = *largest > *least ? kClasses : 1;
  const double width = (*largest - *least) / static_cast<double>(classes);
  FeatureHistogram histogram{.edges = {}, .counts = std::vector<std::int32_t>(classes)};
  for (std::size_t i = 0; i < classes; ++i) histogram.edges.push_back(*least + static_cast<double>(i) * width);
  histogram.edges.push_back(*largest);
  for (const double attribute : *attributes) {
    const auto above = std::upper_bound(histogram.edges.begin(), histogram.edges.end() - 1, attribute);
    ++histogram.counts[static_cast<std::size_t>(above - histogram.edges.begin()) - 1];
  }
  return histogram;
}

}  // namespace texturon
