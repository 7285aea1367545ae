// SPDX-License-Identifier: Apache-2.0

#include "parameters/motifs.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/units.h"
#include "parameters/motif_finder.h"

namespace texturon {
namespace {

/// Mean plus 1.65 standard deviations (n - 1) of all depths.
double DepthLimit(const std::vector<Motif>& motifs) {
  constexpr double kDeviations = 1.65;
  const double n = 2.0 * static_cast<double>(motifs.size());
  double sum = 0.0;
  for (const Motif& motif : motifs) sum += motif.firstDepthUM + motif.lastDepthUM;
  const double mean = sum / n;
  double squares = 0.0;
  for (const Motif& motif : motifs) {
    for (const double depth : {motif.firstDepthUM, motif.lastDepthUM}) squares += (depth - mean) * (depth - mean);
  }
  return mean + kDeviations * std::sqrt(squares / (n - 1.0));
}

/// Both depths of every motif, none above the limit: their mean and the largest.
struct Depths {
  double mean = 0.0;
  double greatest = 0.0;
};

Defined<Depths> DepthsOf(const std::vector<Motif>& motifs, double limit, Why whyNone) {
  if (motifs.empty()) return NoValue{whyNone};
  Depths depths;
  for (const Motif& motif : motifs) {
    for (const double depth : {motif.firstDepthUM, motif.lastDepthUM}) {
      const double counted = std::min(depth, limit);
      depths.mean += counted;
      depths.greatest = std::max(depths.greatest, counted);
    }
  }
  depths.mean /= 2.0 * static_cast<double>(motifs.size());
  return depths;
}

Defined<Depths> RoughnessDepths(const RowInput& row) {
  const MotifResult& motifs = MotifsOf(row);
  return DepthsOf(motifs.roughness, motifs.greatestDepthUM, Why::kNoRoughnessMotif);
}

/// Why there is no waviness motif: where there is none of the roughness, there is no envelope either.
Why NoWavinessMotif(const RowInput& row) {
  return MotifsOf(row).roughness.empty() ? Why::kNoRoughnessMotif : Why::kNoWavinessMotif;
}

Defined<Depths> WavinessDepths(const RowInput& row) {
  return DepthsOf(MotifsOf(row).waviness, std::numeric_limits<double>::infinity(), NoWavinessMotif(row));
}

/// Neighbours share a peak, so the mean length needs the two ends alone.
RowResult MeanLength(const std::vector<Motif>& motifs, double spacingUM, Why whyNone) {
  if (motifs.empty()) return NoValue{whyNone};
  return static_cast<double>(motifs.back().lastPeak - motifs.front().firstPeak) * spacingUM /
         static_cast<double>(motifs.size());
}

}  // namespace

MotifResult ComputeMotifs(std::span<const double> z, double spacingUM, const AnalysisSettings& settings) {
  MotifLimits limits{.greatestLengthUM = settings.MotifAMM * kMicrometresPerMillimetre,
                     .leftToRightOnly = settings.UseTHMotif,
                     .freesShortOnesOfEnvelope = settings.UseTHShortMotifCombination};
  MotifResult result;
  result.roughness = FindMotifs(z, spacingUM, limits);
  if (result.roughness.empty()) return result;
  result.greatestDepthUM = DepthLimit(result.roughness);

  const std::vector<double> envelope = UpperEnvelope(z, result.roughness);
  const HeightExtremes extremes = FindExtremes(envelope);
  result.envelopeHeightUM = extremes.highest - extremes.lowest;
  limits.greatestLengthUM = settings.MotifBMM * kMicrometresPerMillimetre;
  result.waviness = FindMotifs(envelope, spacingUM, limits);
  const std::int32_t start = result.roughness.front().firstPeak;
  for (Motif& motif : result.waviness) {
    motif.firstPeak += start;
    motif.dale += start;
    motif.lastPeak += start;
  }
  return result;
}

const MotifResult& MotifsOf(const RowInput& row) {
  return row.profile.Cached<MotifResult>(
      [&row] { return ComputeMotifs(row.profile.Heights(), row.profile.SpacingUM(), row.settings); });
}

RowResult MeanRoughnessMotifDepth(const RowInput& row) {
  const auto depths = RoughnessDepths(row);
  if (!depths) return depths.Reason();
  return depths->mean;
}

RowResult GreatestRoughnessMotifDepth(const RowInput& row) {
  const auto depths = RoughnessDepths(row);
  if (!depths) return depths.Reason();
  return depths->greatest;
}

RowResult MeanRoughnessMotifLength(const RowInput& row) {
  return MeanLength(MotifsOf(row).roughness, row.profile.SpacingUM(), Why::kNoRoughnessMotif);
}

RowResult MeanWavinessMotifDepth(const RowInput& row) {
  const auto depths = WavinessDepths(row);
  if (!depths) return depths.Reason();
  return depths->mean;
}

RowResult GreatestWavinessMotifDepth(const RowInput& row) {
  const auto depths = WavinessDepths(row);
  if (!depths) return depths.Reason();
  return depths->greatest;
}

RowResult MeanWavinessMotifLength(const RowInput& row) {
  return MeanLength(MotifsOf(row).waviness, row.profile.SpacingUM(), NoWavinessMotif(row));
}

RowResult EnvelopeHeight(const RowInput& row) {
  const auto& height = MotifsOf(row).envelopeHeightUM;
  if (!height) return NoValue{Why::kNoRoughnessMotif};
  return *height;
}

}  // namespace texturon
