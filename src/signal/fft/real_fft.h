// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "signal/fft/fft.h"
#include "signal/fft/fft_roots.h"

namespace texturon {

/// The Fourier transform of n real values, X[k] = sum over j of x[j] exp(-2 pi i j k / n) for k = 0 .. n / 2; the other
/// half is the conjugate, X[n - k] = conj X[k]. An even length takes one complex transform of n / 2 points, an odd one
/// a complex transform of n points. Accuracy, lengths and sharing as FftPlan.
class RealFftPlan {
public:
  /// Nothing when the length is refused.
  static std::optional<RealFftPlan> Make(std::size_t n);

  std::size_t length() const { return length_; }

  /// x holds length() values, re and im length() / 2 + 1 each; they do not overlap.
  void Forward(std::span<const double> x, std::span<double> re, std::span<double> im) const;

  /// The real values whose transform is re, im. The imaginary parts of X[0] and, for even lengths, of X[n / 2] count as
  /// zero. x may overlap neither.
  void Inverse(std::span<const double> re, std::span<const double> im, std::span<double> x) const;

private:
  RealFftPlan(std::size_t n, FftPlan complexPlan);

  std::size_t length_ = 1;
  FftPlan complex_;  ///< of n / 2 points for even n, else n
  UnitRoots roots_;
  std::vector<double> turnsRe_;  ///< of even lengths that are short enough for a table: exp(-2 pi i k / n), k from 1 on
  std::vector<double> turnsIm_;
};

}  // namespace texturon
