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
/// Where they stand: d s u^j at j up to 3, then d z s u^j from kFirstHeight on, then d s u^4.
inline constexpr std::size_t kFirstHeight = 4;
inline constexpr std::size_t kFourthMoment = 7;

/// y[column][row] = x[row][column] for an even number of columns; strides are what lies between rows, and columns.
void TurnMatrix(const double* x, std::size_t xStride, std::size_t rows, std::size_t columns, double* y,
                std::size_t yStride);

/// The sums over neighbouring places that a regression takes of its weights d and of d z, by one transform there and
/// four back, in one of two ways. Where what a place reaches is short, the sequences are cut into blocks that overlap
/// by it, which are transformed side by side in the lanes of short transforms. Otherwise they stay whole: their four
/// parts of every fourth place, and then the four transforms back, are the lanes.
class RegressionTransforms {
public:
  /// s u^j at the distances 0, 1 .. in places, for j = 0 .. 4; odd ones have the other sign on the other side.
  using Factors = std::array<std::vector<double>, kRegressionMoments>;

  /// For sequences of `count` places.
  RegressionTransforms(std::size_t count, const Factors& factors);

  /// Where the caller leaves d and d z; they stay as they are.
  std::span<double> Weights() { return std::span(weights_).subspan(plan_.lead, count_); }
  std::span<double> Heights() { return std::span(heights_).subspan(plan_.lead, count_); }

  /// Makes all sums of what stands there.
  void Run();
  /// sum[k] = sum over l of d[l] s u^j, or d[l] z[l] s u^j, at distance l - k.
  std::span<const double> Sum(std::size_t sum) const { return std::span(sums_).subspan(sum * stride_, count_); }

  /// Estimated time of Run for so many places that reach `extent` of them, in the units of BatchFft::Cost.
  static double Cost(std::size_t count, std::size_t extent);

private:
  /// A block is `rows` places long; `hop` of them are its own, `lead` others lie before them. One that is whole has all
  /// as its own.
  struct Plan {
    std::size_t rows = 0;
    std::size_t hop = 0;
    std::size_t lead = 0;
    std::size_t count = 0;  ///< a multiple of kLaneQuantum, or 1: whole

    bool IsWhole() const { return count == 1; }
    std::size_t Lanes() const;
    double Cost() const;
  };
  static Plan Choose(std::size_t count, std::size_t extent);

  void MakeSpectra(const Factors& factors);
  void RunBlocks();
  void RunWhole();
  /// The transform back of product_ is the sums of the blocks from `first` on.
  void Deliver(std::size_t first, double* real, double* imaginary);

  std::size_t count_;
  std::size_t extent_;
  Plan plan_;
  std::size_t lanes_;
  std::size_t stride_;  ///< from sum to sum
  BatchFft columns_;
  BatchFft quarters_;  ///< of every fourth place, where all is whole
  LineMemory memory_;
  std::span<double> scratch_;
  Rows spectrum_, product_, sum_;
  std::array<std::vector<double>, kRegressionHeights> spectra_;  ///< of s u^j, j = 0 .. 2; the middle one is imaginary
  std::vector<double> spectrumOf3And4_;                          ///< of s u^3 + i s u^4, divided by 2 i
  std::vector<double> turnsRe_, turnsIm_;                        ///< of the quarters, a row for each of their places
  std::vector<double> weights_, heights_;                        ///< with zeros before and behind
  std::vector<double> sums_;
};

}  // namespace texturon
