// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "signal/fft/fft_batch.h"
#include "signal/fft/fft_memory.h"

namespace texturon {

inline constexpr std::size_t kRegressionMoments = 5;  ///< sums of d s u^j, j = 0 .. 4
inline constexpr std::size_t kRegressionHeights = 3;  ///< sums of d z s u^j, j = 0 .. 2
inline constexpr std::size_t kRegressionSums = kRegressionMoments + kRegressionHeights;

/// y[column][row] = x[row][column] for an even number of columns; strides are what lies between rows, and columns.
void TurnMatrix(const double* x, std::size_t xStride, std::size_t rows, std::size_t columns, double* y,
                std::size_t yStride);

/// The sums over neighbouring places that a regression takes of its weights d and of d z, by transforms. What a place
/// reaches is short: the sequences are cut into blocks that overlap by it, which are transformed side by side in the
/// lanes of short transforms. One transform there and four back give all eight sums; together they cost less than half
/// of those of the whole length, because no product and no turning lies between their halves.
class RegressionTransforms {
public:
  /// s u^j at the distances 0, 1 .. in places, for j = 0 .. 4; odd ones have the other sign on the other side.
  using Factors = std::array<std::vector<double>, kRegressionMoments>;

  /// For sequences of `count` places.
  RegressionTransforms(std::size_t count, const Factors& factors);

  /// Where the caller leaves d and d z; they stay as they are.
  std::span<double> Weights() { return std::span(weights_).subspan(extent_, count_); }
  std::span<double> Heights() { return std::span(heights_).subspan(extent_, count_); }

  /// sums[j][k] = sum over l of d[l] s u^j at distance l - k, then those of d z. Each holds count places and more.
  void Run(std::array<std::vector<double>, kRegressionSums>& sums);

  /// Estimated time of Run in the units of BatchFft::Cost, to be held against a transform.
  double Cost() const;

private:
  /// A block is `rows` places long; `hop` of them are its own.
  struct Blocks {
    std::size_t rows = 0;
    std::size_t hop = 0;
    std::size_t count = 0;  ///< a multiple of kLaneQuantum

    double Cost() const;
  };
  static Blocks Choose(std::size_t count, std::size_t extent);

  std::size_t Lanes() const;
  void MakeSpectra(const Factors& factors);
  /// The transform back of product_ is the sums of the blocks from `first` on.
  void Deliver(std::size_t first, std::vector<double>& real, std::vector<double>& imaginary);

  std::size_t count_;
  std::size_t extent_;
  Blocks blocks_;
  BatchFft columns_;
  LineMemory memory_;
  std::span<double> scratch_;
  Rows spectrum_, product_, sum_;
  std::array<std::vector<Cplx>, kRegressionHeights> spectra_;  ///< of s u^j, j = 0 .. 2
  std::vector<double> spectrumOf3And4_;                        ///< of s u^3 + i s u^4, divided by 2 i
  std::vector<double> weights_, heights_;                      ///< with zeros before and behind
};

}  // namespace texturon
