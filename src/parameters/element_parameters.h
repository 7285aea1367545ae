// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "parameters/parameter_profile.h"

// Parameters of the profile elements (FindProfileElements), discriminated by the height and width percentages of the
// settings, by the letter of the profile. Each fails for a profile without elements.
// sm and c are those of ISO 4287, the others are this program's.
namespace texturon {

RowResult MeanElementWidth(const RowInput& row);          ///< sm, mm
RowResult MeanElementHeight(const RowInput& row);         ///< c, um
RowResult GreatestElementHeight(const RowInput& row);     ///< tc, um
RowResult DeviationOfElementWidths(const RowInput& row);  ///< dsm, mm: n - 1 in the denominator
/// cl, um: mean height of the elements that lie wholly within a sampling length of the letter, averaged over the
/// sampling lengths that hold one. Fails when none does.
RowResult MeanElementHeightOfLengths(const RowInput& row);

}  // namespace texturon
