// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace texturon {

// Share of its amplitude, 0 to 1, that a sine of a wavelength keeps in a mean line; what it loses is in the rest.
// Cutoff and wavelength in mm, both positive. At the cutoff it is one half.

/// 2^-(cutoff / wavelength)^2, as in ISO 16610-21.
double GaussianTransmission(double cutoffMM, double wavelengthMM);

/// That of the spline filter's equations on an endless record, to which the differences are multiplications:
///
///     1 / (1 + tension alpha^2 s + (1 - tension) alpha^4 s^2),   s = 4 sin^2(pi spacing / wavelength)
///
/// with the alpha of SplineFilter. Wavelengths of at least two spacings.
double SplineTransmission(double cutoffMM, double tension, double spacingUM, double wavelengthMM);

/// (1 + a) exp(-a), a = pi (g cutoff / wavelength)^2, of the regression filter of second order (ISO 16610-31) without
/// robust weights, away from the ends.
double RegressionTransmission(double cutoffMM, double wavelengthMM);

}  // namespace texturon
