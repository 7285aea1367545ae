// SPDX-License-Identifier: Apache-2.0

#include "presentation/head_texts.h"

#include <string_view>
#include <variant>

#include "analysis/captions.h"
#include "base/number_text.h"
#include "base/quantity.h"

namespace texturon {
namespace {

/// Of a line, micrometres over micrometres.
std::optional<double> SlopeOf(const FormGeometry& geometry) {
  if (const auto* const line = std::get_if<LineFit>(&geometry)) return line->slope;
  const auto* const polynomial = std::get_if<PolynomialFit>(&geometry);
  if (polynomial != nullptr && polynomial->coefficients.size() == 2) return polynomial->coefficients[1];
  return std::nullopt;
}

std::string SlopeText(double slope, bool metric) {
  constexpr double kMicrometresPerMillimetreOfRun = 1e3;
  constexpr double kMicroinchesPerInch = 1e6;
  return metric ? ReadoutText(kMicrometresPerMillimetreOfRun * slope, 3) + " \xB5m/mm"
                : ReadoutText(kMicroinchesPerInch * slope, 1) + " \xB5in/in";
}

}  // namespace

std::string FormForReaders(const Document& document) {
  constexpr std::string_view kName = "Slope: ";
  std::string text = FormDescription(document);
  const std::size_t at = text.find(kName);
  const auto slope = SlopeOf(document.results.formGeometry);
  if (at == std::string::npos || !slope) return text;
  const std::size_t from = at + kName.size();
  return text.replace(from, text.find("  ", from) - from, SlopeText(*slope, document.settings.display.Metric));
}

std::string AnalysisForReaders(const Document& document) {
  const std::string form = FormForReaders(document);
  return (form.empty() ? "" : "Form: " + form + " / ") + FilterDescription(document);
}

std::string EvaluatedForReaders(const Document& document) {
  const ProfileSet& profiles = document.profiles;
  if (!profiles.evaluationRange) return {};
  const IndexRange& range = *profiles.evaluationRange;
  const auto text = [&document](double lengthUM) {
    return LengthText(lengthUM * kMillimetresPerMicrometre, document.settings.display.Metric);
  };
  return "length " + text(LengthOfPoints(range.count, profiles.residualSpacingUM)) + ", " + IntegerText(range.count) +
         " points from " + text(range.first * profiles.spacingUM) + " to " + text(range.last * profiles.spacingUM);
}

std::string LabelForReaders(std::string label) {
  for (const auto& [height, width] : {std::pair<std::string_view, std::string_view>("(z%: ", " l%: "),
                                      std::pair<std::string_view, std::string_view>("(z: ", "l: ")}) {
    const std::size_t start = label.find(height);
    const std::size_t middle = label.find(width, start);
    if (start == std::string::npos || middle == std::string::npos) continue;
    const auto number = [&label](std::size_t at) {
      return label.substr(at, label.find_first_not_of("0123456789", at) - at);
    };
    return label.substr(0, start) + "(height " + number(start + height.size()) + " %, width " +
           number(middle + width.size()) + " %)";
  }
  return label;
}

}  // namespace texturon
