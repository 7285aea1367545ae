// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace texturon {

/// Whether a record of n heights has a spectrum.
bool HasAmplitudeSpectrum(std::size_t n);

/// Mean-to-peak amplitudes of the harmonics of a record, for the first m = LargestFftLength(n) of the n heights:
/// amplitude[0] = the mean, with its sign; amplitude[k] = 2 |X[k]| / m for the wavelength m spacing / k. The last entry
/// of an even m is sqrt(2) |X[m / 2]| / m, between the one-sided and the two-sided reading of that harmonic. phase[k]
/// is the angle of X[k] (radians, forward transform with exp(-i)), phase[0] = 0; an empty phase span is not filled,
/// which saves most of the time.
///
/// Returns the number of entries K = m / 2 + 1; the spans hold n / 2 + 1. Nothing when fewer than five points can be
/// transformed.
std::optional<std::int32_t> AmplitudeSpectrum(std::span<const double> z, std::span<double> amplitude,
                                              std::span<double> phase);

}  // namespace texturon
