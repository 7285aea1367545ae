// SPDX-License-Identifier: Apache-2.0

#include "presentation/probability_plot.h"

#include <algorithm>

#include "base/number_text.h"
#include "signal/normal_distribution.h"

namespace texturon {
namespace {

using Region = ProbabilityPlot::Region;
using Segment = ProbabilityPlot::Segment;

/// Ratios of 0 and 100 % are infinitely far away; the curve is not.
Region RegionBetween(double fromPercent, double toPercent, double end) {
  const auto place = [end](double percent) {
    return std::clamp(NormalQuantile(std::clamp(percent / 100.0, 0.0, 1.0)), -end, end);
  };
  return {place(fromPercent), place(toPercent)};
}

std::optional<Segment> SegmentOf(const std::optional<ProbabilityLine>& line, const Region& region,
                                 const std::optional<double>& crossing) {
  if (!line) return std::nullopt;
  const double from = std::min(region.from, crossing.value_or(region.from));
  const double to = std::max(region.to, crossing.value_or(region.to));
  return Segment{from, line->interceptUM + line->slopeUM * from, to, line->interceptUM + line->slopeUM * to};
}

}  // namespace

ProbabilityPlot ProbabilityPlotOf(const Document& document) {
  ProbabilityPlot plot;
  const auto& fit = document.results.probability;
  const std::size_t n = document.results.roughnessCurve.heightsUM.size();
  if (!fit || !fit->limits || n < 2) return plot;
  const double end = ProbabilityAbscissa(n - 1, n);
  std::optional<double> crossing;
  if (fit->crossingPercent) crossing = std::clamp(NormalQuantile(*fit->crossingPercent / 100.0), -end, end);
  plot.plateauRegion = RegionBetween(fit->limits->upl, fit->limits->lpl, end);
  plot.valleyRegion = RegionBetween(fit->limits->uvl, fit->limits->lvl, end);
  plot.plateau = SegmentOf(fit->plateau, *plot.plateauRegion, crossing);
  plot.valley = SegmentOf(fit->valley, *plot.valleyRegion, crossing);
  return plot;
}

std::array<PercentTick, 9> PercentTicks() {
  constexpr std::string_view kTexts[] = {"0.1", "1", "10", "30", "50", "70", "90", "99", "99.9"};
  std::array<PercentTick, 9> ticks;
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    ticks[i] = {NormalQuantile(ParseDouble(kTexts[i]).value / 100.0), kTexts[i]};
  }
  return ticks;
}

}  // namespace texturon
