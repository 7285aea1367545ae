// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "signal/fft/fft_passes.h"
#include "signal/fft/fft_roots.h"

namespace texturon {

class PrimeConvolution;

/// Forward Fourier transforms of one length, many side by side: the columns of a matrix. Self-sorting (Stockham)
/// passes, one per factor 8, 4, 2, 3, 5 or odd prime. A plan is immutable; it costs O(length) products and O(sqrt
/// length) sines.
class BatchFft {
public:
  /// Any length >= 1. Prime factors above kMaxDirectRadix are turned into convolutions, which works for every size.
  explicit BatchFft(std::size_t length);

  std::size_t length() const { return length_; }

  /// Doubles of scratch that Run needs for that many lanes.
  std::size_t ScratchDoubles(std::size_t lanes) const;

  /// out[k][lane] = sum over j of in[j][lane] exp(-2 pi i j k / length). `lanes` is a multiple of kLaneQuantum; in, out
  /// and scratch do not overlap.
  void Run(ConstRows in, Rows out, std::size_t lanes, std::span<double> scratch) const {
    Run(in, out, lanes, scratch, length_);
  }

  /// The same, but only the first and the last `outer` rows are read, those between count as 0. What OuterRows said.
  void Run(ConstRows in, Rows out, std::size_t lanes, std::span<double> scratch, std::size_t outer) const;
  /// How many that may be where the first and the last `least` rows are to be read; the length where all must be.
  static std::size_t OuterRows(std::size_t length, std::size_t least);

  /// Estimated time per lane in arbitrary units, to choose between factorisations.
  static double Cost(std::size_t length);

private:
  struct Stage {
    std::size_t radix = 0;
    std::vector<Cplx> twiddles;                           ///< per step radix - 1 values; empty in the last stage
    std::vector<Cplx> roots;                              ///< of a direct odd radix
    std::shared_ptr<const PrimeConvolution> convolution;  ///< of a long prime radix
  };

  std::size_t length_ = 1;
  std::vector<Stage> stages_;
};

/// The transform of any length p as a convolution with a chirp: jk = (j^2 + k^2 - (j - k)^2) / 2 makes
/// X[k] = c[k] sum over j of (x[j] c[j]) conj(c[k - j]) with c[j] = exp(-pi i j^2 / p), and the sum is cyclic over
/// ChirpPaddedLength(p) points.
std::vector<Cplx> ChirpFactors(std::size_t p);

/// conj(c) wrapped around `length` points and divided by `length`; its spectrum is the factor of the convolution.
std::vector<Cplx> WrappedChirp(std::span<const Cplx> chirp, std::size_t length);

/// A length of at least 2 p - 1 with factors 2, 3 and 5 only that is quickly transformed.
std::size_t ChirpPaddedLength(std::size_t p);

/// One pass of a BatchFft whose radix is a long prime.
class PrimeConvolution {
public:
  explicit PrimeConvolution(std::size_t radix);

  std::size_t ScratchDoubles() const;
  void Run(const FftPass& pass, std::span<double> scratch) const;

private:
  std::vector<Cplx> chirp_;
  BatchFft padded_;
  std::vector<Cplx> spectrum_;
};

}  // namespace texturon
