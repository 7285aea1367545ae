// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>

namespace texturon {

// Elementary functions whose results have the same bits with every compiler, C library and processor: additions,
// multiplications, divisions and square roots of doubles in a fixed order, nothing of the library that is not exact.
// The engine uses no others. Angles are radians; NaN gives NaN.
//
// Error below 0.55 units in the last place where nothing else is said, for results that are not subnormal. Measured
// against 113-bit numbers over ten million arguments each: Log 0.539, Exp2 0.520, the angles 0.512 and less, the rest
// 0.501; Pow 0.69, Erfc 0.87.

/// Of any finite angle; of an infinite one NaN.
double Sin(double angle);
double Cos(double angle);
double Tan(double angle);

/// From -pi/2 to pi/2.
double Atan(double x);
/// Atan of each; as long as `x`, and may be the same.
void AtanOfEach(std::span<const double> x, std::span<double> angle);
/// Angle of the point (x, y), from -pi to pi. Signs of zeros count; infinite coordinates are as IEEE 754 has them.
double Atan2(double y, double x);

double Exp2(double x);
/// Of 0: minus infinity. Of a negative number: NaN.
double Log(double x);
double Log2(double x);
double Log10(double x);
/// Below 1 unit in the last place; a result that is a double comes out as it. The base must not be negative: NaN.
double Pow(double base, double exponent);

/// Complementary error function, below 1 unit in the last place.
double Erfc(double x);

/// sqrt(x^2 + y^2), without overflow or underflow on the way.
double Hypot(double x, double y);

}  // namespace texturon
