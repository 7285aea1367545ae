// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "analysis/document.h"
#include "parameters/motifs.h"

namespace texturon {

/// Sorts the heights of primary and roughness where somebody reads them.
void ComputeHeightCurves(Document& document);

/// Makes what `document.wanted` names and the last run left out, from the profiles of that run. What is there stays.
void ComputeMissingCurves(Document& document);

/// Whether there is nothing left for it to make.
bool HasCurves(const Document& document, const WantedResults& wanted);

/// The same for all of them.
Document WithAllCurves(Document document);

/// Puts motifs, which count from the primary profile's first point, into the record, whose first sample is 0.
void KeepMotifs(ProfileSet& profiles, MotifResult motifs);

/// Heights of a profile from the highest to the lowest.
std::vector<double> SortedHeights(const Profile& profile);

}  // namespace texturon
