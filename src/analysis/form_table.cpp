// SPDX-License-Identifier: Apache-2.0

#include "analysis/form_table.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "analysis/shape_form_step.h"
#include "base/number_text.h"
#include "base/quantity.h"
#include "base/units.h"
#include "settings/nominal_settings.h"

namespace texturon {
namespace {

constexpr Decimals kCaptionDecimals = {3, 3};

std::string Height(double heightUM, const Settings& settings) {
  return HeightText(heightUM, settings.display.Metric, kCaptionDecimals);
}

std::string Length(double lengthMM, const Settings& settings) {
  return LengthText(lengthMM, settings.display.Metric, kCaptionDecimals);
}

/// Of a parameter of a placed shape, in another unit.
std::optional<double> Uncertainty(const std::optional<ShapeCovariance>& covariance, ShapeParameters::Index parameter,
                                  double scale) {
  return covariance ? covariance->Uncertainty(parameter, scale) : std::nullopt;
}

constexpr double kDegrees = 180.0 / std::numbers::pi;

/// Where no least-squares line could be taken out.
void NoteMissingLine(const FormTask& task) {
  task.prompts.Notice(
      "No least-squares line could be found: it needs two points, heights that are numbers and a slope below 1e154.");
}

std::string LineCaption(double slope, double interceptUM, const Settings& settings) {
  return "Form: LS Line   (Slope: " + FixedText(slope, 3) + "  Intercept: " + Height(interceptUM, settings) + ")";
}

struct Mean {
  static auto Remove(const FormTask& task) { return RemoveMean(task.input, task.output); }
  static std::string Caption(const MeanFit& fit, const Settings& settings) {
    return "Form: Datum   (Mean: " + Height(fit.meanUM, settings) + ")";
  }
  static std::vector<FormField> Fields(const MeanFit& fit) { return {{"mean_um", fit.meanUM}}; }
};

struct Line {
  static auto Remove(const FormTask& task) {
    auto fit = FitLine(task.input, task.output);
    if (!fit) NoteMissingLine(task);
    return fit;
  }
  static std::string Caption(const LineFit& fit, const Settings& settings) {
    return LineCaption(fit.slope, fit.interceptUM, settings);
  }
  static std::vector<FormField> Fields(const LineFit& fit) {
    return {{"slope", fit.slope, fit.slopeUncertainty}, {"intercept_um", fit.interceptUM, fit.interceptUncertaintyUM}};
  }
};

/// Standard deviation of the heights outside the exclusion, about their mean or their least-squares line.
double Scatter(const FormInput& input, std::span<const double> heights, bool isAboutLine) {
  double count = 0.0;
  double meanX = 0.0;
  double meanZ = 0.0;
  const auto forEach = [&](const auto& act) {
    for (std::size_t i = 0; i < heights.size(); ++i) {
      const auto index = static_cast<std::int32_t>(i);
      const bool isOut = input.exclusion && index >= input.exclusion->first && index <= input.exclusion->last;
      if (!isOut) act(static_cast<double>(i), heights[i]);
    }
  };
  forEach([&](double x, double z) {
    count += 1.0;
    meanX += (x - meanX) / count;
    meanZ += (z - meanZ) / count;
  });
  double xx = 0.0;
  double xz = 0.0;
  if (isAboutLine) {
    forEach([&](double x, double z) {
      xx += (x - meanX) * (x - meanX);
      xz += (x - meanX) * (z - meanZ);
    });
  }
  const double slope = xx > 0.0 ? xz / xx : 0.0;
  double squares = 0.0;
  forEach([&](double x, double z) {
    const double deviation = z - meanZ - slope * (x - meanX);
    squares += deviation * deviation;
  });
  return count > 0.0 ? std::sqrt(squares / count) : 0.0;
}

/// Roughness draws the algebraic circle towards small radii: on a flat profile it lies farther off than a line does.
void NoteFlatProfile(const FormTask& task, const ArcFit& fit) {
  const double left = Scatter(task.input, task.output.residual, false);
  const double byLine = Scatter(task.input, task.input.heights, true);
  if (!(left > byLine)) return;
  constexpr int kFigures = 3;
  task.prompts.Notice("The arc of " + FixedText(fit.radiusUM * kMillimetresPerMicrometre, 3) + " mm leaves " +
                      SignificantText(left, kFigures) + " \xB5m rms of the profile, a straight line " +
                      SignificantText(byLine, kFigures) + " \xB5m: it is too flat for an arc.");
}

struct Arc {
  static auto Remove(const FormTask& task) {
    auto fit = FitArc(task.input, task.output);
    if (fit) NoteFlatProfile(task, *fit);
    return fit;
  }
  static std::string Caption(const ArcFit& fit, const Settings& settings) {
    return "Form: LS Arc   (Radius: " + Length(fit.radiusUM * kMillimetresPerMicrometre, settings) + ")";
  }
  static std::vector<FormField> Fields(const ArcFit& fit) {
    std::vector<FormField> fields{
        {"radius_um", fit.radiusUM}, {"center_x_um", fit.centreXUM}, {"center_y_um", fit.centreYUM}};
    if (const auto& known = fit.uncertainty) {
      fields[0].uncertainty = known->radiusUM;
      fields[1].uncertainty = known->centreXUM;
      fields[2].uncertainty = known->centreYUM;
    }
    return fields;
  }
};

struct Polynomial {
  static auto Remove(const FormTask& task) {
    auto fit = FitPolynomial(task.input, task.settings.PolynomialOrder, task.output);
    if (fit && fit->swingsAway) {
      task.prompts.Notice(
          "The polynomial leads far away from the profile where the fit used no points; use a lower order.");
    }
    return fit;
  }
  static std::string Caption(const PolynomialFit& fit, const Settings& settings) {
    const std::size_t count = fit.coefficients.size();
    if (count == 1) return "Form: Datum";
    if (count == 2) return LineCaption(fit.coefficients[1], fit.coefficients[0], settings);
    if (count == 3) return "Form: Parabola";
    return "Form: Polynomial   (Order: " + IntegerText(static_cast<std::int64_t>(count) - 1) + ")";
  }
  static std::vector<FormField> Fields(const PolynomialFit& fit) {
    return {{"coefficients", fit.coefficients, {}, fit.uncertainties}};
  }
};

struct Filter {
  static auto Remove(const FormTask& task) {
    return RemoveFormByFilter(task.input, task.settings.FormFilterCutoffMM, task.output);
  }
  static std::string Caption(const FilterFormFit& /*fit*/, const Settings& settings) {
    return "Form: Spline Gaussian Filter (Cutoff: " + Length(settings.analysis.FormFilterCutoffMM, settings) + ")";
  }
  static std::vector<FormField> Fields(const FilterFormFit& fit) {
    return {{"slope", fit.slope}, {"intercept_um", fit.interceptUM}};
  }
};

struct FixedRadius {
  static auto Remove(const FormTask& task) {
    return RemoveFixedRadius(task.input, task.settings, task.isQuiet, task.prompts, task.output);
  }
  static std::string Caption(const FixedRadiusFit& fit, const Settings& settings) {
    return "Form: Fixed Radius   (Radius: " + Length(fit.radiusUM * kMillimetresPerMicrometre, settings) + ")";
  }
  static std::vector<FormField> Fields(const FixedRadiusFit& fit) {
    using P = ShapeParameters;
    return {{"radius_um", fit.radiusUM},
            {"center_x_um", fit.centreXUM, Uncertainty(fit.covariance, P::kX, kMicrometresPerMillimetre)},
            {"center_y_um", fit.centreYUM, Uncertainty(fit.covariance, P::kZ, kMicrometresPerMillimetre)}};
  }
};

struct Asphere {
  static auto Remove(const FormTask& task) {
    if (HasUnusedConstant(task.settings)) {
      task.prompts.Notice("The aspheric coefficient A0 is not used: the height of the vertex carries it.");
    }
    auto fit = RemoveAsphere(task.input, task.settings, task.firstMM, task.prompts, task.output);
    if (!fit) return fit;
    const double lastMM =
        static_cast<double>(task.input.heights.size() - 1) * task.input.spacingUM * kMillimetresPerMicrometre;
    const bool isOutside = fit->apexXMM < 0.0 || fit->apexXMM > lastMM;
    fit->apexXMM += task.firstMM;
    if (isOutside && !task.settings.AsphereXFixed) {
      task.prompts.Notice("The apex of the asphere, found at X = " + FixedText(fit->apexXMM, 3) +
                          " mm, lies outside the data, which reach from " + FixedText(task.firstMM, 3) + " to " +
                          FixedText(task.firstMM + lastMM, 3) + " mm.");
    }
    return fit;
  }
  static std::string Caption(const AsphereFit& fit, const Settings& settings) {
    return "Form: Asphere   (Radius: " + Length(fit.RadiusMM(), settings) +
           "  Tilt: " + FixedText(fit.TiltDegrees(), 3) + "\xB0)";
  }
  static std::vector<FormField> Fields(const AsphereFit& fit) {
    using P = ShapeParameters;
    const auto uncertainty = [&fit](P::Index term, double scale) { return Uncertainty(fit.covariance, term, scale); };
    const double radiusMM = fit.RadiusMM();
    return {{"radius_um", radiusMM * kMicrometresPerMillimetre,
             uncertainty(P::kCurvature, radiusMM * radiusMM * kMicrometresPerMillimetre)},
            {"apex_x_mm", fit.apexXMM, uncertainty(P::kX, 1.0)},
            {"apex_z_um", fit.apexZUM, uncertainty(P::kZ, kMicrometresPerMillimetre)},
            {"tilt_degrees", fit.TiltDegrees(), uncertainty(P::kAngle, kDegrees)},
            {"curvature_per_mm", fit.curvaturePerMM, uncertainty(P::kCurvature, 1.0)},
            {"conic", fit.conic, uncertainty(P::kConic, 1.0)}};
  }
};

struct FreeForm {
  static auto Remove(const FormTask& task) {
    auto fit = RemoveFreeForm(task.input, task.settings, task.prompts, task.output);
    if (fit) fit->shiftXMM += task.firstMM;
    return fit;
  }
  static std::string Caption(const FreeFormFit& fit, const Settings& settings) {
    std::string text =
        fit.hasFixedStart ? "Free Form (Fixed Start" : "Free Form (dX: " + Length(fit.shiftXMM, settings);
    text += "  dY: " + Length(fit.shiftYMM, settings);
    if (fit.allowsTilt) text += "  Theta: " + FixedText(fit.thetaDegrees, 3) + "\xB0";
    return text + ")";
  }
  static std::vector<FormField> Fields(const FreeFormFit& fit) {
    using P = ShapeParameters;
    return {{"shift_x_mm", fit.shiftXMM, Uncertainty(fit.covariance, P::kX, 1.0)},
            {"shift_y_mm", fit.shiftYMM, Uncertainty(fit.covariance, P::kZ, 1.0)},
            {"theta_degrees", fit.thetaDegrees, Uncertainty(fit.covariance, P::kAngle, kDegrees)}};
  }
};

/// Fills in the routines of a row.
template <typename Form>
constexpr FormRow Row(FormRow row) {
  using Fit = typename decltype(Form::Remove(std::declval<const FormTask&>()))::value_type;
  row.remove = [](const FormTask& task) -> std::optional<FormGeometry> { return Form::Remove(task); };
  row.made = [](const FormGeometry& geometry) { return std::holds_alternative<Fit>(geometry); };
  row.caption = [](const FormGeometry& geometry, const Settings& settings) {
    return Form::Caption(std::get<Fit>(geometry), settings);
  };
  row.fields = [](const FormGeometry& geometry) { return Form::Fields(std::get<Fit>(geometry)); };
  return row;
}

constexpr auto kTable = std::to_array<FormRow>({
    Row<Mean>({.number = kFormNone, .heedsExclusion = false}),
    Row<Line>({.number = kFormLine}),
    Row<Arc>({.number = kFormArc, .isArc = true}),
    Row<Polynomial>({.number = kFormPolynomial}),
    Row<Filter>({.number = kFormFilter,
                 .heedsExclusion = false,
                 .exclusionRefusal = "Cannot exclude with filter-based form removal.",
                 .filterCutoffMM = &AnalysisSettings::FormFilterCutoffMM}),
    Row<FixedRadius>({.number = kFormFixedRadius, .isArc = true}),
    Row<Asphere>({.number = kFormAsphere, .showsProgress = true, .hasClearAperture = true}),
    Row<FreeForm>({.number = kFormFree}),
});
static_assert(kTable.size() == std::variant_size_v<FormGeometry>, "every geometry has its form");

template <typename Condition>
const FormRow* FirstWith(Condition condition) {
  const auto* const found = std::find_if(kTable.begin(), kTable.end(), condition);
  return found == kTable.end() ? nullptr : found;
}

}  // namespace

double ResidualSpacingUM(const FormGeometry& geometry) {
  return std::visit([](const auto& fit) { return fit.residualSpacingUM; }, geometry);
}

std::optional<double> CentreXUM(const FormGeometry& geometry) {
  return std::visit(
      [](const auto& fit) -> std::optional<double> {
        if constexpr (requires { fit.centreXUM; }) return fit.centreXUM;
        return std::nullopt;
      },
      geometry);
}

const AsphereFit* AsphereOf(const FormGeometry& geometry) {
  return std::get_if<AsphereFit>(&geometry);
}

std::span<const FormRow> FormTable() {
  return kTable;
}

const FormRow* FindForm(std::int32_t number) {
  return FirstWith([number](const FormRow& form) { return form.number == number; });
}

const FormRow& RequestedForm(const AnalysisSettings& settings) {
  const FormRow* const form = FindForm(settings.FormRemovalType);
  return form != nullptr ? *form : kTable.front();
}

const FormRow& FormOf(const FormGeometry& geometry) {
  return *FirstWith([&geometry](const FormRow& form) { return form.made(geometry); });
}

}  // namespace texturon
