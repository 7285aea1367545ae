// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/fft.h"

#include <algorithm>
#include <vector>

#include "signal/fft/fft_batch.h"

namespace texturon {
namespace {

/// Time of a convolution besides its two transforms, for each point, in the units of BatchFft::Cost.
constexpr double kConvolutionOverhead = 4.0;

std::vector<double> RealParts(std::span<const Cplx> values) {
  std::vector<double> parts(values.size());
  std::transform(values.begin(), values.end(), parts.begin(), [](Cplx value) { return value.re; });
  return parts;
}

std::vector<double> ImaginaryParts(std::span<const Cplx> values) {
  std::vector<double> parts(values.size());
  std::transform(values.begin(), values.end(), parts.begin(), [](Cplx value) { return value.im; });
  return parts;
}

}  // namespace

bool FftAcceptsLength(std::size_t n) {
  if (n == 0) return false;
  for (std::size_t factor = 2; factor <= kMaxFftPrime && n > 1; ++factor) {
    while (n % factor == 0) n /= factor;
  }
  return n == 1;
}

std::size_t LargestFftLength(std::size_t n) {
  while (n >= kMinFftLength && !FftAcceptsLength(n)) --n;
  return n >= kMinFftLength ? n : 0;
}

/// The whole transform as one convolution with a chirp (see ChirpFactors).
class FftPlan::Convolution {
public:
  Convolution(std::size_t n, const SplitChoice& padded) : chirp_(ChirpFactors(n)), padded_(padded) {
    const std::vector<Cplx> wrapped = WrappedChirp(chirp_, padded_.length());
    spectrumRe_ = RealParts(wrapped);
    spectrumIm_ = ImaginaryParts(wrapped);
    padded_.Forward({spectrumRe_.data(), spectrumIm_.data()}, {spectrumRe_.data(), spectrumIm_.data()});
  }

  void Forward(ConstRows in, Rows out) const {
    std::vector<double> re(padded_.length());
    std::vector<double> im(padded_.length());
    const Rows work{re.data(), im.data()};
    for (std::size_t j = 0; j < chirp_.size(); ++j) {
      const Cplx c = chirp_[j];
      re[j] = in.re[j] * c.re - in.im[j] * c.im;
      im[j] = in.re[j] * c.im + in.im[j] * c.re;
    }
    padded_.Forward(work, work);
    // A forward transform of the conjugate, conjugated, is the inverse one.
    for (std::size_t k = 0; k < re.size(); ++k) {
      const double product = re[k] * spectrumRe_[k] - im[k] * spectrumIm_[k];
      im[k] = -(re[k] * spectrumIm_[k] + im[k] * spectrumRe_[k]);
      re[k] = product;
    }
    padded_.Forward(work, work);
    for (std::size_t k = 0; k < chirp_.size(); ++k) {
      const Cplx c = chirp_[k];
      out.re[k] = re[k] * c.re + im[k] * c.im;
      out.im[k] = re[k] * c.im - im[k] * c.re;
    }
  }

private:
  std::vector<Cplx> chirp_;
  SplitFft padded_;
  std::vector<double> spectrumRe_;
  std::vector<double> spectrumIm_;
};

std::optional<FftPlan> FftPlan::Make(std::size_t n) {
  if (!FftAcceptsLength(n)) return std::nullopt;
  FftPlan plan(n);
  const SplitChoice split = ChooseSplit(n);
  if (n > kMaxDirectRadix && split.IsNarrow()) {
    const std::size_t length = ChirpPaddedLength(n);
    const SplitChoice padded = ChooseSplit(length);
    const double whole = 2.0 * padded.cost + kConvolutionOverhead * static_cast<double>(length);
    if (whole < split.cost) plan.convolution_ = std::make_shared<const Convolution>(n, padded);
  }
  if (!plan.convolution_) plan.split_ = std::make_shared<const SplitFft>(split);
  return plan;
}

void FftPlan::Forward(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
                      std::span<double> imOut) const {
  const ConstRows in{reIn.data(), imIn.data()};
  const Rows out{reOut.data(), imOut.data()};
  if (split_) {
    split_->Forward(in, out);
  } else {
    convolution_->Forward(in, out);
  }
}

void FftPlan::ForwardReal(std::span<const double> x, std::span<double> reOut, std::span<double> imOut) const {
  if (split_) return split_->ForwardReal(x.data(), {reOut.data(), imOut.data()});
  std::vector<double> re(length_);
  std::vector<double> im(length_, 0.0);
  convolution_->Forward({x.data(), im.data()}, {re.data(), im.data()});
  std::copy_n(re.begin(), length_ / 2 + 1, reOut.begin());
  std::copy_n(im.begin(), length_ / 2 + 1, imOut.begin());
}

void FftPlan::Inverse(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
                      std::span<double> imOut) const {
  std::transform(imIn.begin(), imIn.begin() + static_cast<std::ptrdiff_t>(length_), imOut.begin(),
                 [](double value) { return -value; });
  Forward(reIn, imOut, reOut, imOut);
  const auto n = static_cast<double>(length_);
  for (std::size_t j = 0; j < length_; ++j) {
    reOut[j] /= n;
    imOut[j] /= -n;
  }
}

bool Fft(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut, std::span<double> imOut) {
  const std::optional<FftPlan> plan = FftPlan::Make(reIn.size());
  if (plan) plan->Forward(reIn, imIn, reOut, imOut);
  return plan.has_value();
}

bool InverseFft(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
                std::span<double> imOut) {
  const std::optional<FftPlan> plan = FftPlan::Make(reIn.size());
  if (plan) plan->Inverse(reIn, imIn, reOut, imOut);
  return plan.has_value();
}

}  // namespace texturon
