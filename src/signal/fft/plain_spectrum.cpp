// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/plain_spectrum.h"

#include <algorithm>
#include <optional>

#include "signal/fft/fft.h"
#include "signal/fft/fft_batch.h"
#include "signal/fft/real_fft.h"

namespace texturon {
namespace {

/// X[k] = c[k] sum over j of (x[j] c[j]) conj(c[k - j]); the factor c[k] has the amount 1.
std::vector<double> ChirpPower(std::span<const double> x) {
  const std::size_t n = x.size();
  const std::vector<Cplx> chirp = ChirpFactors(n);
  const std::size_t padded = ChirpPaddedLength(n);
  const FftPlan plan = *FftPlan::Make(padded);
  const std::vector<Cplx> wrapped = WrappedChirp(chirp, padded);
  std::vector<double> re(padded), im(padded), factorRe(padded), factorIm(padded);
  for (std::size_t i = 0; i < padded; ++i) {
    factorRe[i] = wrapped[i].re;
    factorIm[i] = wrapped[i].im;
  }
  plan.Forward(factorRe, factorIm, factorRe, factorIm);
  for (std::size_t j = 0; j < n; ++j) {
    re[j] = x[j] * chirp[j].re;
    im[j] = x[j] * chirp[j].im;
  }
  plan.Forward(re, im, re, im);
  for (std::size_t i = 0; i < padded; ++i) {
    const double product = re[i] * factorRe[i] - im[i] * factorIm[i];
    im[i] = re[i] * factorIm[i] + im[i] * factorRe[i];
    re[i] = product;
  }
  plan.Inverse(re, im, re, im);
  std::vector<double> power(n / 2 + 1);
  const auto scale = static_cast<double>(padded);  // the wrapped chirp is divided by it, and so is the inverse
  for (std::size_t k = 0; k < power.size(); ++k) power[k] = (re[k] * re[k] + im[k] * im[k]) * scale * scale;
  return power;
}

}  // namespace

std::vector<double> PlainPowerSpectrum(std::span<const double> x) {
  if (x.empty()) return {};
  const std::optional<RealFftPlan> plan = RealFftPlan::Make(x.size());
  if (!plan) return ChirpPower(x);
  std::vector<double> re(x.size() / 2 + 1);
  std::vector<double> im(re.size());
  plan->Forward(x, re, im);
  for (std::size_t k = 0; k < re.size(); ++k) re[k] = re[k] * re[k] + im[k] * im[k];
  return re;
}

std::vector<double> LaggedProducts(std::span<const double> x, std::size_t lags) {
  const RealFftPlan plan = *RealFftPlan::Make(QuickRealLength(x.size() + lags));
  std::vector<double> padded(plan.length());
  std::copy(x.begin(), x.end(), padded.begin());
  std::vector<double> re(plan.length() / 2 + 1);
  std::vector<double> im(re.size());
  plan.Forward(padded, re, im);
  for (std::size_t k = 0; k < re.size(); ++k) {
    re[k] = re[k] * re[k] + im[k] * im[k];
    im[k] = 0.0;
  }
  plan.Inverse(re, im, padded);
  padded.resize(lags);
  return padded;
}

std::size_t QuickRealLength(std::size_t least) {
  std::size_t best = 2;
  while (best < least) best *= 2;
  for (std::size_t fives = 1; 2 * fives < best; fives *= 5) {
    for (std::size_t threes = fives; 2 * threes < best; threes *= 3) {
      std::size_t length = 2 * threes;
      while (length < least) length *= 2;
      best = std::min(best, length);
    }
  }
  return best;
}

}  // namespace texturon
