// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/gaussian_filter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/elementary.h"
#include "base/samples.h"
#include "base/units.h"
#include "signal/fft/fft.h"
#include "signal/fft/real_fft.h"
#include "signal/filter/filter_contract.h"

namespace texturon {

std::optional<IndexRange> GaussianFilter(std::span<const double> z, std::span<double> w, double spacingUM,
                                         double cutoffMM) {
  if (!(spacingUM > 0.0 && std::isfinite(spacingUM) && SpacingAllowsCutoff(spacingUM, cutoffMM))) return std::nullopt;
  const std::size_t m = LargestFftLength(z.size());
  const std::optional<RealFftPlan> plan = RealFftPlan::Make(m);
  if (!plan) return std::nullopt;

  Samples re(m / 2 + 1);
  Samples im(m / 2 + 1);
  plan->Forward(z.first(m), re, im);
  const double lengthMM = static_cast<double>(m) * (spacingUM * kMillimetresPerMicrometre);
  for (std::size_t k = 1; k < re.size(); ++k) {
    const double wavelengthMM = lengthMM / static_cast<double>(k);
    const double ratio = cutoffMM / wavelengthMM;
    const double amplitude = Exp2(-ratio * ratio);
    if (amplitude == 0.0) {  // all shorter wavelengths vanish as well
      std::fill(re.begin() + static_cast<std::ptrdiff_t>(k), re.end(), 0.0);
      std::fill(im.begin() + static_cast<std::ptrdiff_t>(k), im.end(), 0.0);
      break;
    }
    re[k] *= amplitude;
    im[k] *= amplitude;
  }
  plan->Inverse(re, im, w.first(m));
  return IndexRange::FromCount(0, static_cast<std::int32_t>(m));
}

}  // namespace texturon
