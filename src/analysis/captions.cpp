// SPDX-License-Identifier: Apache-2.0

#include "analysis/captions.h"

#include "base/number_text.h"
#include "base/quantity.h"
#include "signal/filter/robust_filter.h"

namespace texturon {
namespace {

/// Writes the geometry of each form in the units in force.
class CaptionWriter {
public:
  CaptionWriter(bool metric, const AnalysisSettings& settings) : metric_(metric), settings_(settings) {}

  std::string operator()(const MeanFit& fit) const { return "Form: Datum   (Mean: " + Height(fit.meanUM) + ")"; }
  std::string operator()(const LineFit& fit) const { return Line(fit.slope, fit.interceptUM); }
  std::string operator()(const ArcFit& fit) const {
    return "Form: LS Arc   (Radius: " + Length(fit.radiusUM * kMillimetresPerMicrometre) + ")";
  }
  std::string operator()(const PolynomialFit& fit) const {
    switch (fit.coefficients.size()) {
      case 1:
        return "Form: Datum";
      case 2:
        return Line(fit.coefficients[1], fit.coefficients[0]);
      case 3:
        return "Form: Parabola";
      default:
        return "Form: Polynomial   (Order: " + IntegerText(static_cast<std::int64_t>(fit.coefficients.size()) - 1) +
               ")";
    }
  }
  std::string operator()(const FilterFormFit& /*fit*/) const {
    return "Form: Spline Gaussian Filter (Cutoff: " + Length(settings_.FormFilterCutoffMM) + ")";
  }
  std::string operator()(const FixedRadiusFit& fit) const {
    return "Form: Fixed Radius   (Radius: " + Length(fit.radiusUM * kMillimetresPerMicrometre) + ")";
  }
  std::string operator()(const AsphereFit& fit) const {
    return "Form: Asphere   (Radius: " + Length(fit.RadiusMM()) + "  Tilt: " + FixedText(fit.TiltDegrees(), 3) +
           "\xB0)";
  }
  std::string operator()(const FreeFormFit& fit) const {
    std::string text = fit.hasFixedStart ? "Free Form (Fixed Start" : "Free Form (dX: " + Length(fit.shiftXMM);
    text += "  dY: " + Length(fit.shiftYMM);
    if (fit.allowsTilt) text += "  Theta: " + FixedText(fit.thetaDegrees, 3) + "\xB0";
    return text + ")";
  }

private:
  std::string Line(double slope, double interceptUM) const {
    return "Form: LS Line   (Slope: " + FixedText(slope, 3) + "  Intercept: " + Height(interceptUM) + ")";
  }
  std::string Height(double heightUM) const { return HeightText(heightUM, metric_, {3, 3}); }
  std::string Length(double lengthMM) const { return LengthText(lengthMM, metric_, {3, 3}); }

  bool metric_;
  const AnalysisSettings& settings_;
};

}  // namespace

std::string FormCaption(const Document& document) {
  if (!document.results.formRemoved) return {};
  return std::visit(CaptionWriter(document.settings.display.Metric, document.settings.analysis),
                    document.results.formGeometry);
}

std::string FilterLabel(std::int32_t filterType) {
  switch (filterType) {
    case kFilterGaussian:
      return "Gaussian";
    case kFilterSplineGaussian:
      return "Spline Gaussian";
    case kFilterIso13565:
      return "ISO 13565";
    case kFilterRobustGaussian:
      return "Robust Gaussian (coef: " + FixedText(kRobustScaleCoefficient, 2) + ")";
    default:
      return "Unknown filter";
  }
}

std::string FilterDescription(const Document& document) {
  const AnalysisSettings& settings = document.settings.analysis;
  const bool metric = document.settings.display.Metric;
  std::string text = FilterLabel(settings.FilterType) + ", Lc " + LengthText(settings.LcCutoffMM, metric, {4, 5});
  if (document.profiles.lsApplied) text += ", Ls " + LengthText(settings.LsCutoffMM, metric, {4, 5});
  return text;
}

std::string AnalysisDescription(const Document& document) {
  return FormCaption(document) + " / " + FilterDescription(document);
}

}  // namespace texturon
