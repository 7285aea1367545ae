// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "parameters/parameter_profile.h"

// Whole-profile height parameters after ISO 4287, in um (skewness and kurtosis: 1), and one of this program, twi. Each
// fails for no points.
namespace texturon {

RowResult TotalHeight(const RowInput& row);              ///< t: highest minus lowest
RowResult MaximumPeakHeight(const RowInput& row);        ///< p: highest
RowResult MaximumValleyDepth(const RowInput& row);       ///< v: minus the lowest
RowResult ArithmeticMeanDeviation(const RowInput& row);  ///< a: mean of |z|
RowResult RootMeanSquareDeviation(const RowInput& row);  ///< q: root of the mean of z^2
/// sk: mean of z^3 over q^3. 0 where n q^3 is below the machine epsilon.
RowResult Skewness(const RowInput& row);
/// ku: mean of z^4 over q^4. 0 where n q^4 is below the machine epsilon.
RowResult Kurtosis(const RowInput& row);
/// twi: share in percent of the points within plus or minus q of the mean line, both included; a two-valued profile
/// lies on them, so rounding of q is forgiven. Fails also where q is not finite.
RowResult ShareWithinDeviation(const RowInput& row);

}  // namespace texturon
