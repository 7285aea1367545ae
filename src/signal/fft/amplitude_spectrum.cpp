// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/amplitude_spectrum.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include "base/elementary.h"
#include "signal/fft/fft.h"
#include "signal/fft/real_fft.h"

namespace texturon {

bool HasAmplitudeSpectrum(std::size_t n) {
  return LargestFftLength(n) > 0;
}

std::optional<std::int32_t> AmplitudeSpectrum(std::span<const double> z, std::span<double> amplitude,
                                              std::span<double> phase) {
  const std::size_t m = LargestFftLength(z.size());
  const std::optional<RealFftPlan> plan = RealFftPlan::Make(m);
  if (!plan) return std::nullopt;
  const std::size_t count = m / 2 + 1;
  std::vector<double> re(count);
  std::vector<double> im(count);
  plan->Forward(z.first(m), re, im);

  const auto points = static_cast<double>(m);
  for (std::size_t k = 1; k < count; ++k) amplitude[k] = 2.0 * std::sqrt(re[k] * re[k] + im[k] * im[k]) / points;
  amplitude[0] = re[0] / points;
  if (m % 2 == 0) {
    const std::size_t k = m / 2;
    amplitude[k] = std::sqrt(2.0 * re[k] * re[k] + 2.0 * im[k] * im[k]) / points;
  }
  if (!phase.empty()) {
    phase[0] = 0.0;
    for (std::size_t k = 1; k < count; ++k) phase[k] = Atan2(im[k], re[k]);
  }
  return static_cast<std::int32_t>(count);
}

}  // namespace texturon
