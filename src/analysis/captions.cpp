// SPDX-License-Identifier: Apache-2.0

#include "analysis/captions.h"

#include <algorithm>
#include <string_view>

#include "analysis/edition_json.h"
#include "base/number_text.h"
#include "base/quantity.h"
#include "settings/filter_table.h"

namespace texturon {

std::string FormCaption(const Document& document) {
  if (!document.profiles.computeRange) return {};
  const FormGeometry& geometry = document.results.formGeometry;
  return FormOf(geometry).caption(geometry, document.settings);
}

std::string FormDescription(const Document& document) {
  constexpr std::string_view kOpening = "Form: ";
  std::string caption = FormCaption(document);
  if (caption.starts_with(kOpening)) caption.erase(0, kOpening.size());
  // To people -0.000 is 0.000.
  for (std::size_t at = caption.find(": -0"); at != std::string::npos; at = caption.find(": -0", at + 1)) {
    const std::size_t sign = at + 2;
    const std::size_t end = std::min(caption.find_first_not_of("0.", sign + 1), caption.size());
    if (end == caption.size() || caption[end] == ' ' || caption[end] == ')') caption.erase(sign, 1);
  }
  return caption;
}

std::string FilterLabel(const AnalysisSettings& settings) {
  const FilterRow* const filter = LongWaveFilter(settings);
  if (filter == nullptr) return "Unknown filter";
  std::string label(filter->label);
  if (filter->coefficient > 0.0) label += " (coef: " + FixedText(filter->coefficient, 2) + ")";
  return label;
}

std::string FilterDescription(const Document& document) {
  const AnalysisSettings& settings = document.AnalysedBy();
  const bool metric = document.settings.display.Metric;
  std::string text = FilterLabel(settings) + ", Lc " + LengthText(settings.LcCutoffMM, metric, {4, 5});
  if (const auto& shortMM = document.profiles.shortCutoffMM) text += ", Ls " + LengthText(*shortMM, metric, {4, 5});
  return text;
}

std::string EditionDescription(const Document& document) {
  const AnalysisSettings& settings = document.settings.analysis;
  const StandardSettings& standard = settings.standard;
  std::string text(EditionTitle(document));
  if (text.empty()) return text;
  if (text == "both") text = "1997 and 2021";
  if (!standard.Class.empty()) text += ", class " + standard.Class;
  text += ", " + IntegerText(standard.Sections) + (standard.Sections == 1 ? " section" : " sections");
  if (const FilterRow* const core = CoreFilter(settings)) text += ", core by " + std::string(core->label);
  return text;
}

std::string AnalysisDescription(const Document& document) {
  return FormCaption(document) + " / " + FilterDescription(document);
}

}  // namespace texturon
