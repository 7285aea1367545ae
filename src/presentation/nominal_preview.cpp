// SPDX-License-Identifier: Apache-2.0

#include "presentation/nominal_preview.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "base/elementary.h"
#include "base/units.h"
#include "settings/nominal_settings.h"

namespace texturon {
namespace {

constexpr std::size_t kFitPoints = 1001;

double AtStep(double first, double last, std::size_t i, std::size_t count) {
  return first + (last - first) * static_cast<double>(i) / static_cast<double>(count - 1);
}

/// Heights with a little air above and below, to the next hundredth of their decade; a level shape gets 1 um.
void FitHeights(std::span<const FreeFormPoint> points, double& leastUM, double& mostUM) {
  if (points.empty()) return;
  constexpr double kAir = 0.05;
  const auto [low, high] =
      std::minmax_element(points.begin(), points.end(), [](const auto& a, const auto& b) { return a.zUM < b.zUM; });
  const double air = high->zUM > low->zUM ? kAir * (high->zUM - low->zUM) : 1.0;
  const double step = Pow(10.0, std::floor(Log10(high->zUM - low->zUM + 2.0 * air)) - 2.0);
  leastUM = std::floor((low->zUM - air) / step) * step;
  mostUM = std::ceil((high->zUM + air) / step) * step;
}

}  // namespace

std::vector<FreeFormPoint> AspherePreview(const AnalysisSettings& settings, double firstMM, double lastMM,
                                          std::size_t count) {
  if (!(lastMM > firstMM)) return {};
  const AsphereDescription asphere = DescribeAsphere(settings);
  std::vector<FreeFormPoint> points(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double x = AtStep(firstMM, lastMM, i, count);
    points[i] = {x, AsphereSag(x, {}, asphere) * kMicrometresPerMillimetre};
  }
  return points;
}

std::vector<FreeFormPoint> FreeFormPreview(const AnalysisSettings& settings, std::size_t count) {
  const auto curve = DescribeFreeForm(settings);
  if (!curve) return {};
  std::vector<FreeFormPoint> points(count);
  std::size_t hint = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const double x = AtStep(curve->First(), curve->Last(), i, count);
    points[i] = {x, curve->At(x, hint).height * kMicrometresPerMillimetre};
  }
  return points;
}

void FitAspherePreview(Settings& settings, double recordLengthMM) {
  DisplaySettings& display = settings.display;
  const AnalysisSettings& analysis = settings.analysis;
  const double lengthMM = analysis.AsphereUseClearAperture ? analysis.AsphereClearApertureDiameterMM : recordLengthMM;
  if (lengthMM > 0.0) {
    display.AspherePreviewMinXMM = -0.5 * lengthMM;
    display.AspherePreviewMaxXMM = 0.5 * lengthMM;
  }
  FitHeights(AspherePreview(analysis, display.AspherePreviewMinXMM, display.AspherePreviewMaxXMM, kFitPoints),
             display.AspherePreviewMinYUM, display.AspherePreviewMaxYUM);
}

void FitFreeFormPreview(AnalysisSettings& settings) {
  const std::vector<FreeFormPoint> points = FreeFormPreview(settings, kFitPoints);
  if (points.empty()) return;
  settings.FreeFormPreviewMinXMM = points.front().xMM;
  settings.FreeFormPreviewMaxXMM = points.back().xMM;
  FitHeights(points, settings.FreeFormPreviewMinYUM, settings.FreeFormPreviewMaxYUM);
}

}  // namespace texturon
