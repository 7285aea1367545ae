// SPDX-License-Identifier: Apache-2.0

#include "analysis/captions.h"

#include "base/number_text.h"
#include "base/units.h"
#include "settings/filter_table.h"

namespace texturon {

std::string FormCaption(const Document& document) {
  if (!document.profiles.computeRange) return {};
  const FormGeometry& geometry = document.results.formGeometry;
  return FormOf(geometry).caption(geometry, document.settings);
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
  const auto cutoff = [metric = document.settings.display.Metric](double mm) {
    return metric ? FixedText(mm, 4) + " mm" : FixedText(mm * kInchesPerMillimetre, 5) + " in";
  };
  std::string text = FilterLabel(settings) + ", Lc " + cutoff(settings.LcCutoffMM);
  if (const auto& shortMM = document.profiles.shortCutoffMM) text += ", Ls " + cutoff(*shortMM);
  return text;
}

std::string AnalysisDescription(const Document& document) {
  return FormCaption(document) + " / " + FilterDescription(document);
}

}  // namespace texturon
