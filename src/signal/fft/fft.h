// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>

#include "signal/fft/fft_split.h"

namespace texturon {

/// A length with a prime factor above this is refused.
inline constexpr std::size_t kMaxFftPrime = 500;
/// Shortest length to which a profile may be cut so that its length is accepted.
inline constexpr std::size_t kMinFftLength = 5;

/// True for n >= 1 whose prime factors are all at most kMaxFftPrime.
bool FftAcceptsLength(std::size_t n);

/// The largest accepted length m with kMinFftLength <= m <= n; 0 when there is none.
std::size_t LargestFftLength(std::size_t n);

/// A complex Fourier transform of one length: X[k] = sum over j of x[j] exp(-2 pi i j k / n), real and imaginary parts
/// in separate arrays. The relative rms error is below 1e-15 log2(n) (found: see fft_test). Cheap to build (O(sqrt n)
/// sines), immutable, may be copied and used by several threads at once.
class FftPlan {
public:
  /// Nothing when the length is refused.
  static std::optional<FftPlan> Make(std::size_t n);

  std::size_t length() const { return length_; }

  /// All four spans hold at least length() values. Outputs may be the inputs themselves, but not overlap otherwise.
  void Forward(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
               std::span<double> imOut) const;

  /// x[j] = 1/n sum over k of X[k] exp(+2 pi i j k / n), by a forward transform of the conjugate.
  void Inverse(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
               std::span<double> imOut) const;

  /// X[0 .. n / 2] of real values; for odd lengths with more than one factor at half the work. RealFftPlan (real_fft.h)
  /// is what a caller wants.
  void ForwardReal(std::span<const double> x, std::span<double> reOut, std::span<double> imOut) const;

private:
  class Convolution;

  explicit FftPlan(std::size_t n) : length_(n) {}

  std::size_t length_;
  // One of the two; shared by copies of the plan.
  std::shared_ptr<const SplitFft> split_;
  std::shared_ptr<const Convolution> convolution_;  ///< for little more than a long prime
};

/// One transform with a plan of its own. False when the length of reIn is refused; then nothing is written.
bool Fft(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut, std::span<double> imOut);
bool InverseFft(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
                std::span<double> imOut);

}  // namespace texturon
