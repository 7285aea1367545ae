// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "signal/fft/fft_batch.h"
#include "signal/fft/fft_memory.h"
#include "signal/filter/regression_equations.h"

namespace texturon {

/// The sums over neighbouring places that a regression takes of its weights d and of d z, by one transform there and
/// four back, in one of two ways. Where what a place reaches is short, the sequences are cut into blocks that overlap
/// by it, which are transformed side by side in the lanes of short transforms. Otherwise they stay whole: their four
/// parts of every fourth place, and then the four transforms back, are the lanes. Of the spectra only the ends are
/// worked with, outside of which those of s u^j are next to nothing.
class RegressionTransforms {
public:
  /// s u^j at the distances 0, 1 .. in places, for j = 0 .. 4; odd ones have the other sign on the other side.
  using Factors = std::array<std::vector<double>, kRegressionMoments>;

  /// For sequences of `count` places.
  RegressionTransforms(std::size_t count, const Factors& factors);

  /// Where the caller leaves d and d z; they stay as they are.
  std::span<double> Weights() { return std::span(weights_).subspan(plan_.lead, count_); }
  std::span<double> Heights() { return std::span(heights_).subspan(plan_.lead, count_); }

  /// Makes all sums of what stands there and solves the equations of every place.
  void Run();
  /// Of the solutions, a few values behind those of all places included.
  std::span<const double> Numerators() const { return numerators_; }
  std::span<const double> Determinants() const { return determinants_; }
  /// The sums at place k over all l of d[l] s u^j and d[l] z[l] s u^j, at distance l - k.
  RegressionPoint SumsAt(std::size_t k) const;

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
    std::size_t outer = 0;  ///< rows at either end of a spectrum that are expected to be worked with

    bool IsWhole() const { return count == 1; }
    std::size_t Lanes() const;
    /// Blocks that are transformed together are a group.
    std::size_t Groups() const { return (count + Lanes() - 1) / Lanes(); }
    /// Transforms back whose values stay.
    std::size_t Results() const { return IsWhole() ? 1 : kRegressionSums / 2 * Groups(); }
    double Cost() const;
  };
  static Plan Choose(std::size_t count, std::size_t extent);

  void MakeSpectra(const Factors& factors);
  /// Stretches of rows of spectra, of whole fours in a spectrum that is whole; all others are 0.
  struct Stretch {
    std::size_t first = 0;
    std::size_t count = 0;
  };
  std::array<Stretch, 2> Ends() const;
  void RunBlocks();
  void RunWhole();
  /// Solves the equations of the blocks from `first` on.
  void SolveBlocks(std::size_t first);
  std::size_t LanesFrom(std::size_t first) const { return std::min(lanes_, plan_.count - first); }

  std::size_t count_;
  std::size_t extent_;
  Plan plan_;
  std::size_t lanes_;
  std::size_t outer_ = 0;  ///< rows at either end of spectra that are worked with
  BatchFft columns_;
  BatchFft quarters_;  ///< of every fourth place, where all is whole
  LineMemory memory_;
  std::span<double> scratch_;
  Rows spectrum_, product_;
  std::vector<Rows> sums_;  ///< of each group as they are transformed back; of a whole sequence in one
  std::array<std::vector<double>, kRegressionHeights> spectra_;  ///< of s u^j, j = 0 .. 2; the middle one is imaginary
  std::vector<double> spectrumOf3And4_;                          ///< of s u^3 + i s u^4, divided by 2 i
  std::vector<double> turnsRe_, turnsIm_;                        ///< of the quarters, a row for each of their places
  std::vector<double> weights_, heights_;                        ///< with zeros before and behind
  std::vector<double> numerators_, determinants_;
  std::vector<double> rows_;  ///< of both, of the rows of a group
};

}  // namespace texturon
