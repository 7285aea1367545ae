// SPDX-License-Identifier: Apache-2.0

#include "analysis/spectrum_step.h"

#include <algorithm>

#include "base/units.h"
#include "signal/fft/amplitude_spectrum.h"

namespace texturon {

Spectrum SpectrumOf(const Profile& profile) {
  Spectrum spectrum;
  const std::span<const double> heights = profile.Heights();
  spectrum.amplitudeUM.resize(heights.size() / 2 + 1);
  spectrum.wavelengthMM.resize(heights.size() / 2 + 1);
  const auto lines = AmplitudeSpectrum(heights, spectrum.amplitudeUM, {});
  const auto count = static_cast<std::size_t>(lines.value_or(0));
  spectrum.amplitudeUM.resize(count);
  spectrum.wavelengthMM.resize(count);
  spectrum.valid = lines.has_value();
  if (!spectrum.valid) return spectrum;

  const double longestMM = 2.0 * static_cast<double>(count) * profile.spacingUM * kMillimetresPerMicrometre;
  for (std::size_t k = 0; k < count; ++k) {
    spectrum.wavelengthMM[k] = k == 0 ? longestMM : longestMM / static_cast<double>(k);
  }
  spectrum.peakAmplitudeUM = *std::max_element(spectrum.amplitudeUM.begin() + 1, spectrum.amplitudeUM.end());
  return spectrum;
}

void ComputeSpectrum(Document& document) {
  const Profile profile = document.profiles.View(ProfileKind::kFormSuppressed);
  Spectrum& spectrum = document.profiles.spectrum;
  spectrum = {};
  if (!document.wanted.spectrum) {
    spectrum.valid = HasAmplitudeSpectrum(profile.Heights().size());
    return;
  }
  spectrum = SpectrumOf(profile);
}

}  // namespace texturon
