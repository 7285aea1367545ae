// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>

namespace texturon {

// Heights and the sample spacing are stored in micrometres, lengths of the settings in millimetres. Imperial units
// exist only where something is shown or exported.
inline constexpr double kMicroinchesPerMicrometre = 39.37007874015748;
inline constexpr double kInchesPerMillimetre = 0.03937007874015748;
inline constexpr double kMillimetresPerInch = 25.4;
inline constexpr double kMicrometresPerMicroinch = 0.0254;
inline constexpr double kMicrometresPerMillimetre = 1000.0;
inline constexpr double kMillimetresPerMicrometre = 0.001;

/// Rounds half away from zero. A value beyond the 32-bit range gives that range's end, NaN gives 0.
std::int32_t RoundToIndex(double value);

/// Number of sample steps in a length: length (mm) x 1000 / spacing (um), rounded half away from zero; saturating as
/// RoundToIndex.
std::int32_t StepsInLength(double lengthMM, double spacingUM);

/// How many whole steps, cut-offs or points a length holds: the quotient, rounded towards 0 after 1e-9 of itself more.
/// Decimal fractions are no doubles: 0.8 / 0.1 would lose one in 3 of 100 such pairs. Both in one unit.
double WholePartsOfLength(double length, double part);

}  // namespace texturon
