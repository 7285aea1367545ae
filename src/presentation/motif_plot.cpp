// SPDX-License-Identifier: Apache-2.0

#include "presentation/motif_plot.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "base/units.h"

namespace texturon {
namespace {

using Point = MotifPlot::Point;
using Line = MotifPlot::Line;

/// Points of [first, end) by `at`, the lowest and highest of each of `columns` parts and both ends where there are
/// more.
template <typename At>
Line Thin(std::size_t first, std::size_t end, std::size_t columns, const At& at) {
  Line line;
  const std::size_t count = end - first;
  if (count <= 2 * columns + 2) {
    for (std::size_t i = first; i < end; ++i) line.push_back(at(i));
    return line;
  }
  line.push_back(at(first));
  for (std::size_t column = 0; column < columns; ++column) {
    const std::size_t begin = first + count * column / columns;
    const std::size_t stop = first + count * (column + 1) / columns;
    std::size_t lowest = begin;
    std::size_t highest = begin;
    for (std::size_t i = begin; i < stop; ++i) {
      const double height = at(i).zUM;
      if (height < at(lowest).zUM) lowest = i;
      if (height > at(highest).zUM) highest = i;
    }
    line.push_back(at(std::min(lowest, highest)));
    line.push_back(at(std::max(lowest, highest)));
  }
  line.push_back(at(end - 1));
  return line;
}

/// The record's samples in a stretch, as far as they have a primary profile, one more at each end.
std::pair<std::int32_t, std::int32_t> SamplesIn(const Profile& profile, double fromMM, double toMM) {
  const double perMM = kMicrometresPerMillimetre / profile.spacingUM;
  const auto inside = [&](double place) {
    return std::clamp(RoundToIndex(place), profile.range.first, profile.range.last);
  };
  return {inside(std::floor(fromMM * perMM)), inside(std::ceil(toMM * perMM))};
}

/// Motifs that reach into a stretch of samples.
std::span<const Motif> MotifsIn(std::span<const Motif> motifs, std::pair<std::int32_t, std::int32_t> samples) {
  const auto begin = std::partition_point(motifs.begin(), motifs.end(),
                                          [&](const Motif& motif) { return motif.lastPeak < samples.first; });
  const auto end =
      std::partition_point(begin, motifs.end(), [&](const Motif& motif) { return motif.firstPeak <= samples.second; });
  return {begin, end};
}

}  // namespace

MotifPlot MotifPlotOf(const Document& document, double fromMM, double toMM, std::size_t columns) {
  MotifPlot plot;
  if (!document.profiles.primaryRange) return plot;
  const Profile primary = document.profiles.View(ProfileKind::kPrimary);
  const double step = primary.spacingUM * kMillimetresPerMicrometre;
  const auto sample = [&](std::int32_t i) { return Point{i * step, primary.samples[static_cast<std::size_t>(i)]}; };
  const auto samples = SamplesIn(primary, fromMM, toMM);
  plot.profile = Thin(static_cast<std::size_t>(samples.first), static_cast<std::size_t>(samples.second) + 1, columns,
                      [&](std::size_t i) { return sample(static_cast<std::int32_t>(i)); });

  const auto zigzag = [&](std::span<const Motif> motifs) {
    return Thin(0, motifs.empty() ? 0 : 2 * motifs.size() + 1, columns, [&](std::size_t i) {
      if (i == 2 * motifs.size()) return sample(motifs.back().lastPeak);
      const Motif& motif = motifs[i / 2];
      const Point peak = sample(motif.firstPeak);
      return i % 2 == 0 ? peak : Point{motif.dale * step, peak.zUM - motif.firstDepthUM};
    });
  };
  const std::span<const Motif> roughness = MotifsIn(document.profiles.roughnessMotifs, samples);
  const std::span<const Motif> waviness = MotifsIn(document.profiles.wavinessMotifs, samples);
  plot.roughness = zigzag(roughness);
  plot.waviness = zigzag(waviness);
  plot.envelope = Thin(0, roughness.empty() ? 0 : roughness.size() + 1, columns, [&](std::size_t i) {
    return sample(i == roughness.size() ? roughness.back().lastPeak : roughness[i].firstPeak);
  });
  plot.isThinned = 2 * roughness.size() + 1 > 2 * columns + 2;
  return plot;
}

}  // namespace texturon
