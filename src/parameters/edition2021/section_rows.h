// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "parameters/edition2021/crossing_parts.h"
#include "parameters/edition2021/edition_input.h"

// Heights by section and profile elements of ISO 21920-2. Sections is their number, for every letter.
namespace texturon {

/// Once a profile: means of the sections' largest peak heights and pit depths.
const Defined<SectionHeights>& SectionHeightsOf(const EditionInput& row);

RowResult MeanSectionPeak(const EditionInput& row);       ///< p, um
RowResult MeanSectionPit(const EditionInput& row);        ///< v, um
RowResult MeanSectionHeight(const EditionInput& row);     ///< z = p + v, um
RowResult GreatestWindowHeight(const EditionInput& row);  ///< zx(l), um: over windows of l mm, of a sampling length

// Elements for the thresholds HillThresholdPercent of p and DaleThresholdPercent of v.
RowResult MeanElementSpacing(const EditionInput& row);         ///< sm, mm
RowResult GreatestElementSpacing(const EditionInput& row);     ///< smx, mm
RowResult DeviationOfSpacings(const EditionInput& row);        ///< smq, mm: standard deviation (n - 1)
RowResult MeanHeightOfElements(const EditionInput& row);       ///< c, um
RowResult GreatestHeightOfElements(const EditionInput& row);   ///< cx, um
RowResult DeviationOfElementHeights(const EditionInput& row);  ///< cq, um: standard deviation (n - 1)
RowResult ElementsPerLength(const EditionInput& row);          ///< pc, 1/cm: 10 mm over sm

}  // namespace texturon
