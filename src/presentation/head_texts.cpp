// SPDX-License-Identifier: Apache-2.0

#include "presentation/head_texts.h"

#include "analysis/captions.h"
#include "base/number_text.h"
#include "base/quantity.h"

namespace texturon {

std::string AnalysisForReaders(const Document& document) {
  const std::string form = FormDescription(document);
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

}  // namespace texturon
