// SPDX-License-Identifier: Apache-2.0

#include "analysis/shape_form_step.h"

#include <memory>
#include <string_view>

#include "settings/nominal_settings.h"
#include "signal/form/profile_extreme.h"

namespace texturon {
namespace {

std::unique_ptr<Progress> OpenOptimization(Prompts& prompts, std::string_view text) {
  return prompts.OpenProgress("Optimization", text);
}

void ShowHowItEnded(const MinimiseResult& search, Prompts& prompts) {
  if (search.lineHitLimit) prompts.ShowMessage("Too many iterations in Brent");
  if (search.stop == MinimiseStop::kIterationLimit) prompts.ShowMessage("Too many interations.");
}

std::string_view AsphereTitle(const AsphereDescription& asphere, const FreeTerms& free) {
  if (free.curvature) return "Optimizing asphere && radius...";
  return asphere.IsPlainSphere() && !free.conic ? "Optimizing radius..." : "Optimizing asphere...";
}

std::string_view FreeFormTitle(bool fixedStart, bool allowsTilt) {
  if (fixedStart) return allowsTilt ? "Optimizing YT..." : "Optimizing Y...";
  return allowsTilt ? "Optimizing XYT..." : "Optimizing XY...";
}

/// Peak or valley that AsphereXPositionMethod names; none when it names none.
std::optional<ExtremeKind> SoughtExtreme(const AnalysisSettings& settings) {
  switch (settings.AsphereXPositionMethod) {
    case kApexAtVertexSide:
      return settings.C_CurvatureMM < 0.0 ? ExtremeKind::kPeak : ExtremeKind::kValley;
    case kApexAtPeak:
      return ExtremeKind::kPeak;
    case kApexAtValley:
      return ExtremeKind::kValley;
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<FixedRadiusFit> RemoveFixedRadius(const FormInput& input, const AnalysisSettings& settings, bool isQuiet,
                                                Prompts& prompts, FormOutput output) {
  double radiusMM = settings.FixedRadiusMM;
  const RadiusDoubt doubt = isQuiet ? RadiusDoubt::kNone : DoubtRadius(input.heights, radiusMM);
  if (doubt != RadiusDoubt::kNone) {
    const bool isSwitched =
        prompts.AskYesNo(doubt == RadiusDoubt::kDataIsConvex ? "Concave geometry selected.  Switch to convex?"
                                                             : "Convex geometry selected.  Switch to concave?");
    if (isSwitched) radiusMM = -radiusMM;
  }
  const auto progress = OpenOptimization(prompts, "Optimizing radius...");
  const FixedRadiusResult result = FitFixedRadius(input, radiusMM, progress.get(), output);
  ShowHowItEnded(result.search, prompts);
  return result.fit;
}

std::optional<AsphereFit> RemoveAsphere(const FormInput& input, const AnalysisSettings& settings, double firstMM,
                                        Prompts& prompts, FormOutput output) {
  const AsphereDescription asphere = DescribeAsphere(settings);
  AsphereFitOptions options;
  options.free = {.x = !settings.AsphereXFixed,
                  .curvature = settings.RadiusMethod == kTermFitted,
                  .conic = settings.ConicMethod == kTermFitted};
  if (const auto extreme = SoughtExtreme(settings)) {
    options.xMM = FindExtremeX(input, settings.LcCutoffMM, *extreme);
    if (!options.xMM) {
      prompts.ShowMessage("Could not filter to find asphere peak/valley.");
      return std::nullopt;
    }
  } else if (settings.AsphereXFixed) {
    options.xMM = settings.AsphereXStartMM - firstMM;
  }
  const auto progress = OpenOptimization(prompts, AsphereTitle(asphere, options.free));
  options.progress = progress.get();
  const AsphereFitResult result = FitAsphere(input, asphere, options, output);
  ShowHowItEnded(result.search, prompts);
  return result.fit;
}

std::optional<FreeFormFit> RemoveFreeForm(const FormInput& input, const AnalysisSettings& settings, Prompts& prompts,
                                          FormOutput output) {
  const auto nominal = DescribeFreeForm(settings);
  if (!nominal) return std::nullopt;
  FreeFormOptions options{.allowsTilt = settings.FreeFormAllowTilt};
  if (!settings.FreeFormIsLeastSqaures) options.merit = ShapeMerit::kLeastAbsolute;
  if (settings.FreeFormFixedStart) options.firstPointXMM = settings.FreeFormFirstDataPointXMM;
  const auto progress =
      OpenOptimization(prompts, FreeFormTitle(settings.FreeFormFixedStart, settings.FreeFormAllowTilt));
  options.progress = progress.get();
  const FreeFormResult result = FitFreeForm(input, *nominal, options, output);
  ShowHowItEnded(result.search, prompts);
  return result.fit;
}

}  // namespace texturon
