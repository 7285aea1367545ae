// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "parameters/parameter_profile.h"

// Parameters of the profile elements (FindProfileElements), discriminated by the height and width percentages of the
// settings. Each fails for a profile without elements.
namespace texturon {

RowResult MeanElementWidth(const RowInput& row);          ///< sm, mm
RowResult MeanElementHeight(const RowInput& row);         ///< c, um
RowResult GreatestElementHeight(const RowInput& row);     ///< tc, um
RowResult DeviationOfElementWidths(const RowInput& row);  ///< dsm, mm: n - 1 in the denominator
/// cl, um: mean height of the elements that lie wholly within a sampling length of the letter, averaged over the
/// sampling lengths that hold one. Fails when none does.
RowResult MeanElementHeightOfLengths(const RowInput& row);

/// Height and width discrimination in percent, by profile letter and kind of row. F profiles use the primary's. The
/// roughness has one pair for both kinds: that of the height rows.
struct ElementPercentages {
  double height = 0.0;
  double width = 0.0;
};
enum class ElementRow { kWidth, kHeight };
ElementPercentages DiscriminationOf(char letter, ElementRow kind, const AnalysisSettings& settings);

}  // namespace texturon
