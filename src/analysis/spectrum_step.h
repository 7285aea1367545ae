// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "analysis/document.h"

namespace texturon {

/// Amplitudes of the harmonics of a profile with their wavelengths. Line k of K has the wavelength 2 K spacing / k,
/// which is slightly longer than the transformed length over k; line 0 has that of line 1. Where the length cannot be
/// transformed the spectrum is empty and not valid.
Spectrum SpectrumOf(const Profile& profile);

/// The same of the form-suppressed profile over the compute range, where it is wanted.
void ComputeSpectrum(Document& document);

}  // namespace texturon
