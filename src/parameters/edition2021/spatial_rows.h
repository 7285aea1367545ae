// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "parameters/edition2021/edition_input.h"

// Spatial and slope rows of ISO 21920-2.
namespace texturon {

/// al(s), mm: smallest lag at which the autocorrelation falls to s (AutocorrelationLevel unless given). Lag j sums
/// z[i] z[i+j] over the n - j pairs, divided by their number and by the value at lag 0; straight between the last lag
/// above s and the first at or below it, looked for up to half of the record.
RowResult AutocorrelationLength(const EditionInput& row);

/// sw, mm: the wavelength of the largest line of the plain discrete transform, length / k for k = 1 .. n / 2; the first
/// of equals. Its resolution is length / k^2.
RowResult DominantWavelength(const EditionInput& row);

// Slopes dz/dx by the seven-point formula at the n - 6 points that have three neighbours on either side.
RowResult SlopeDeviation(const EditionInput& row);   ///< dq, a number: root mean square
RowResult MeanSlope(const EditionInput& row);        ///< da: mean amount
RowResult GreatestSlope(const EditionInput& row);    ///< dt: largest amount
RowResult DevelopedRatio(const EditionInput& row);   ///< dr, %: mean of sqrt(1 + slope^2) above 1
RowResult DevelopedLength(const EditionInput& row);  ///< dl, mm: length (1 + dr / 100)

}  // namespace texturon
